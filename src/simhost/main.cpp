// norvane-sim: what stands where the simulator stands. Flies a scenario or
// plays a recording behind the Norvane link, or records a simulator that is
// there.

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>

#include "common/code_page.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/signal_watch.h"
#include "common/system_clock.h"
#include "common/system_places.h"
#include "common/version.h"
#include "simhost/flightgear/flightgear_command.h"
#include "simhost/host.h"
#include "simhost/recording/recorder.h"
#include "simhost/recording/replay.h"
#include "simhost/scenario/scenario.h"

namespace norvane {

namespace {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrong_usage = 2;
constexpr std::chrono::milliseconds longest_ending{700};

struct Command_Line {
    std::string scenario;
    std::string recording;
    std::string listen{default_link_address};
    double speed = 1;
    double at_seconds = 0;
    std::int64_t step_ms = 0;
    std::string record_from{default_link_address};
    std::int64_t record_every_ms = 500;
    std::string record_file;
    std::string flightgear{default_flightgear_address};
    std::uint16_t simulator_version = 7;
};

/// The program waits on the stop descriptor wherever it waits. The system waits for name servers
/// and disks without: what still waits this long after the stop is not waited for. Files are whole
/// at every moment, and who comes next takes over the socket's file.
void End_When_Stopped(int stop) {
    std::thread([stop] {
        pollfd entry{stop, POLLIN, 0};
        while (::poll(&entry, 1, -1) <= 0) {
        }
        std::this_thread::sleep_for(longest_ending);
        ::_exit(done);
    }).detach();
}

/// Where scenarios and the simulator's aircraft are.
std::filesystem::path Home() {
    return Shipped_Directory(Executable_Directory());
}

void Print_Line(const std::string& line) {
    const std::string text = line + "\n";
    (void)std::fwrite(text.data(), 1, text.size(), stdout);
    (void)std::fflush(stdout);
}

void Serve_World(World_Source& world, const Command_Line& line, int stop) {
    Host_Options options;
    options.listen = Parse_Link_Address(line.listen);
    options.speed = line.speed;
    options.at_seconds = line.at_seconds;
    if (line.step_ms > 0)
        options.step = std::chrono::milliseconds(line.step_ms);
    System_Clock clock;
    Host host(world, options, clock);
    host.text_shown.Connect([](const std::string& text) { Print_Line(To_Utf8(text)); });
    Print_Line("listening on " + host.Address().Text());
    host.Run(stop);
}

void Serve_Flightgear(const Command_Line& line, int stop) {
    System_Clock clock;
    Flightgear_Service service({.flightgear = Parse_Link_Address(line.flightgear),
                                .listen = Parse_Link_Address(line.listen),
                                .simulator_version = line.simulator_version,
                                .simulator_directory = Home() / "simulator",
                                .pace = {}},
                               clock);
    const auto print = [](const std::string& text) { Print_Line(To_Utf8(text)); };
    service.told.Connect(print);
    service.text_shown.Connect(print);
    service.Run(stop);
}

/// Refuses what is no finite number from `low` to `high`.
CLI::Validator Within(double low, double high) {
    const auto check = [=](const std::string& text) {
        const auto value = Parse_Number(text);
        return value && *value >= low && *value <= high
                   ? std::string()
                   : fmt::format("{} is no number from {} to {}", text, low, high);
    };
    return {check, ""};
}

/// Refuses what is no link address.
CLI::Validator Link_Address_Text() {
    const auto check = [](const std::string& text) -> std::string {
        try {
            static_cast<void>(Parse_Link_Address(text));
            return {};
        } catch (const Run_Error& error) {
            return error.Description();
        }
    };
    return {check, ""};
}

void Add_Listen_Option(CLI::App& command, Command_Line& line) {
    command.add_option("--listen", line.listen, "unix:/path or host:port")
        ->check(Link_Address_Text())
        ->type_name("ADDRESS")
        ->capture_default_str();
}

void Add_Flightgear_Options(CLI::App& command, Command_Line& line) {
    command.add_option("address", line.flightgear, "Where FlightGear serves its properties")
        ->check(Link_Address_Text())
        ->type_name("HOST:PORT")
        ->capture_default_str();
    Add_Listen_Option(command, line);
    command.add_option("--as", line.simulator_version, "Be the simulator of this number")
        ->check(Within(1, 65535))
        ->type_name("N")
        ->capture_default_str();
}

void Add_Serving_Options(CLI::App& command, Command_Line& line) {
    command.add_option("--speed", line.speed, "Seconds of the world in a second of the clock")
        ->check(Within(1e-3, 1e6))
        ->type_name("X");
    command.add_option("--at", line.at_seconds, "Begin at this second of the world")
        ->check(Within(0, 1e9))
        ->type_name("SECONDS");
    Add_Listen_Option(command, line);
    command
        .add_option("--step", line.step_ms,
                    "Step mode: the world moves so many milliseconds at each "
                    "sampling step of the "
                    "client (a read of the parking brake, the first one after a "
                    "connection "
                    "excepted) and not by the clock")
        ->check(Within(1, 3'600'000))
        ->type_name("MS");
}

int Run(int argc, char** argv) {
    CLI::App app{"Stands where the simulator stands: serves the Norvane link", "norvane-sim"};
    app.set_version_flag("--version", fmt::format("norvane-sim {}", version));
    app.require_subcommand(1);
    Command_Line line;

    auto& fly = *app.add_subcommand("fly", "Fly a scenario");
    fly.add_option("--scenario", line.scenario, "Scenario file (JSON); a jet KJFK to KBOS if none");
    Add_Serving_Options(fly, line);

    auto& replay = *app.add_subcommand("replay", "Play a recording and hold its last moment");
    replay.add_option("file", line.recording, "Recording (.rec)")->required();
    Add_Serving_Options(replay, line);

    auto& record = *app.add_subcommand("record", "Record a simulator until it or you stop it");
    record.add_option("--from", line.record_from, "unix:/path or host:port")
        ->check(Link_Address_Text())
        ->type_name("ADDRESS")
        ->capture_default_str();
    record.add_option("--every", line.record_every_ms, "Milliseconds between two moments")
        ->check(Within(1, 3'600'000))
        ->type_name("MS")
        ->capture_default_str();
    record.add_option("file", line.record_file, "Recording to write (.rec)")->required();

    auto& flightgear = *app.add_subcommand("flightgear", "Serve the link for FlightGear");
    Add_Flightgear_Options(flightgear, line);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? done : wrong_usage;
    }

    // Nobody reading our lines is no reason to stop flying.
    (void)std::signal(SIGPIPE, SIG_IGN);
    const Signal_Watch signals;
    const int stop = signals.Descriptor();
    End_When_Stopped(stop);
    if (record.parsed()) {
        System_Clock clock;
        Record({Parse_Link_Address(line.record_from),
                std::chrono::milliseconds(line.record_every_ms), line.record_file},
               clock, stop);
    } else if (flightgear.parsed()) {
        Serve_Flightgear(line, stop);
    } else if (replay.parsed()) {
        Replay world(Read_Recording(line.recording));
        Serve_World(world, line, stop);
    } else {
        std::filesystem::path scenario = line.scenario;
        if (scenario.empty())
            scenario = Home() / "scenarios" / "kjfk-kbos.json";
        const auto world = Load_Scenario(scenario, Home() / "simulator");
        Serve_World(*world, line, stop);
    }
    return done;
}

}  // namespace

}  // namespace norvane

int main(int argc, char** argv) {
    try {
        return norvane::Run(argc, argv);
    } catch (...) {
        const auto error = norvane::Caught_Error();
        fmt::print(stderr, "norvane-sim: {}\n", norvane::To_Utf8(error.Description()));
        return norvane::failed;
    }
}
