// The bytes of a stored track: read, or refused; what was read is packed as it is read again.

#include "blackbox/flight_track.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::May_Refuse([&] {
        const auto track = Unpack_Track(fuzz::Text_Of(data, size));
        fuzz::Check(Unpack_Track(Pack_Track(track)).size() == track.size());
    });
    return 0;
}
