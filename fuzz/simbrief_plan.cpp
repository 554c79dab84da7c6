// An answer of SimBrief of any bytes: refused, or its texts fit a log line, its figures keep their
// limits, and what the panel makes of them reads back from a recording as it was.

#include "acarspanel/simbrief_fields.h"
#include "config/cls_app_settings.h"
#include "fuzz_world.h"
#include "net/simbrief.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    fuzz::May_Refuse([&] {
        const Simbrief_Plan plan = Read_Simbrief_Plan(fuzz::Text_Of(data, size));
        const clsAppSettings settings(world.services);
        for (const Simbrief_Field& field : Simbrief_Fields(plan, settings)) {
            fuzz::Check(!field.text.empty());
            fuzz::Check(field.text.find_first_of("|\r\n") == std::string::npos);
        }
        fuzz::Check(plan.level_ft.value_or(0) >= 0 && plan.level_ft.value_or(0) <= 100'000);
        const Planned_Flight planned = Planned_Of(plan);
        fuzz::Check(Parse_Planned(Planned_Text(planned)) == planned);
    });
    return 0;
}
