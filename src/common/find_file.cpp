#include "common/find_file.h"

#include <dirent.h>

#include <algorithm>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "common/code_page.h"
#include "common/log_error.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Written with a byte a character, each of which the code page has.
bool Is_Plain(std::string_view name) {
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct Close_Listing {
    void operator()(DIR* listing) const { ::closedir(listing); }
};

/// Names in `directory` equal to `name` but for letter case, in name order.
std::vector<std::string> Matching_Names(const std::filesystem::path& directory,
                                        const std::string& name) {
    std::vector<std::string> matches;
    const std::string wanted = From_Utf8(name);
    const bool plain = Is_Plain(name);
    // A path of each entry would cost more than all the rest: every start looks for dozens of
    // files.
    const std::unique_ptr<DIR, Close_Listing> listing(::opendir(directory.c_str()));
    while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr) {
        const std::string_view found = entry->d_name;
        if (plain && found.size() != name.size() && Is_Plain(found))
            continue;
        if (Equal_No_Case(From_Utf8(found), wanted))
            matches.emplace_back(found);
    }
    std::sort(matches.begin(), matches.end());
    return matches;
}

constexpr std::string_view separators = "\\/";

bool Is_Separator(char character) {
    return Contains(separators, std::string_view(&character, 1));
}

bool Same_In_Path(char a, char b) {
    return Is_Separator(a) ? Is_Separator(b) : Lower(a) == Lower(b);
}

/// The simulator's `path` is `directory` or lies below it.
bool Lies_Below(std::string_view path, std::string_view directory) {
    return path.size() >= directory.size() &&
           std::equal(directory.begin(), directory.end(), path.begin(), Same_In_Path) &&
           (path.size() == directory.size() || Is_Separator(path[directory.size()]));
}

[[noreturn]] void Refuse_Mapping(const std::string& text, const std::string& fault) {
    throw Run_Error(error_number::invalid_call,
                    "\"" + text + "\" is no mapping of directories: " + fault);
}

}  // namespace

std::filesystem::path Find_Path(Services& services, const std::filesystem::path& directory,
                                std::string_view relative) {
    const std::filesystem::path wanted = To_Path(relative);
    std::filesystem::path found = wanted.is_absolute() ? wanted.root_path() : directory;
    for (const auto& part : wanted.relative_path()) {
        if (part.empty() || part == "." || part == "..") {
            found /= part;
            continue;
        }
        const auto matches = Matching_Names(found, part.string());
        if (matches.size() > 1) {
            Log_Error(services, "modFunctions.Find_Path()",
                      {error_number::path_file_access,
                       From_Path(found / matches[0]) + ": taken before " + From_Utf8(matches[1]) +
                           ", which differs in letter case only"},
                      Show::silent);
        }
        found /= matches.empty() ? part : std::filesystem::path(matches[0]);
    }
    return found;
}

std::filesystem::path Find_Simulator_Path(Services& services, std::string_view path) {
    const Path_Mapping* best = nullptr;
    for (const Path_Mapping& mapping : services.path_mappings) {
        const bool longer = best == nullptr || mapping.simulators.size() > best->simulators.size();
        if (longer && Lies_Below(path, mapping.simulators))
            best = &mapping;
    }
    if (best == nullptr)
        return Find_Path(services, services.program_directory, path);
    path.remove_prefix(best->simulators.size());
    path.remove_prefix(std::min(path.find_first_not_of(separators), path.size()));
    return Find_Path(services, best->ours, path);
}

Path_Mapping Parse_Path_Mapping(const std::string& text) {
    const auto equals = text.find('=');
    if (equals == std::string::npos)
        Refuse_Mapping(text, "the simulator's directory, \"=\" and the one here are wanted");
    std::string simulators = From_Utf8(text.substr(0, equals));
    while (!simulators.empty() && Is_Separator(simulators.back()))
        simulators.pop_back();
    if (simulators.empty())
        Refuse_Mapping(text, "the simulator's directory is missing before \"=\"");
    const std::filesystem::path ours = text.substr(equals + 1);
    if (!ours.is_absolute())
        Refuse_Mapping(text, "an absolute path is wanted behind \"=\"");
    return {simulators, ours};
}

std::string Path_Mapping_Fault(const std::string& text) {
    try {
        static_cast<void>(Parse_Path_Mapping(text));
        return {};
    } catch (const Run_Error& error) {
        return To_Utf8(error.Description());
    }
}

}  // namespace norvane
