#include "flightlog/log_keeping.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <string>
#include <system_error>
#include <unordered_set>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace fs = std::filesystem;

namespace {

bool Ends_A_Line(char last) {
    return last == '\n' || last == '\r';
}

/// Takes a name of its own: the ending, or the ending with the first number, from 2, that is free.
fs::path Reserve(const fs::path& log, std::string_view ending) {
    for (int number = 1;; ++number) {
        const std::string numbered =
            number == 1 ? std::string(ending) : fmt::format("{}{}", ending, number);
        fs::path file = Beside_Log(log, numbered);
        const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) {
            ::close(descriptor);
            return file;
        }
        if (errno != EEXIST)
            throw File_Error(errno, From_Path(file));
    }
}

/// Writes a file under a name of its own; a name that cannot be filled is given back.
fs::path Write_New(const fs::path& log, std::string_view ending, std::string_view content) {
    fs::path file = Reserve(log, ending);
    try {
        Write_File_Atomically(file, content);
    } catch (...) {
        std::error_code ignored;
        fs::remove(file, ignored);
        throw;
    }
    return file;
}

/// A backup that is larger than the new copy steps back to ".bak1", or to ".bak2" where ".bak1" is
/// a larger one.
void Step_Back(const fs::path& log, const fs::path& backup, std::uintmax_t new_size) {
    std::error_code missing;
    const auto size = fs::file_size(backup, missing);
    if (missing || new_size >= size)
        return;
    const fs::path older = Beside_Log(log, ".bak1");
    const auto older_size = fs::file_size(older, missing);
    fs::rename(backup, missing || size >= older_size ? older : Beside_Log(log, ".bak2"));
}

char Last_Byte(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(-1, std::ios::end);
    char last = 0;
    if (!stream.get(last))
        throw Run_Error(error_number::device_io_error,
                        From_Path(file) + ": its end cannot be read");
    return last;
}

}  // namespace

fs::path Beside_Log(const fs::path& log, std::string_view ending) {
    return log.parent_path() / (log.stem().string() + std::string(ending));
}

void Backup_Log(const fs::path& log) {
    const fs::path backup = Beside_Log(log, ".bak");
    std::error_code ignored;
    if (fs::equivalent(log, backup, ignored)) {
        throw Run_Error(error_number::path_file_access,
                        From_Path(backup) + ": is the log itself and cannot be its backup");
    }
    const fs::path copy = backup.parent_path() / ("." + backup.filename().string() + ".half");
    try {
        // Nothing of what is kept gives way before the new copy is whole.
        Copy_File(log, copy);
        Step_Back(log, backup, fs::file_size(copy));
        // A file renamed over another is sent to the disk at once, which every load would wait for.
        fs::remove(backup);
        fs::rename(copy, backup);
    } catch (...) {
        fs::remove(copy, ignored);
        throw;
    }
}

fs::path Keep_Skipped(const fs::path& log, std::string_view lines) {
    fs::path file = Beside_Log(log, ".skipped");
    const std::string before = fs::exists(file) ? Read_File(file) : std::string();
    std::unordered_set<std::string_view> known;
    for (Line_Reader reader(before); reader.Next();)
        known.insert(reader.Line());
    std::string content = before;
    if (!content.empty() && !Ends_A_Line(content.back()))
        content += cr_lf;
    for (Line_Reader reader(lines); reader.Next();) {
        if (!known.contains(reader.Line()))
            content.append(reader.Line()).append(cr_lf);
    }
    if (content != before)
        Write_File_Atomically(file, content);
    return file;
}

fs::path Keep_Other(const fs::path& log) {
    return Write_New(log, ".other", Read_File(log));
}

fs::path Write_Unsaved(Services& services, const fs::path& log, std::string_view lines) {
    std::string content(lines);
    if (!content.empty() && !Ends_A_Line(content.back()))
        content += cr_lf;
    fs::path file;
    try {
        file = Write_New(log, ".unsaved", content);
    } catch (const std::exception&) {
        file = Write_New(services.program_directory / log.filename(), ".unsaved", content);
    }
    Log_Error(services, "modFunctions.Write_Unsaved()",
              {error_number::path_file_access,
               fmt::format("{}: what was not saved to the flight log is kept in {}", From_Path(log),
                           From_Path(file))},
              Show::silent);
    return file;
}

void Demand_Writable(const fs::path& log) {
    struct stat status {};
    if (::stat(log.c_str(), &status) != 0)
        return;
    constexpr mode_t anybody = 0222;
    // Root may write everything, which is not what the protection of the file meant.
    if ((status.st_mode & anybody) != 0 &&
        (::faccessat(AT_FDCWD, log.c_str(), W_OK, AT_EACCESS) == 0 || errno == ENOSYS)) {
        return;
    }
    throw Run_Error(
        error_number::permission_denied, From_Path(log) + ": is protected from being written",
        fmt::format("The flight log {} is protected from being written, so nothing was saved to "
                    "it.  Please take the protection off the file, then save again.",
                    From_Path(log)));
}

void Append_Lines(const fs::path& file, std::string_view lines, std::string_view line_end) {
    const std::uintmax_t size_before = fs::exists(file) ? fs::file_size(file) : 0;
    std::string added;
    if (size_before > 0 && !Ends_A_Line(Last_Byte(file)))
        added += line_end;
    added += lines;
    added += line_end;
    try {
        Append_To_File(file, added);
    } catch (...) {
        std::error_code ignored;
        fs::resize_file(file, size_before, ignored);
        throw;
    }
}

void Append_To_Log(const fs::path& log, std::string_view line) {
    Demand_Writable(log);
    Append_Lines(log, line, cr_lf);
}

}  // namespace norvane
