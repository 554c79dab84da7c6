#include "app/sim_process.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include "common/run_error.h"
#include "simlink/link_address.h"
#include "simlink/socket_transport.h"

namespace norvane {

namespace {

std::filesystem::path Make_Socket_Directory() {
    std::string name = (std::filesystem::temp_directory_path() / "norvane-sim-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw File_Error(errno, name);
    return name;
}

/// What the child does between fork and exec; only async-signal-safe calls.
[[noreturn]] void Become(const std::vector<char*>& arguments, pid_t parent) {
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    // The stand-in must not outlive a program that was killed.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::_exit(1);
    // What the stand-in says is for the pilot's eyes; standard output carries results.
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
}

}  // namespace

Sim_Process::Sim_Process(const std::filesystem::path& program, std::vector<std::string> arguments)
    : m_directory(Make_Socket_Directory()), m_address("unix:" + (m_directory / "sim").string()) {
    arguments.insert(arguments.begin(), program.string());
    arguments.insert(arguments.end(), {"--listen", m_address});
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const pid_t parent = ::getpid();
    m_child = ::fork();
    if (m_child == 0)
        Become(pointers, parent);
    if (m_child < 0) {
        // Waiting for it would wait for any child of the program.
        const int reason = errno;
        End();
        throw File_Error(reason, program.string());
    }
    try {
        Await_Listening();
    } catch (...) {
        End();
        throw;
    }
}

void Sim_Process::Await_Listening() {
    constexpr int tries = 200;
    Socket_Transport probe(Parse_Link_Address(m_address));
    for (int i = 0; i < tries; ++i) {
        if (probe.Open().result == 0) {
            probe.Close();
            return;
        }
        if (::waitpid(m_child, nullptr, WNOHANG) != 0) {
            // Its number may be another process's by now.
            m_child = -1;
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    throw Run_Error(error_number::file_not_found,
                    "The simulator's stand-in \"norvane-sim\" did not start");
}

Sim_Process::~Sim_Process() {
    End();
}

/// A stand-in that does not end when it is asked to is killed: the program's own end waits for it.
void Sim_Process::End() {
    if (m_child > 0) {
        ::kill(m_child, SIGTERM);
        constexpr int looks = 50;
        pid_t ended = 0;
        for (int i = 0; i < looks && ended == 0; ++i) {
            ended = ::waitpid(m_child, nullptr, WNOHANG);
            if (ended == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        if (ended == 0) {
            ::kill(m_child, SIGKILL);
            ::waitpid(m_child, nullptr, 0);
        }
    }
    m_child = -1;
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

}  // namespace norvane
