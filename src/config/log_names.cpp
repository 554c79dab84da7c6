#include "config/log_names.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "common/code_page.h"
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

/// Names of the regular files of the directory "logs", in name order, and where they are: a name
/// may have been written with characters that its text does not have.
std::vector<std::pair<std::string, std::filesystem::path>> Log_Files(const Services& services) {
    std::vector<std::pair<std::string, std::filesystem::path>> files;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(Logs_Directory(services), failure), end;
         !failure && entry != end; entry.increment(failure)) {
        std::error_code unknown;
        const std::string name = From_Path(entry->path().filename());
        if (entry->is_regular_file(unknown) && name.size() > log_extension.size() &&
            Equal_No_Case(name.substr(name.size() - log_extension.size()), log_extension)) {
            files.emplace_back(name, entry->path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
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

std::vector<std::string> List_Logs(const Services& services) {
    std::vector<std::string> logs;
    for (const auto& [name, file] : Log_Files(services))
        logs.push_back(name.substr(0, Find_No_Case(name, log_extension)));
    return logs;
}

std::filesystem::path Log_Path(const Services& services, std::string_view name) {
    const std::string file_name = std::string(name) + std::string(log_extension);
    auto exact = Logs_Directory(services) / To_Path(file_name);
    std::error_code failure;
    if (std::filesystem::exists(exact, failure))
        return exact;
    for (const auto& [other, file] : Log_Files(services)) {
        if (Equal_No_Case(other, file_name))
            return file;
    }
    return exact;
}

}  // namespace norvane
