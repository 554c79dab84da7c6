// norvane-bridge: lets Norvane on another system fly with a simulator on this one.

#include <windows.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <cstdio>

#include "bridge/bridge.h"
#include "common/run_error.h"
#include "common/version.h"

namespace {

using namespace norvane;

/// Set by the system's own thread.
std::atomic<bool> stop = false;

/// A closed console gives the program this long to end by itself.
constexpr DWORD time_to_end_ms = 4000;

BOOL WINAPI End_Program(DWORD event) {
    stop = true;
    // When this returns from anything but a key, the process is ended at once.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ::Sleep(time_to_end_ms);
    return TRUE;
}

}  // namespace

int main(int argc, char** argv) {
    std::string listen(default_link_address);
    CLI::App line(
        "Serves the Norvane link for a simulator with FSUIPC that runs in the same session",
        "norvane-bridge");
    line.set_version_flag("--version", std::string("norvane-bridge ") + norvane::version);
    line.add_option("--listen", listen,
                    "host:port to listen on; an address of this computer lets others in")
        ->capture_default_str()
        ->check(CLI::Validator(Link_Address_Fault, ""));
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int wrong_usage = 2;
        return line.exit(error) == 0 ? 0 : wrong_usage;
    }
    try {
        ::SetConsoleCtrlHandler(End_Program, TRUE);
        Bridge bridge(Parse_Link_Address(listen));
        bridge.Run(stop);
        return 0;
    } catch (...) {
        (void)std::fprintf(stderr, "%s\n", Caught_Error().Description().c_str());
        return 1;
    }
}
