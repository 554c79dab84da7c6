#include "app/session_options.h"

#include <string>

#include "common/find_file.h"
#include "simlink/link_address.h"

namespace norvane {

void Add_Session_Options(CLI::App& line, Session_Options& options) {
    line.add_option("--home", options.places.home, "Program directory");
    line.add_option("--settings", options.places.settings, "Settings store (an SQLite file)");
    line.add_option("--sim", options.simulator,
                    "Simulator address, host:port or unix:/path ($NORVANE_SIM, then the setting "
                    "Simulator_Address, then " +
                        std::string(default_link_address) + ")")
        ->check(CLI::Validator(Link_Address_Fault, ""));
    line.add_option("--map", options.path_mappings,
                    "Where a directory of the simulator's is here: 'C:\\=/home/me/drive_c/'; "
                    "repeatable")
        ->allow_extra_args(false)
        ->check(CLI::Validator(Path_Mapping_Fault, ""));
}

}  // namespace norvane
