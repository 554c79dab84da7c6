#pragma once
// Qt's application object with a guard around it: whatever a handler of an event throws goes to the
// error log, and the program goes on. Qt itself would end it, with the flight in it. One object,
// owned by `main`.

#include <QApplication>
#include <functional>

#include "common/log_error.h"

namespace norvane {

class Guarded_Application : public QApplication {
  public:
    /// Both must outlive the object, as Qt's own constructor asks for.
    Guarded_Application(int& argument_count, char** arguments);

    /// Where failures are reported while `services` is set.
    void Set_Outside(Services* services) { m_services = services; }
    /// The exception being handled; call only inside a catch block.
    void Report_Caught(Show show) noexcept;

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    Services* m_services = nullptr;
};

/// Runs what the pilot asked for from within a slot. A failure is reported; Qt, through
/// which it would have to pass, is not made for that.
void Run_Command(const std::function<void()>& command);

}  // namespace norvane
