#include "flightlog/log_file.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>
#include <exception>
#include <future>
#include <utility>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_reading.h"

namespace norvane {

namespace {

constexpr std::string_view load_procedure = "modFunctions.Load_XArray()";

/// What the error log says of the lines set aside.
std::string Report_Of(const Log_Reading& reading, const std::filesystem::path& log) {
    std::string text = From_Path(log) + ": kept in " + From_Path(Beside_Log(log, ".skipped"));
    if (!reading.undated_lines.empty())
        text += "; lines without a date: " + Line_Numbers(reading.undated_lines);
    if (!reading.long_lines.empty()) {
        text += fmt::format("; lines with more than {} fields: {}", log_column_count,
                            Line_Numbers(reading.long_lines));
    }
    return text;
}

/// A draft that is cut to nothing and filled again is sent to the disk at once, in the way of the
/// log itself; so a new one is made, but where it leads somewhere else.
void Begin_Draft(const std::filesystem::path& draft) {
    if (!std::filesystem::is_symlink(draft))
        std::filesystem::remove(draft);
    Write_File(draft, {});
}

void End_Draft(const std::filesystem::path& draft) {
    std::error_code ignored;
    if (!std::filesystem::is_symlink(draft, ignored))
        std::filesystem::remove(draft, ignored);
}

/// The failure in the pilot's words.
Run_Error Unsaved(const Run_Error& failure, const std::filesystem::path& log) {
    const std::string_view remedy = failure.Number() == error_number::disk_full
                                        ? "Please make room on the disk, then click \"Save\"."
                                        : "Please look under \"Details\" what kept it from being "
                                          "written, mend that, then click \"Save\".";
    return {failure.Number(), failure.Description(),
            fmt::format("The flight log was not saved.  Its file {} is as it was before, and every "
                        "flight and change is still here: nothing is lost while Norvane runs.  {}",
                        From_Path(log), remedy)};
}

}  // namespace

Log_File::Log_File(Services& services, std::filesystem::path path)
    : m_services(services), m_path(std::move(path)) {}

std::optional<Log_File::Stamp> Log_File::Stamp_Now() const {
    struct stat status {};
    if (::stat(m_path.c_str(), &status) != 0) {
        if (errno == ENOENT)
            return std::nullopt;
        throw File_Error(errno, From_Path(m_path));
    }
    return Stamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                 status.st_mtim.tv_nsec};
}

std::vector<Log_File::Trouble> Log_File::Load_XArray(Log_Table& table) {
    std::vector<Trouble> troubles;
    m_loaded = false;
    try {
        // Taken before the file is read: a change while it is being read counts as one.
        m_stamp = Stamp_Now();
        if (m_stamp)
            Load(table, troubles);
        m_loaded = true;
    } catch (...) {
        troubles.push_back({load_procedure, Caught_Error()});
    }
    return troubles;
}

void Log_File::Load(Log_Table& table, std::vector<Trouble>& troubles) {
    std::string content = Read_File(m_path);
    // What is refused takes no readable backup's place.
    Demand_Code_Page(content, m_path);
    // Both only read: the copy is made while the lines are found.
    auto backup = std::async([&] { Backup_Log(m_path); });
    Log_Reading reading = Parse_Log(std::move(content));
    Sort_XArray(reading.table, 0, m_services.regional.short_date);
    try {
        backup.get();
    } catch (...) {
        troubles.push_back({"modFunctions.Backup_Log()", Caught_Error()});
    }
    if (!reading.set_aside.empty()) {
        Log_Error(m_services, load_procedure,
                  {error_number::type_mismatch, Report_Of(reading, m_path)}, Show::silent);
        Set_Aside(reading.set_aside);
    }
    table = std::move(reading.table);
}

void Log_File::Set_Aside(std::string_view lines) {
    m_set_aside += lines;
    Guarded(m_services, "modFunctions.Keep_Skipped()", Show::silent, [&] { Keep_Set_Aside(); });
}

void Log_File::Keep_Set_Aside() {
    if (m_set_aside.empty())
        return;
    Keep_Skipped(m_path, m_set_aside);
    m_set_aside.clear();
}

/// What to tell the pilot of a file that another program changed; empty when none did.
std::string Log_File::Keep_Changed_File() {
    const auto now = Stamp_Now();
    if (!now || now == m_stamp)
        return {};
    std::string text = fmt::format(
        "{} was changed by another program since it was loaded.  That version is kept as {}",
        From_Path(m_path), From_Path(Keep_Other(m_path)));
    // It is kept: a save that fails from here on and is tried again has nothing more to keep.
    m_stamp = now;
    Log_Error(m_services, "modFunctions.Save_XArray()", {error_number::path_file_access, text},
              Show::silent);
    return text;
}

std::string Log_File::Save_XArray(const Log_Table& table) {
    if (!m_loaded) {
        throw Run_Error(error_number::path_file_access,
                        From_Path(m_path) + ": was not loaded to its end and is not written over");
    }
    Demand_Writable(m_path);
    Keep_Set_Aside();
    std::filesystem::create_directories(m_path.parent_path());
    std::string notice = Keep_Changed_File();
    Write(table);
    m_stamp = Stamp_Now();
    return notice;
}

void Log_File::Write(const Log_Table& table) {
    const auto draft = m_services.program_directory / "templog.txt";
    try {
        Begin_Draft(draft);
        Atomic_File file(m_path);
        // The draft takes each piece first: a disk without room for it leaves the log alone.
        For_Each_Piece(table, [&](std::string_view piece) {
            Append_To_File(draft, piece);
            file.Write(piece);
        });
        file.Commit();
    } catch (...) {
        // Half a draft is worth nothing, and may hold the room that what is kept beside the log
        // needs.
        End_Draft(draft);
        throw Unsaved(Caught_Error(), m_path);
    }
}

}  // namespace norvane
