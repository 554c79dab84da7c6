// What a simulator may send to the client, frame or no frame: no answer reaches past its block.

#include <sys/socket.h>

#include <vector>

#include "common/file_writer.h"
#include "fuzz_world.h"
#include "simlink/link_socket.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"
#include "simlink/socket_transport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    using namespace std::chrono_literals;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    static const Link_Address address =
        Parse_Link_Address("unix:" + (world.directory / "link").string());
    static const Link_Socket listener = Listen_At(address);
    Socket_Transport transport(address);
    fuzz::Check(transport.Open().result == 0);
    {
        // All that the simulator says is there before it is asked, and then it hangs up.
        const Link_Socket simulator = Accept_From(listener);
        static_cast<void>(::send(simulator.Descriptor(), data, size, MSG_DONTWAIT | MSG_NOSIGNAL));
    }
    std::vector<std::byte> block(64);
    const std::vector<std::byte> before = block;
    for (int i = 0; i < 3; ++i)
        static_cast<void>(transport.Deliver(block, 1ms));
    fuzz::Check(block.size() == before.size());
    while (Accept_From(listener).Is_Open()) {
    }
    return 0;
}
