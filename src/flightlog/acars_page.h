#pragma once
// The page of one flight, "ACARS Report": a section about the aircraft, one about the flight with
// the pilot's and the airline's own fields behind it, and four texts. The flight log fills it from
// a row, the ACARS panel from what it shows; each has its rows as a table.

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "flightlog/html_writers.h"

namespace norvane {

struct ACARS_Page {
    std::vector<Field_Row> aircraft;
    std::vector<Field_Row> flight;
    std::string wx_origin;
    std::string wx_destination;
    std::string flight_plan;
    std::string comments;
};

/// Raises when it cannot be written; the report's path.
std::filesystem::path Write_ACARS_Page(const Services& services, const ACARS_Page& page);

/// The pilot's or the airline's own fields behind the flight's: a spacer, then rows of three.
void Add_Own_Fields(ACARS_Page& page, std::span<const HTML_Pair> fields);

/// A row as a table states it; a source says where a value is found.
template <class Source>
struct Row_Plan {
    struct Pair {
        std::string_view label;
        /// None: the label is the value, too.
        std::optional<Source> source;
    };
    std::array<Pair, 3> pairs;
    Row_Kind kind = Row_Kind::normal;
};

template <class Source>
[[nodiscard]] constexpr Row_Plan<Source> Planned_Spacer() {
    return {{{{blank, {}}, {blank, {}}, {blank, {}}}}, Row_Kind::normal};
}

/// The rows with their values, `value_of` telling that of a source.
template <class Plans, class Value_Of>
[[nodiscard]] std::vector<Field_Row> Filled_Rows(const Plans& plans, const Value_Of& value_of) {
    std::vector<Field_Row> rows;
    for (const auto& plan : plans) {
        Field_Row& row = rows.emplace_back();
        row.kind = plan.kind;
        for (std::size_t i = 0; i < row.pairs.size(); ++i) {
            const auto& [label, source] = plan.pairs[i];
            row.pairs[i] = {std::string(label), std::string(source ? value_of(*source) : label)};
        }
    }
    return rows;
}

}  // namespace norvane
