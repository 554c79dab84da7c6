#include "config/log_names.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <tuple>
#include <utility>

#include "common/code_page.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view log_extension = ".txt";
constexpr std::size_t longest_log_name = 100;

/// Names that some systems keep for devices, with any extension.
constexpr std::array<std::string_view, 22> device_names{
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
    "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};

bool Is_Device_Name(std::string_view name) {
    const std::string_view stem = Trimmed_View(Before(name, "."));
    return std::any_of(device_names.begin(), device_names.end(),
                       [&](std::string_view device) { return Equal_No_Case(device, stem); });
}

bool Is_Control_Character(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7F;
}

std::filesystem::path Logs_Directory(const Services& services) {
    return services.program_directory / "logs";
}

/// A file of the directory "logs", under the name that its own one gives in the code page.
struct Log_File_Name {
    std::string name;
    std::filesystem::path file;
    /// The file's own name has nothing that the code page lacks.
    bool exact = true;
    /// Another file is spelled alike, or a character has no letter near it.
    bool hidden = false;
};

/// Only a spelling that several names share is hidden: a single "Lodz" for a file with accents
/// that the code page lacks means one log.
void Hide_Look_Alikes(std::vector<Log_File_Name>& files) {
    for (Log_File_Name& log : files) {
        const auto alike = std::count_if(files.begin(), files.end(), [&](const auto& other) {
            return Equal_No_Case(other.name, log.name);
        });
        log.hidden = !log.exact && (alike > 1 || log.name.find('?') != std::string::npos);
    }
}

/// The regular files of the directory "logs" with a log's extension, in name order.
std::vector<Log_File_Name> Log_Files(const Services& services) {
    std::vector<Log_File_Name> files;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(Logs_Directory(services), failure), end;
         !failure && entry != end; entry.increment(failure)) {
        std::error_code unknown;
        const std::string own_name = entry->path().filename().string();
        const std::string name = From_Utf8(own_name);
        if (entry->is_regular_file(unknown) && name.size() > log_extension.size() &&
            Equal_No_Case(name.substr(name.size() - log_extension.size()), log_extension)) {
            files.push_back({name, entry->path(), To_Utf8(name) == own_name, false});
        }
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
        return std::tie(a.name, a.file) < std::tie(b.name, b.file);
    });
    Hide_Look_Alikes(files);
    return files;
}

std::string File_Name_Of(std::string_view log) {
    return std::string(log) + std::string(log_extension);
}

}  // namespace

std::string Check_Log_Name(std::string_view name, const std::vector<std::string>& existing) {
    if (Trimmed_View(name).empty())
        return "The name of a flight log must not be empty.";
    if (Trimmed_View(name) != name)
        return "The name of a flight log must not begin or end with a blank.";
    if (name.find_first_of("/\\") != std::string_view::npos)
        return "The name of a flight log must not contain \"/\" or \"\\\".";
    if (std::any_of(name.begin(), name.end(), Is_Control_Character))
        return "The name of a flight log must not contain a control character.";
    if (name.find_first_of(":*?\"<>|") != std::string_view::npos)
        return "The name of a flight log must not contain any of : * ? \" < > |";
    if (Contains_No_Case(name, log_extension))
        return "The name of a flight log must not contain \".txt\".";
    if (name.front() == '.')
        return "The name of a flight log must not begin with a point.";
    if (Is_Device_Name(name))
        return "\"" + std::string(name) + "\" is the name of a device.";
    if (name.size() > longest_log_name)
        return "The name of a flight log must not be longer than 100 characters.";
    for (const auto& other : existing) {
        if (Equal_No_Case(other, name))
            return "There is a flight log named \"" + other + "\" already.";
    }
    return {};
}

std::string Log_Name_From_Utf8(std::string_view utf8) {
    std::string name = From_Utf8(utf8);
    if (To_Utf8(name) == utf8)
        return name;
    const std::string fault =
        "The name of a flight log must be written with the characters of Western Europe "
        "(Windows-1252); this one would be taken for \"" +
        name + "\".";
    throw Run_Error(error_number::invalid_call, fault, fault);
}

std::vector<std::string> List_Logs(const Services& services) {
    std::vector<std::string> logs;
    for (const Log_File_Name& log : Log_Files(services)) {
        if (!log.hidden)
            logs.push_back(log.name.substr(0, Find_No_Case(log.name, log_extension)));
    }
    return logs;
}

std::vector<std::filesystem::path> Hidden_Logs(const Services& services) {
    std::vector<std::filesystem::path> hidden;
    for (Log_File_Name& log : Log_Files(services)) {
        if (log.hidden)
            hidden.push_back(std::move(log.file));
    }
    return hidden;
}

std::string Hidden_Log_Fault(const Services& services, std::string_view name) {
    const auto files = Log_Files(services);
    const auto spelled = [&](const Log_File_Name& log) {
        return Equal_No_Case(log.name, File_Name_Of(name));
    };
    const auto is_open = [&](const Log_File_Name& log) { return spelled(log) && !log.hidden; };
    if (std::none_of(files.begin(), files.end(), spelled) ||
        std::any_of(files.begin(), files.end(), is_open)) {
        return {};
    }
    return "The flight log \"" + std::string(name) +
           "\" cannot be told from another one: the name of its file has characters that are not "
           "those of Western Europe (Windows-1252).  Nothing was read from it or written to it.  "
           "Please give the file in \"logs\" another name.";
}

std::string New_Log_Fault(const Services& services, std::string_view name) {
    const std::string hidden = Hidden_Log_Fault(services, name);
    return hidden.empty() ? Check_Log_Name(name, List_Logs(services)) : hidden;
}

std::filesystem::path Log_Path(const Services& services, std::string_view name) {
    auto exact = Logs_Directory(services) / To_Path(File_Name_Of(name));
    std::error_code failure;
    if (std::filesystem::exists(exact, failure))
        return exact;
    for (const Log_File_Name& log : Log_Files(services)) {
        if (!log.hidden && Equal_No_Case(log.name, File_Name_Of(name)))
            return log.file;
    }
    return exact;
}

}  // namespace norvane
