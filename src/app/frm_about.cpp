#include "app/frm_about.h"

#include <array>

#include "common/text.h"
#include "common/version.h"

namespace norvane {

namespace {

constexpr std::array parts = {
    Licensed_Part{"Qt 6", "the window", "GNU LGPL 3"},
    Licensed_Part{"libcurl", "network requests", "curl licence (MIT style)"},
    Licensed_Part{"SQLite", "the settings store", "public domain"},
    Licensed_Part{"{fmt}", "formatting of texts", "MIT licence"},
    Licensed_Part{"nlohmann/json", "network data and scenarios", "MIT licence"},
    Licensed_Part{"CLI11", "command lines", "BSD 3-clause licence"},
    Licensed_Part{"zlib", "compressed airport data", "zlib licence"},
    Licensed_Part{"OurAirports", "airports (bin/fs9.wld)", "public domain"},
    Licensed_Part{"OpenFlights", "airline codes (bin/airline.cfg)", "Open Database License 1.0"},
};

}  // namespace

frmAbout::frmAbout()
    : lblProduct(product_name),
      lblVersion("Version " + std::string(version)),
      lblLicence("MIT licence") {
    hypClose.clicked.Connect([this] { Close_Form(); });
}

std::string frmAbout::Title() {
    return "About " + std::string(product_name);
}

std::span<const Licensed_Part> frmAbout::Licensed_Parts() {
    return parts;
}

}  // namespace norvane
