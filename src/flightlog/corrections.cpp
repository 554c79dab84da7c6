#include "flightlog/corrections.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <system_error>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_line.h"
#include "flightlog/log_reading.h"

namespace norvane {

namespace {

// In the order of the file's keys.
using Json = nlohmann::ordered_json;

/// The line with another text in one of its 53 fields.
std::string With_Field(const std::string& line, std::size_t column, std::string_view text) {
    const std::size_t begin = Begin_Of_Field(line, column);
    std::string changed = line;
    return changed.replace(begin, Field_At(line, begin).size(), text);
}

std::string Text_At(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string())
        return {};
    return Clean_Field(From_Utf8(found->get_ref<const std::string&>()), Field_Lines::list_entries);
}

std::string Moment_Text(const Date_Time& moment) {
    return fmt::format("{} {:02}:{:02}:{:02}", Format_Iso_Date(moment.date), moment.time.hour,
                       moment.time.minute, moment.time.second);
}

}  // namespace

std::filesystem::path Corrections::File() const {
    return m_services.program_directory / "flights" / "corrections.jsonl";
}

std::optional<Corrections::Step> Corrections::Step_Of(std::string_view json_line) {
    const Json object = Json::parse(json_line, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    const std::string before = Text_At(object, "before");
    const std::string after = Text_At(object, "after");
    if (before.empty() || after.empty())
        return std::nullopt;
    Step step{Whole_Line(before), Whole_Line(after), std::nullopt};
    const auto column = object.find("column");
    if (column == object.end())
        return step;
    if (!column->is_number_unsigned() || column->get<std::uint64_t>() >= log_column_count)
        return std::nullopt;
    const auto number = column->get<std::size_t>();
    step.correction = {Text_At(object, "when"),
                       Text_At(object, "log"),
                       number,
                       std::string(Field_Of(step.before, number)),
                       std::string(Field_Of(step.after, number)),
                       Text_At(object, "why")};
    return step;
}

std::string Corrections::Json_Of(std::string_view when, std::string_view log, const Step& step) {
    Json object;
    const auto put = [&](const char* key, std::string_view text) { object[key] = To_Utf8(text); };
    put("when", when);
    put("log", log);
    if (step.correction) {
        object["column"] = step.correction->column;
        put("was", step.correction->was);
        put("is", step.correction->is);
        put("why", step.correction->why);
    }
    put("before", step.before);
    put("after", step.after);
    return object.dump();
}

/// Nothing there is no history, and neither is what cannot be read.
void Corrections::Read() {
    std::error_code missing;
    const std::uintmax_t found = std::filesystem::file_size(File(), missing);
    const std::uintmax_t size = missing ? 0 : found;
    if (size == m_size)
        return;
    m_size = size;
    m_steps.clear();
    std::string content;
    if (!missing) {
        Guarded(m_services, "modFunctions.Read_Corrections()", Show::silent,
                [&] { content = Read_File(File()); });
    }
    std::vector<std::size_t> unreadable;
    std::size_t last_line = 0;
    for (Line_Reader reader(content); reader.Next();) {
        last_line = reader.Line_Number();
        auto step = Step_Of(reader.Line());
        if (step)
            m_steps.push_back(std::move(*step));
        else if (!reader.Line().empty() && last_line > m_lines_told)
            unreadable.push_back(last_line);
    }
    m_lines_told = std::max(m_lines_told, last_line);
    for (Line_Reader reader(m_waiting); reader.Next();) {
        if (auto step = Step_Of(reader.Line()))
            m_steps.push_back(std::move(*step));
    }
    if (!unreadable.empty()) {
        Log_Error(
            m_services, "modFunctions.Read_Corrections()",
            {error_number::type_mismatch, fmt::format("{}: lines that are no correction: {}",
                                                      From_Path(File()), Line_Numbers(unreadable))},
            Show::silent);
    }
}

bool Corrections::Note(std::string_view log, std::string_view before, std::string_view after,
                       std::string_view why) {
    const std::string last = Whole_Line(after);
    std::string line = Whole_Line(before);
    std::vector<Step> steps;
    for (std::size_t column = 0; column < log_column_count; ++column) {
        const std::string was(Field_Of(line, column));
        const std::string is(Field_Of(last, column));
        if (was == is)
            continue;
        std::string next = With_Field(line, column, is);
        steps.push_back({line, next, Correction{{}, {}, column, was, is, std::string(why)}});
        line = std::move(next);
    }
    return Keep(log, std::move(steps));
}

bool Corrections::Carry_Over(std::string_view log, std::string_view before,
                             std::string_view after) {
    Step step{Whole_Line(before), Whole_Line(after), std::nullopt};
    if (step.before == step.after || History(step.before).empty())
        return m_waiting.empty();
    return Keep(log, {std::move(step)});
}

bool Corrections::Keep(std::string_view log, std::vector<Step> steps) {
    if (steps.empty() && m_waiting.empty())
        return true;
    Read();
    const std::string when = Moment_Text(m_services.clock.Local_Now());
    for (Step& step : steps) {
        if (step.correction) {
            step.correction->when = when;
            step.correction->log = log;
        }
        m_waiting.append(Json_Of(when, log, step)).append("\n");
        m_steps.push_back(std::move(step));
    }
    return Guarded(m_services, "modFunctions.Keep_Corrections()", Show::silent, [&] {
        std::filesystem::create_directories(File().parent_path());
        Append_Lines(File(), m_waiting.substr(0, m_waiting.size() - 1), "\n");
        m_waiting.clear();
        m_size = std::filesystem::file_size(File());
    });
}

/// The place of the last step before `end` that leads to the line; a step's own line decides before
/// the flight does, as of two copies of a row only one may have been corrected.
std::optional<std::size_t> Corrections::Step_To(std::string_view line, std::size_t end) const {
    const auto last_that = [&](auto&& leads) -> std::optional<std::size_t> {
        for (std::size_t place = end; place-- > 0;) {
            if (leads(m_steps[place]))
                return place;
        }
        return std::nullopt;
    };
    if (const auto place = last_that([&](const Step& step) { return step.after == line; }))
        return place;
    // From the first step on that begins with this very line they are those of a copy.
    const auto steps_end = m_steps.begin() + static_cast<std::ptrdiff_t>(end);
    const auto first = std::find_if(m_steps.begin(), steps_end,
                                    [&](const Step& step) { return step.before == line; });
    end = static_cast<std::size_t>(first - m_steps.begin());
    return last_that([&](const Step& step) { return Same_Flight_Of_Day(step.after, line); });
}

/// The steps that led to the line, the last one first.
std::vector<const Corrections::Step*> Corrections::Steps_Back(std::string_view line) {
    Read();
    std::string current = Whole_Line(line);
    std::vector<const Step*> steps;
    std::size_t end = m_steps.size();
    while (const auto place = Step_To(current, end)) {
        steps.push_back(&m_steps[*place]);
        current = m_steps[*place].before;
        end = *place;
    }
    return steps;
}

std::vector<Correction> Corrections::History(std::string_view line) {
    std::vector<Correction> history;
    for (const Step* step : Steps_Back(line)) {
        if (step->correction)
            history.push_back(*step->correction);
    }
    std::reverse(history.begin(), history.end());
    return history;
}

std::vector<std::string> Corrections::Earlier_Lines(std::string_view line) {
    std::vector<std::string> lines;
    for (const Step* step : Steps_Back(line))
        lines.push_back(step->before);
    return lines;
}

std::optional<Correction> Last_Correction(const std::vector<Correction>& history,
                                          std::string_view line, std::size_t taken_back) {
    // Each taking back is one of the last correction that had not been taken back by then.
    for (std::size_t place = history.size(); place-- > 0;) {
        const Correction& correction = history[place];
        if (correction.why == Corrections::taken_back)
            ++taken_back;
        else if (taken_back > 0)
            --taken_back;
        else if (Field_Of(line, correction.column) == correction.is)
            return correction;
        else
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace norvane
