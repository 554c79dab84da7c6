// What a client may send to the simulator's side, in pieces: served, or the client is dropped.

#include <sys/socket.h>

#include "fuzz_world.h"
#include "simlink/link_server.h"
#include "simlink/link_socket.h"
#include "simlink/offset_area.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    using namespace std::chrono_literals;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    static Offset_Area area;
    static Link_Server server(Parse_Link_Address("unix:" + (world.directory / "link").string()),
                              area);
    {
        int failure = 0;
        const Link_Socket client =
            Connect_To(server.Address(), {std::chrono::steady_clock::now() + 1s}, failure);
        fuzz::Check(client.Is_Open());
        server.Serve(0ms);
        const std::size_t half = size / 2;
        for (const auto& [begin, count] : {std::pair{std::size_t{0}, half}, {half, size - half}}) {
            static_cast<void>(
                ::send(client.Descriptor(), data + begin, count, MSG_DONTWAIT | MSG_NOSIGNAL));
            server.Serve(0ms);
        }
        fuzz::Check(server.Client_Count() <= 1);
    }
    server.Serve(0ms);
    server.Serve(0ms);
    fuzz::Check(server.Client_Count() == 0);
    return 0;
}
