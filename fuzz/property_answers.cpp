// What may come down the line from a property server, in two pieces: a sample has an answer to each
// question, and a server that says anything else is left.

#include <sys/socket.h>

#include <utility>
#include <vector>

#include "fuzz_world.h"
#include "simhost/flightgear/property_server.h"
#include "simlink/link_socket.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    using namespace std::chrono_literals;
    static const std::vector<std::string> paths{"/position/altitude-ft", "/sim/aircraft", "/a"};
    static const Link_Address address =
        Parse_Link_Address("unix:" + (fuzz::Shared_World().directory / "properties").string());
    static const Link_Socket listener = Listen_At(address);
    Property_Server server(address, {0ms, 60s, 60s, 60s});
    bool lost = false;
    server.paths = [&]() -> const std::vector<std::string>& { return paths; };
    server.lost.Connect([&](const std::string& reason) {
        fuzz::Check(!reason.empty());
        lost = true;
    });
    server.sampled.Connect([&](const std::vector<std::string>& answers) {
        fuzz::Check(answers.size() == paths.size());
        for (const std::string& answer : answers)
            fuzz::Check(answer.find("\r\n") == std::string::npos);
    });
    server.Step();
    {
        const Link_Socket simulator = Accept_From(listener);
        fuzz::Check(simulator.Is_Open());
        const std::size_t half = size / 2;
        for (const auto& [begin, count] : {std::pair{std::size_t{0}, half}, {half, size - half}}) {
            static_cast<void>(
                ::send(simulator.Descriptor(), data + begin, count, MSG_DONTWAIT | MSG_NOSIGNAL));
            // Once for what came, once to ask anew.
            server.Step();
            server.Step();
        }
    }
    for (int i = 0; i < 3; ++i)
        server.Step();
    fuzz::Check(lost);
    return 0;
}
