#include "flightlog/pick_lists.h"

#include <fmt/format.h>

#include <array>
#include <string_view>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::size_t code_field = 3;
constexpr std::size_t fields_needed = 5;

}  // namespace

Airport_Picks Read_Airport_Picks(const std::filesystem::path& file) {
    Airport_Picks picks;
    const std::string content = Read_File(file);
    for (Line_Reader reader(content); reader.Next();) {
        std::string_view rest = reader.Line();
        if (rest.empty() || Contains(rest, "//"))
            continue;
        std::array<std::string_view, fields_needed> fields;
        std::size_t found = 0;
        for (bool more = true; more && found < fields_needed; ++found) {
            fields.at(found) = rest.substr(0, rest.find(field_separator));
            more = fields.at(found).size() < rest.size();
            rest.remove_prefix(fields.at(found).size() + (more ? 1 : 0));
        }
        if (found < fields_needed) {
            picks.failure =
                fmt::format("{}, line {}: an airport has {} fields, here are {}", From_Path(file),
                            reader.Line_Number(), fields_needed, found);
            break;
        }
        picks.airports.push_back(
            {std::string(fields.at(code_field)), std::string(fields.at(code_field + 1))});
    }
    // The list stays for as long as the program runs.
    picks.airports.shrink_to_fit();
    return picks;
}

std::vector<std::string> Read_List_File(const std::filesystem::path& file) {
    const std::string content = Read_File(file);
    Line_Reader reader(content);
    if (!reader.Next())
        return {};
    std::vector<std::string> entries = Split(reader.Line(), list_separator);
    std::erase(entries, std::string());
    return entries;
}

}  // namespace norvane
