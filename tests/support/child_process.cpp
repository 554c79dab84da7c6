#include "support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <utility>

namespace norvane::test {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

Child_Process::Child_Process(std::vector<std::string> arguments,
                             const std::function<void()>& prepare) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    if (::pipe2(output.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    std::vector<char*> pointers;
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    m_child = ::fork();
    if (m_child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(output[1], STDOUT_FILENO);
        ::dup2(errors[1], STDERR_FILENO);
        if (prepare)
            prepare();
        ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    ::close(output[1]);
    ::close(errors[1]);
    m_output_end = output[0];
    m_errors_end = errors[0];
}

Child_Process::~Child_Process() {
    if (m_child > 0) {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }
    for (const int end : {m_output_end, m_errors_end}) {
        if (end >= 0)
            ::close(end);
    }
}

bool Child_Process::Read_Some(milliseconds at_most) {
    std::array<pollfd, 2> ends{{{m_output_end, POLLIN, 0}, {m_errors_end, POLLIN, 0}}};
    if (m_output_end < 0 && m_errors_end < 0)
        return false;
    ::poll(ends.data(), ends.size(), static_cast<int>(at_most.count()));
    const auto take = [](const pollfd& polled, int& end, std::string& text) {
        if (polled.revents == 0)
            return;
        std::array<char, 4096> buffer{};
        const auto got = ::read(end, buffer.data(), buffer.size());
        if (got > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(got));
        } else {
            ::close(end);
            end = -1;
        }
    };
    take(ends[0], m_output_end, m_output);
    take(ends[1], m_errors_end, m_errors);
    return true;
}

bool Child_Process::Read_Until(const std::function<bool(const std::string&)>& done,
                               milliseconds at_most) {
    const auto end = steady_clock::now() + at_most;
    while (!done(m_output)) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
        if (left <= milliseconds::zero() || !Read_Some(left))
            return done(m_output);
    }
    return true;
}

void Child_Process::Send(int signal) const {
    ::kill(m_child, signal);
}

int Child_Process::Wait(milliseconds at_most) {
    const auto end = steady_clock::now() + at_most;
    Read_Until([](const std::string&) { return false; }, at_most);
    int status = 0;
    while (::waitpid(m_child, &status, WNOHANG) == 0) {
        if (steady_clock::now() > end) {
            Send(SIGKILL);
            ::waitpid(m_child, &status, 0);
            m_child = -1;
            return -1;
        }
        ::usleep(1000);
    }
    m_child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Run_Result Run_Program(std::vector<std::string> arguments) {
    Child_Process process(std::move(arguments));
    Run_Result result;
    result.status = process.Wait();
    result.output = process.Output();
    result.errors = process.Errors();
    return result;
}

}  // namespace norvane::test
