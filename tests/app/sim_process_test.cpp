// The stand-in that a demonstration starts: it ends with its owner, whatever it does.

#include "app/sim_process.h"

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>

#include "support/test_world.h"

namespace {

/// The system has no room for another process.
bool no_process = false;

}  // namespace

/// In place of the system's own, which it calls.
extern "C" pid_t fork() noexcept {
    if (no_process) {
        errno = EAGAIN;
        return -1;
    }
    return reinterpret_cast<pid_t (*)()>(::dlsym(RTLD_NEXT, "fork"))();
}

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

TEST_F(Stand_In, That_cannot_be_started_leaves_the_programs_other_children_alone) {
    const pid_t other = ::fork();
    if (other == 0)
        ::_exit(3);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(other), &ended, WEXITED | WNOWAIT), 0);
    no_process = true;
    EXPECT_THROW(Sim_Process("/bin/true", {}), Run_Error);
    no_process = false;
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

}  // namespace
}  // namespace norvane::test
