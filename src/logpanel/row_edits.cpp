#include "logpanel/row_edits.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "flightlog/log_columns.h"

namespace norvane {

namespace {

constexpr std::size_t minutes_length = std::string_view("2026-11-23 14:05").size();

bool Is_Blank(std::string_view line) {
    return line.find_first_not_of(field_separator) == line.npos;
}

std::string_view Shown(std::string_view text) {
    return text.empty() ? "(empty)" : text;
}

}  // namespace

void Row_Edits::Add(std::string before, std::string after, std::string_view why) {
    const auto last = std::find_if(m_edits.rbegin(), m_edits.rend(),
                                   [&](const Edit& edit) { return edit.after == before; });
    // A taking back stands alone: `Last` counts them.
    const bool goes_on = last != m_edits.rend() && !last->is_progress && last->why.empty();
    if (!goes_on || !why.empty()) {
        m_edits.push_back({std::move(before), std::move(after), std::string(why)});
        return;
    }
    last->after = std::move(after);
    if (last->after == last->before)
        m_edits.erase(std::next(last).base());
}

void Row_Edits::Add_Progress(std::string before, std::string after) {
    if (before != after)
        m_edits.push_back({std::move(before), std::move(after), {}, true});
}

void Row_Edits::Drop(std::string_view line) {
    std::string gone(line);
    for (std::size_t place = m_edits.size(); place-- > 0;) {
        if (m_edits[place].after != gone)
            continue;
        gone = m_edits[place].before;
        m_edits.erase(m_edits.begin() + static_cast<std::ptrdiff_t>(place));
    }
}

bool Row_Edits::Keep(std::string_view log) {
    // What one call could not write goes with the next.
    bool kept = true;
    for (const Edit& edit : std::exchange(m_edits, {})) {
        if (edit.is_progress)
            kept = m_corrections.Carry_Over(log, edit.before, edit.after);
        else if (!Is_Blank(edit.before))
            kept = m_corrections.Note(log, edit.before, edit.after, edit.why);
    }
    return kept;
}

Row_Edits::Saved_Row Row_Edits::Saved(std::string_view line) const {
    Saved_Row row{std::string(line), 0};
    for (std::size_t place = m_edits.size(); place-- > 0;) {
        const Edit& edit = m_edits[place];
        if (edit.after != row.line)
            continue;
        row.line = edit.before;
        row.taken_back += edit.why == Corrections::taken_back ? 1 : 0;
    }
    return row;
}

std::vector<Correction> Row_Edits::History(std::string_view line) {
    const std::string saved = Saved(line).line;
    return Is_Blank(saved) ? std::vector<Correction>() : m_corrections.History(saved);
}

std::optional<Correction> Row_Edits::Last(std::string_view line) {
    std::optional<Correction> last = Last_Correction(History(line), line, Saved(line).taken_back);
    // A row that has no date any more would not be loaded again.
    if (last && last->column == log_column::date && last->was.empty())
        return std::nullopt;
    return last;
}

std::string Row_Edits::Remark(std::string_view line, std::size_t column) {
    std::string remark;
    const std::vector<Correction> history = History(line);
    for (std::size_t place = history.size(); place-- > 0;) {
        const Correction& correction = history[place];
        if (correction.column != column)
            continue;
        remark += remark.empty() ? "" : "\n";
        remark += fmt::format("{} since {}: was {}.", Shown(correction.is),
                              correction.when.substr(0, minutes_length), Shown(correction.was));
        if (!correction.why.empty())
            remark += fmt::format("  Why: {}", correction.why);
    }
    return remark;
}

}  // namespace norvane
