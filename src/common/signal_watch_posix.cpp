#include "common/signal_watch.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>

#include "common/run_error.h"

namespace norvane {

Signal_Watch::Signal_Watch() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    m_descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (m_descriptor < 0)
        throw File_Error(errno, "signalfd");
}

Signal_Watch::~Signal_Watch() {
    ::close(m_descriptor);
}

bool Signal_Watch::Raised() {
    signalfd_siginfo caught{};
    if (::read(m_descriptor, &caught, sizeof caught) == sizeof caught)
        m_raised = true;
    return m_raised;
}

bool Signal_Watch::Is_Pending() const {
    pollfd watched{m_descriptor, POLLIN, 0};
    return m_raised || ::poll(&watched, 1, 0) > 0;
}

void Signal_Watch::Sleep(std::chrono::microseconds span) {
    if (m_raised || span <= std::chrono::microseconds::zero())
        return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
    const timespec timeout{seconds.count(), (span - seconds).count() * 1000};
    pollfd watched{m_descriptor, POLLIN, 0};
    ::ppoll(&watched, 1, &timeout, nullptr);
}

}  // namespace norvane
