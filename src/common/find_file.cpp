#include "common/find_file.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

#include "common/code_page.h"
#include "common/log_error.h"
#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Names in `directory` equal to `name` but for letter case, in name order.
std::vector<std::string> Matching_Names(const std::filesystem::path& directory,
                                        const std::string& name) {
    std::vector<std::string> matches;
    std::error_code failure;
    const std::string wanted = From_Utf8(name);
    for (std::filesystem::directory_iterator entry(directory, failure), end;
         !failure && entry != end; entry.increment(failure)) {
        std::string found = entry->path().filename().string();
        if (Equal_No_Case(From_Utf8(found), wanted))
            matches.push_back(std::move(found));
    }
    std::sort(matches.begin(), matches.end());
    return matches;
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

}  // namespace norvane
