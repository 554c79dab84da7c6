#include "flightlog/unsaved_rows.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <unordered_set>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/log_names.h"
#include "flightlog/log_line.h"
#include "flightlog/log_reading.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

using Lines = std::unordered_set<std::string>;

/// "My Flight Log.unsaved", "My Flight Log.unsaved2", ...
bool Is_Unsaved_File(const fs::directory_entry& entry) {
    constexpr std::string_view ending = ".unsaved";
    std::error_code unknown;
    const std::string extension = entry.path().extension().string();
    return entry.is_regular_file(unknown) && extension.starts_with(ending) &&
           extension.find_first_not_of("0123456789", ending.size()) == std::string::npos;
}

/// Where `Write_Unsaved` puts them, in name order.
std::vector<fs::path> Unsaved_Files(const Services& services) {
    std::vector<fs::path> files;
    for (const fs::path& directory :
         {services.program_directory / "logs", services.program_directory}) {
        std::error_code failure;
        for (fs::directory_iterator entry(directory, failure), end; !failure && entry != end;
             entry.increment(failure)) {
            if (Is_Unsaved_File(*entry))
                files.push_back(entry->path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The rows of all logs, whatever log they were meant for: what is in one is not lost.
Lines Lines_In_Logs(Services& services) {
    Lines lines;
    for (const std::string& name : List_Logs(services)) {
        // A log that cannot be read holds nothing that can be told from what is unsaved.
        Guarded(services, "modFunctions.Find_Unsaved_Rows()", Show::silent, [&] {
            for (std::string& row : All_Rows(Read_File(Log_Path(services, name))))
                lines.insert(std::move(row));
        });
    }
    return lines;
}

/// All that the line holds stands in a log.
bool Is_Saved(std::string_view line, const Lines& in_logs) {
    const std::vector<std::string> rows = All_Rows(std::string(line));
    const bool holds_more =
        line.find_first_not_of(field_separator, First_Fields(line).size()) != line.npos;
    return !holds_more && (rows.empty() || in_logs.contains(rows.front()));
}

/// A file without those of its lines that are rows of a log; the others as they are.
void Drop_From(const fs::path& file, const Lines& in_logs) {
    const std::string before = Read_File(file);
    std::string left;
    for (Line_Reader reader(before); reader.Next();) {
        if (!Is_Saved(reader.Line(), in_logs))
            left.append(reader.Line()).append(cr_lf);
    }
    if (left.empty())
        fs::remove(file);
    else if (left != before)
        Write_File_Atomically(file, left);
}

}  // namespace

std::vector<Unsaved_Row> Find_Unsaved_Rows(Services& services) {
    std::vector<Unsaved_Row> found;
    const std::vector<fs::path> files = Unsaved_Files(services);
    if (files.empty())
        return found;
    Lines known = Lines_In_Logs(services);
    for (const fs::path& file : files) {
        Guarded(services, "modFunctions.Find_Unsaved_Rows()", Show::silent, [&] {
            for (const std::string& row : All_Rows(Read_File(file))) {
                if (known.insert(row).second)
                    found.push_back({file, row});
            }
        });
    }
    return found;
}

void Drop_Saved_Rows(Services& services) {
    const Lines in_logs = Lines_In_Logs(services);
    for (const fs::path& file : Unsaved_Files(services))
        Drop_From(file, in_logs);
}

}  // namespace norvane
