#pragma once
// A program directory with the flight log panel in it, for the panel's tests.

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "flightlog/log_reading.h"
#include "logentry/cls_log_entry.h"
#include "logpanel/uc_flight_log.h"
#include "support/test_world.h"

namespace norvane::test {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

/// A line of a log: the fields given, the others up to the 53rd empty, CR LF.
inline std::string Full_Line(std::string_view fields) {
    std::string line(fields);
    const auto separators = std::count(line.begin(), line.end(), '|');
    return line + std::string(static_cast<std::size_t>(52 - separators), '|') + "\r\n";
}

class Log_World : public Test_World {
  protected:
    Log_World() { fs::create_directories(directory / "logs"); }
    /// Starts the panel on what the directory holds.
    void Start() {
        settings.emplace(services);
        va_settings.emplace(services);
        entry.emplace(services);
        log.emplace(services, *settings, *va_settings, *entry);
        log->UCI();
        entry->NewLogEntrySaveOK.Connect([this] { answers += "ok "; });
        entry->NewLogEntrySaveFail.Connect([this] { answers += "fail "; });
    }
    /// The program ends, unless the pilot calls it off.
    bool Close() {
        const bool goes_on = log->Closing();
        if (goes_on)
            log->End();
        return goes_on;
    }
    /// A flight comes to its end; what stands in the entry besides is logged with it.
    void Log_Flight(std::string_view date, std::string_view time_out = "0900") {
        entry->Set(Log_Field::FLIGHT_DATE, date);
        entry->Set(Log_Field::TIME_OUT, time_out);
        entry->New_Log_Entry_Save();
    }
    void Delete_Row(std::size_t row) {
        log->Set_Current_Row(row);
        log->Delete_LogEntry();
    }
    /// A directory in the place of the draft makes every save fail.
    void Block_Saves() const {
        fs::remove(directory / "templog.txt");
        fs::create_directories(directory / "templog.txt" / "x");
    }
    void Unblock_Saves() const { fs::remove_all(directory / "templog.txt"); }
    /// The texts of the boxes so far.
    Texts Take_Boxes() {
        Texts texts;
        for (const auto& box : desktop.boxes)
            texts.push_back(box.text);
        desktop.boxes.clear();
        return texts;
    }
    /// What the error log says, in one text.
    std::string Errors() { return Join(Take_Errors(), ""); }
    /// The names of the files in "logs".
    [[nodiscard]] std::string Logs() const {
        Texts names;
        for (const auto& item : fs::directory_iterator(directory / "logs"))
            names.push_back(item.path().filename());
        std::sort(names.begin(), names.end());
        return Join(names, " ");
    }
    [[nodiscard]] bool Exists(const std::string& relative) const {
        return fs::exists(directory / relative);
    }

    const std::string log_file = "logs/My Flight Log.txt";
    const std::string unsaved = "logs/My Flight Log.unsaved";
    std::optional<clsAppSettings> settings;
    std::optional<clsVASettings> va_settings;
    std::optional<clsLogEntry> entry;
    std::optional<ucFlightLog> log;
    std::string answers;
};

}  // namespace norvane::test
