#include "blackbox/flight_archive.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "blackbox/derive.h"
#include "blackbox/flight_store.h"
#include "blackbox/recording_head.h"
#include "blackbox/recordings.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/gzip_writer.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/run_error.h"
#include "config/cls_app_settings.h"

namespace norvane {

namespace {

/// The row of a flight is logged and its PIREP made before anything is packed.
constexpr std::chrono::milliseconds pause_before_packing(200);
/// The pilot waits meanwhile; a program that writes to the store takes a few milliseconds.
constexpr std::chrono::milliseconds store_patience(250);
constexpr std::string_view packed_ending = ".rec.gz";
constexpr std::string_view damaged_ending = ".damaged";

/// As part of a file's name, whatever a pilot calls a flight.
std::string For_File_Name(std::string_view text) {
    constexpr std::size_t longest = 12;
    std::string name;
    for (const char c : text.substr(0, longest)) {
        const bool fits =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (fits)
            name += c;
    }
    return name;
}

/// "2026-11-23_1405Z_KJFK-KBOS_214"; what is not known is left out.
std::string Flight_Name(const Flight_Summary& flight, std::string_view otherwise) {
    const auto began = Parse_Clock(flight.began_utc + " " + flight.began_utc);
    if (!began)
        return std::string(otherwise);
    std::string name =
        fmt::format("{}_{}Z", Format_Iso_Date(began->utc.date), Format_Hhmm(began->utc.time));
    const std::string origin = For_File_Name(flight.origin);
    const std::string destination = For_File_Name(flight.destination);
    if (!origin.empty() || !destination.empty())
        name += fmt::format("_{}-{}", origin, destination);
    const std::string number = For_File_Name(flight.flight_number);
    return number.empty() ? name : name + "_" + number;
}

/// Does what reads a recording. One that is damaged is set aside: it is told of once, not at every
/// start.
void Read_Or_Set_Aside(const std::filesystem::path& recording, const std::function<void()>& work) {
    try {
        work();
    } catch (const Broken_Content&) {
        std::error_code unknown;
        std::filesystem::rename(recording, recording.string() + std::string(damaged_ending),
                                unknown);
        throw;
    }
}

}  // namespace

Flight_Archive::Flight_Archive(Services& services, const clsAppSettings& settings)
    : m_services(services),
      m_settings(settings),
      m_timer(services.desktop.Timers(), pause_before_packing) {
    m_timer.tick.Connect([this] { Finish(); });
}

void Flight_Archive::Take_Soon(const std::filesystem::path& recording) {
    if (recording.empty())
        return;
    m_waiting.push_back(recording);
    m_timer.Set_Enabled(true);
}

void Flight_Archive::Finish() {
    m_timer.Set_Enabled(false);
    for (const auto& recording : std::exchange(m_waiting, {}))
        Take(recording);
}

std::filesystem::path Flight_Archive::Packed_File() const {
    return Flights_Directory(m_services) / (m_last->id + std::string(packed_ending));
}

void Flight_Archive::Take(const std::filesystem::path& recording) {
    Guarded(m_services, "Flight_Archive.Take()", Show::silent, [&] {
        // What a kill tore is cut off.
        { const Growing_File whole(recording); }
        Read_Or_Set_Aside(recording, [&] { Pack(recording); });
    });
}

void Flight_Archive::Pack(const std::filesystem::path& recording) {
    // Ended before its first step.
    if (Is_Empty_Recording(recording)) {
        std::filesystem::remove(recording);
        return;
    }
    const std::string stem = From_Path(recording.stem());
    const auto moments = Read_Recording(recording);
    Flight_Summary flight = Derive_Flight(stem, moments);
    if (flight.events.empty()) {
        // The brake was never released: nothing was flown.
        std::filesystem::remove(recording);
        return;
    }
    const std::string wanted = Flight_Name(flight, stem);
    auto packed = recording.parent_path() / (wanted + std::string(packed_ending));
    // Not twice, if a program was killed between packing and what follows.
    if (!Is_Packed_As(recording, packed)) {
        packed = Free_Name(recording.parent_path(), wanted, packed_ending);
        Pack_Recording(recording, packed);
    }
    const std::string name = From_Path(packed.filename());
    flight.id = name.substr(0, name.size() - packed_ending.size());
    m_last = std::move(flight);
    m_end_seconds = moments.back().seconds;
    // A flight that is not in the log yet finds its recording again.
    const auto& [section, key] = std::pair(stored_recording::section, stored_recording::name);
    if (m_services.settings.Find(section, key) == From_Path(recording.filename()))
        m_services.settings.Set(section, key, name);
    std::filesystem::remove(recording);
    Store();
}

void Flight_Archive::Forget_Last() {
    Finish();
    m_last.reset();
}

void Flight_Archive::Note_Logged(std::string_view log_name, std::string_view line) {
    if (!m_last)
        return;
    Guarded(m_services, "Flight_Archive.Note_Logged()", Show::silent, [&] {
        // A pilot who keeps no recordings has none to add to.
        if (std::filesystem::exists(Packed_File())) {
            Add_To_Packed_File(Packed_File(), fmt::format("# logged: {}\t{}\n{}\n", log_name, line,
                                                          Format_Fixed(m_end_seconds, 3)));
        }
        m_last->log_name = log_name;
        m_last->logged_row = line;
        Store();
    });
}

void Flight_Archive::Store() {
    std::optional<Flight_Store> store;
    try {
        store.emplace(Flights_Directory(m_services), Store_Use::write, store_patience);
        store->Put(*m_last);
    } catch (const Run_Error& fault) {
        throw Run_Error(fault.Number(), fault.Description() +
                                            "\r\nThe flight's recording is kept; \"norvane-cli "
                                            "flight rebuild\" stores the flight");
    }
    if (!store->Trouble().empty())
        throw Run_Error(error_number::device_io_error, store->Trouble());
    Prune(*store);
}

/// Deletes the oldest recordings. What is known of their flights is kept for ever, so that one goes
/// only when its flight is stored; the store may have been damaged or deleted meanwhile.
void Flight_Archive::Prune(Flight_Store& store) const {
    const auto directory = Flights_Directory(m_services);
    for (const Recording_File& old : Recordings_Beyond(directory, m_settings.OPT_Recordings())) {
        Read_Or_Set_Aside(old.file, [&] {
            if (!store.Has(old.id))
                store.Put(Derive_Flight(old.id, Read_Recording(old.file)));
        });
        std::filesystem::remove(old.file);
    }
}

void Flight_Archive::Take_Leftovers(bool flight_goes_on) {
    const auto directory = Flights_Directory(m_services);
    std::vector<std::filesystem::path> left;
    for (const Recording_File& recording : List_Recordings(directory)) {
        if (!recording.is_packed)
            left.push_back(recording.file);
    }
    const std::string stored =
        m_services.settings.Get(stored_recording::section, stored_recording::name);
    for (const auto& recording : left) {
        if (flight_goes_on && From_Path(recording.filename()) == stored)
            continue;
        Take(recording);
    }
    m_last.reset();
    if (!flight_goes_on)
        Take_Up_Stored(m_services.settings.Get(stored_recording::section, stored_recording::name));
}

/// A finished flight waits for the log: the recording that belongs to it.
void Flight_Archive::Take_Up_Stored(const std::string& stored_name) {
    if (!stored_name.ends_with(packed_ending))
        return;
    Guarded(m_services, "Flight_Archive.Take_Leftovers()", Show::silent, [&] {
        const auto file = Flights_Directory(m_services) / To_Path(stored_name);
        if (std::filesystem::exists(file)) {
            const auto moments = Read_Recording(file);
            m_end_seconds = moments.back().seconds;
            m_last = Derive_Flight(stored_name.substr(0, stored_name.size() - packed_ending.size()),
                                   moments);
        }
    });
}

}  // namespace norvane
