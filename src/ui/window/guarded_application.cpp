#include "ui/window/guarded_application.h"

#include <cstdio>

#include "common/code_page.h"

namespace norvane {

Guarded_Application::Guarded_Application(int& argument_count, char** arguments)
    : QApplication(argument_count, arguments) {}

void Guarded_Application::Report_Caught(Show show) noexcept {
    const Run_Error error = Caught_Error();
    if (m_services != nullptr)
        Log_Error(*m_services, "modMain.Main()", error, show);
    else
        std::fprintf(stderr, "%s\n", To_Utf8(error.Description()).c_str());
}

bool Guarded_Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        // Without a box: a widget that cannot be drawn would open one for each attempt.
        Report_Caught(Show::silent);
        return false;
    }
}

void Run_Command(const std::function<void()>& command) {
    try {
        command();
    } catch (...) {
        auto* application = dynamic_cast<Guarded_Application*>(QCoreApplication::instance());
        if (application == nullptr)
            throw;
        application->Report_Caught(Show::box);
    }
}

}  // namespace norvane
