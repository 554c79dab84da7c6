#pragma once
// The about box: the program's name and version, and under which licences it, its libraries and its
// data stand. Owned by the program, opened by the main window.

#include <span>
#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/modal_form.h"

namespace norvane {

/// A library, or data, that the program comes with.
struct Licensed_Part {
    std::string_view name;
    std::string_view purpose;
    std::string_view licence;
};

class frmAbout : public Modal_Form {
  public:
    frmAbout();

    /// Opens the box and returns when it is closed.
    void Show_Form() { Show_Modal(); }

    /// "About Norvane".
    [[nodiscard]] static std::string Title();
    [[nodiscard]] static std::span<const Licensed_Part> Licensed_Parts();

    Label lblProduct;
    Label lblVersion;
    Label lblLicence;
    Link hypClose{"Close"};
};

}  // namespace norvane
