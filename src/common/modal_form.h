#pragma once
// A dialog of which the rest of the program waits until it is closed. Forms derive from it and hold
// their controls and rules; the view that draws them answers `shown`. Where none does (a program
// without a window), the form is closed as soon as it was opened.

#include <utility>

#include "common/signal.h"

namespace norvane {

class Modal_Form {
  public:
    Modal_Form() = default;
    Modal_Form(const Modal_Form&) = delete;
    Modal_Form& operator=(const Modal_Form&) = delete;

    [[nodiscard]] bool Is_Open() const { return m_open; }
    /// The form is open; the listener returns when the pilot has closed it, or `closed` came.
    Signal<> shown;
    /// The form closed itself: its view takes it away.
    Signal<> closed;

  protected:
    ~Modal_Form() = default;

    /// Returns when the form is closed. A form that is open is not opened again.
    void Show_Modal() {
        if (std::exchange(m_open, true))
            return;
        struct Shut {
            bool& open;
            ~Shut() { open = false; }
        } const shut{m_open};
        shown.Emit();
    }
    void Close_Form() {
        if (m_open)
            closed.Emit();
    }

  private:
    bool m_open = false;
};

}  // namespace norvane
