// The stand-in that a demonstration starts: it ends with its owner, whatever it does.

#include "app/sim_process.h"

#include <csignal>
#include <optional>

#include "support/test_world.h"

namespace norvane::test {
namespace {

using Stand_In = Test_World;

TEST_F(Stand_In, That_does_not_end_when_asked_does_not_keep_the_program) {
    const auto pid_file = directory / "pid";
    const std::string deaf =
        "import os, signal, socket, sys\n"
        "signal.signal(signal.SIGTERM, signal.SIG_IGN)\n"
        "open(sys.argv[1], 'w').write(str(os.getpid()))\n"
        "s = socket.socket(socket.AF_UNIX)\n"
        "s.bind(sys.argv[-1][len('unix:'):])\n"
        "s.listen(9)\n"
        "while True: s.accept()\n";
    std::optional<Sim_Process> stand_in;
    stand_in.emplace("/usr/bin/python3", std::vector<std::string>{"-c", deaf, pid_file.string()});
    const int pid = std::stoi(Read("pid"));
    EXPECT_EQ(::kill(pid, 0), 0);
    stand_in.reset();
    EXPECT_NE(::kill(pid, 0), 0);
}

}  // namespace
}  // namespace norvane::test
