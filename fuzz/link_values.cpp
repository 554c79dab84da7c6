// Blocks that come back with any bytes in them: nothing of an answer is trusted.

#include <cmath>

#include "fuzz_world.h"
#include "simlink/catalogue.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"
#include "simlink/transport.h"

namespace {

/// Answers each block with bytes of the input, by turns in its values and anywhere.
class Garbling_Transport : public norvane::Transport {
  public:
    explicit Garbling_Transport(norvane::fuzz::Input& input) : m_input(input) {}

    norvane::Transport_Opening Open() override { return {}; }
    norvane::Delivery Deliver(std::span<std::byte> block, std::chrono::milliseconds) override {
        const std::uint8_t how = m_input.Byte();
        const std::size_t begin = how % 4 == 0 ? 0 : std::min<std::size_t>(16, block.size());
        const auto bytes = m_input.Bytes(block.size() - begin);
        std::memcpy(block.data() + begin, bytes.data(), bytes.size());
        if (how > 250)
            return {norvane::Delivery_Outcome::failed, 0};
        return {norvane::Delivery_Outcome::answered, how > 240 ? 0U : 1U};
    }
    void Close() override {}

  private:
    norvane::fuzz::Input& m_input;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Input input(data, size);
    test::Virtual_Clock clock;
    Garbling_Transport transport(input);
    modFSUIPC link(transport, clock);
    int result = 0;
    link.IPC_Open(0, result);
    Sim_Reader reader(link);
    while (link.Is_Open() && !input.Is_Used_Up()) {
        reader.Begin_Step();
        for (const Variable_Row& row : All_Variables()) {
            if (row.raw == Raw::text)
                fuzz::Check(reader.Read_Text(row.id).size() <= row.size);
            else
                fuzz::Check(std::isfinite(reader.Read(row.id)));
        }
        fuzz::Check(std::isfinite(reader.Read_Fuel_Gallons()));
    }
    return 0;
}
