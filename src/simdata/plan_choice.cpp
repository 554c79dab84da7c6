#include "simdata/plan_choice.h"

#include <string>
#include <string_view>

#include "common/code_page.h"
#include "common/services.h"

namespace norvane {

namespace {

constexpr std::string_view plan_section = "Flight Plan";
constexpr std::string_view directory_key = "Directory";

}  // namespace

std::filesystem::path Choose_Flight_Plan(Services& services) {
    const std::string folder = services.settings.Get(plan_section, directory_key);
    std::filesystem::path chosen = services.desktop.Choose_File(
        {"Get FS Flight Plan ", "MSFS Flight Plans (*.pln)|*.pln", To_Path(folder)});
    services.settings.Set(plan_section, directory_key,
                          chosen.empty() ? std::string() : From_Path(chosen.parent_path() / ""));
    return chosen;
}

}  // namespace norvane
