// What FlightGear may answer: figures are believed within their limits only.

#include <cmath>

#include "common/text.h"
#include "fuzz_world.h"
#include "simhost/flightgear/flightgear_table.h"
#include "simhost/flightgear/flightgear_world.h"
#include "simlink/catalogue.h"
#include "simlink/offset_area.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    static const std::filesystem::path simulator =
        std::filesystem::path(NORVANE_SOURCE_DIR) / "data" / "simulator";
    static const Flightgear_Table table(simulator / "flightgear.cfg");
    static const Offset_Area empty;
    Flightgear_World world(table, simulator, 7);
    Offset_Area area = empty;
    fuzz::Input input(data, size);
    // Lines of the input answer what is asked, over and over; the first byte of each sample moves
    // where they begin.
    const std::vector<std::string> lines = Split(std::string(fuzz::Text_Of(data, size)), '\n');
    for (int sample = 0; sample < 3; ++sample) {
        std::vector<std::string> answers;
        const std::size_t begin = input.Byte();
        for (std::size_t i = 0; i < world.Paths().size(); ++i)
            answers.push_back(lines[(begin + i) % lines.size()]);
        world.Take(std::move(answers));
        world.Apply(sample, area);
    }
    for (const Variable_Row& row : All_Variables()) {
        if (row.raw != Raw::text)
            fuzz::Check(std::isfinite(area.Get(row.id)));
    }
    return 0;
}
