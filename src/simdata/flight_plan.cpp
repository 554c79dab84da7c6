#include "simdata/flight_plan.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

#include "common/code_page.h"
#include "common/flight_level.h"
#include "common/line_reader.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "config/profile_reader.h"

namespace norvane {

namespace {

constexpr std::string_view plan_section = "FLIGHTPLAN";

/// Adds an identifier or airway; blank ones add nothing.
void Append_To_Route(std::string& route, std::string_view part) {
    const auto trimmed = Trimmed_View(part);
    if (trimmed.empty())
        return;
    if (!route.empty())
        route += '.';
    route += trimmed;
}

enum class Byte_Order { little, big };

std::string From_Utf16_Bytes(std::string_view bytes, Byte_Order order) {
    const std::size_t low = order == Byte_Order::little ? 0 : 1;
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low_byte = static_cast<std::uint8_t>(bytes[i + low]);
        const auto high_byte = static_cast<std::uint8_t>(bytes[i + 1 - low]);
        units += static_cast<char16_t>(high_byte << 8U | low_byte);
    }
    return From_Utf16(units);
}

std::string To_Code_Page(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE"))
        return From_Utf16_Bytes(bytes.substr(2), Byte_Order::little);
    if (bytes.starts_with("\xFE\xFF"))
        return From_Utf16_Bytes(bytes.substr(2), Byte_Order::big);
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return From_Utf8(bytes.substr(3));
    // A plan's first character is "[" or "<", so that UTF-16 without a mark shows at once.
    if (bytes.size() > 1 && bytes[0] != '\0' && bytes[1] == '\0')
        return From_Utf16_Bytes(bytes, Byte_Order::little);
    if (bytes.size() > 1 && bytes[0] == '\0' && bytes[1] != '\0')
        return From_Utf16_Bytes(bytes, Byte_Order::big);
    return Is_Utf8(bytes) ? From_Utf8(bytes) : std::string(bytes);
}

/// The values of the plan's section.
class Ini_Plan {
  public:
    explicit Ini_Plan(const std::string& text)
        : m_values(Profile::Of_Text(text).Values(plan_section)) {}

    [[nodiscard]] std::string Value(std::string_view key) const {
        const auto found = m_values.find(Lower(key));
        return found == m_values.end() ? std::string() : found->second;
    }
    [[nodiscard]] std::string Airport_Name(std::string_view key) const {
        return Replace_All(Value(key), "_", " ");
    }
    [[nodiscard]] std::string Waypoint(int number) const {
        return Without_Comment(Value(fmt::format("WAYPOINT.{}", number)));
    }

  private:
    std::map<std::string, std::string> m_values;
};

std::string Cruise_Level(const std::string& altitude, std::string_view file) {
    const auto altitude_ft = Parse_Number(altitude);
    if (!altitude_ft) {
        throw Run_Error(
            error_number::type_mismatch,
            fmt::format("CRUISING_ALTITUDE \"{}\" is not a number in {}", altitude, file));
    }
    if (std::abs(*altitude_ft) > std::numeric_limits<std::int32_t>::max()) {
        throw Run_Error(error_number::overflow,
                        fmt::format("CRUISING_ALTITUDE {} is too large in {}", altitude, file));
    }
    return Format_FlightLevel(Round_Half_Even(*altitude_ft));
}

struct Waypoint {
    std::string identifier;
    std::string airway;
};

Waypoint Read_Waypoint(const std::string& value, int number, std::string_view file) {
    constexpr std::size_t short_layout_parts = 6;
    constexpr std::size_t long_layout_airway = 8;
    const auto parts = Split(value, ',');
    if (parts.size() == short_layout_parts)
        return {Trim(parts.front()), parts.back()};
    if (parts.size() <= long_layout_airway) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("WAYPOINT.{} has {} parts in {}", number, parts.size(), file));
    }
    return {Trim(parts[1]), parts[long_layout_airway]};
}

struct Xml_Value {
    std::string_view tag;
    std::string Flight_Plan::*member;
};

constexpr std::array<Xml_Value, 6> xml_values{{
    {"<FPType>", &Flight_Plan::type},
    {"<CruisingAlt>", &Flight_Plan::flight_level},
    {"<DepartureID>", &Flight_Plan::origin_icao},
    {"<DestinationID>", &Flight_Plan::destination_icao},
    {"<DepartureName>", &Flight_Plan::origin_name},
    {"<DestinationName>", &Flight_Plan::destination_name},
}};
constexpr std::string_view waypoint_element = "<ATCWaypoint id";
constexpr std::string_view waypoint_tag = "<ATCWaypoint id=\"";
constexpr std::string_view airway_tag = "<ATCAirway>";

[[noreturn]] void Refuse_Unclosed(std::string_view tag) {
    throw Run_Error(error_number::invalid_call, fmt::format("{} is not closed", tag));
}

/// One element as it stands. Tags are looked for in its lower case, made once: an element may be a
/// whole file long.
class Element {
  public:
    explicit Element(std::string_view text) : m_text(text), m_lower(Lower(text)) {}

    [[nodiscard]] std::string_view Text() const { return m_text; }
    [[nodiscard]] std::size_t Find(std::string_view tag) const { return m_lower.find(Lower(tag)); }
    [[nodiscard]] bool Has(std::string_view tag) const { return Find(tag) != std::string::npos; }

  private:
    std::string_view m_text;
    std::string m_lower;
};

std::string Tag_Value(const Element& element, std::string_view tag) {
    const auto start = element.Find(tag) + tag.size();
    const auto end = element.Text().find('<', start);
    if (end == std::string_view::npos)
        Refuse_Unclosed(tag);
    return Trim(Replace_All(element.Text().substr(start, end - start), "&apos;", "'"));
}

std::string_view Waypoint_Id(const Element& element) {
    const auto start = element.Find(waypoint_element) + waypoint_tag.size();
    const auto end = element.Text().find('>', start);
    if (end == std::string_view::npos || end == start)
        Refuse_Unclosed(waypoint_element);
    // The closing quote stands before the ">", or earlier where more follows in the element.
    return Before(element.Text().substr(start, end - 1 - start), "\"");
}

void Read_Element(const Element& element, Flight_Plan& plan, std::string& route) {
    for (const auto& [tag, member] : xml_values) {
        if (element.Has(tag)) {
            plan.*member = Tag_Value(element, tag);
            return;
        }
    }
    if (element.Has(waypoint_element))
        Append_To_Route(route, Waypoint_Id(element));
    else if (element.Has(airway_tag))
        Append_To_Route(route, Tag_Value(element, airway_tag));
}

/// Where the line's first element ends and another begins: at a "<", other than a closing one, that
/// follows a ">". An element keeps its own closing tag.
std::size_t Next_Element(std::string_view line) {
    for (auto end = line.find('>'); end != std::string_view::npos; end = line.find('>', end + 1)) {
        const auto next = line.find_first_not_of(" \t", end + 1);
        if (next == std::string_view::npos)
            break;
        if (line[next] == '<' && !line.substr(next).starts_with("</"))
            return next;
    }
    return line.size();
}

void Read_Xml_Line(std::string_view line, Flight_Plan& plan, std::string& route) {
    while (Contains(line, "<")) {
        const auto next = Next_Element(line);
        Read_Element(Element(line.substr(0, next)), plan, route);
        line.remove_prefix(next);
    }
}

}  // namespace

std::string Flight_Plan_Text(std::string_view bytes) {
    return Clean_Field(To_Code_Page(bytes), Field_Lines::many);
}

bool Is_Ini_Flight_Plan(const std::string& text) {
    return !Profile::Of_Text(text).Value(plan_section, "TYPE").empty();
}

void Read_Ini_Flight_Plan(const std::string& text, std::string_view file, Flight_Plan& plan) {
    const Ini_Plan source(text);
    plan.type = source.Value("TYPE");
    plan.flight_level = Cruise_Level(source.Value("CRUISING_ALTITUDE"), file);
    plan.origin_name = source.Airport_Name("DEPARTURE_NAME");
    plan.destination_name = source.Airport_Name("DESTINATION_NAME");
    std::string route;
    std::string last_identifier;
    for (int number = 0;; ++number) {
        const std::string value = source.Waypoint(number);
        if (value.empty())
            break;
        const Waypoint waypoint = Read_Waypoint(value, number, file);
        if (number == 0)
            plan.origin_icao = waypoint.identifier;
        Append_To_Route(route, waypoint.identifier);
        Append_To_Route(route, waypoint.airway);
        last_identifier = waypoint.identifier;
    }
    plan.destination_icao = last_identifier;
    plan.route = route;
}

void Read_Xml_Flight_Plan(std::string_view text, std::string_view file, Flight_Plan& plan) {
    std::string route;
    for (Line_Reader lines(text); lines.Next();) {
        try {
            Read_Xml_Line(lines.Line(), plan, route);
        } catch (const Run_Error& error) {
            throw Run_Error(error.Number(), fmt::format("{} in line {} of {}", error.Description(),
                                                        lines.Line_Number(), file));
        }
    }
    plan.route = route;
}

}  // namespace norvane
