#include "config/profile_reader.h"

#include <system_error>
#include <utility>

#include "common/line_reader.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Buffer sizes of the profile functions whose results the files' makers count on. Of a value's
/// buffer one character ends the text, of a section's two.
constexpr std::size_t value_buffer = 255;
constexpr std::size_t section_buffer = 32767;

std::string_view Without_White_Space(std::string_view text) {
    constexpr std::string_view white_space = " \t";
    const auto first = text.find_first_not_of(white_space);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

std::string_view Without_Quotes(std::string_view value) {
    const bool quoted = value.size() > 1 && (value.front() == '"' || value.front() == '\'') &&
                        value.back() == value.front();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string Value_Behind(std::string_view line, std::size_t equals) {
    const auto value = Without_Quotes(Without_White_Space(line.substr(equals + 1)));
    return std::string(value.substr(0, value_buffer - 1));
}

/// Walks the lines of the first section of a name.
class Section_Lines {
  public:
    Section_Lines(std::string_view content, std::string_view section,
                  Comment_Lines comments = Comment_Lines::leave_out)
        : m_reader(content), m_comments(comments) {
        while (!m_inside && m_reader.Next()) {
            const std::string_view line = Without_White_Space(m_reader.Line());
            m_inside = line.starts_with('[') &&
                       Equal_No_Case(Without_White_Space(Before(line.substr(1), "]")), section);
        }
    }

    /// Moves to the next line that counts and is not empty; false at the section's end.
    bool Next() {
        while (m_inside && m_reader.Next()) {
            m_line = Without_White_Space(m_reader.Line());
            m_inside = !m_line.starts_with('[');
            const bool counts = m_comments == Comment_Lines::keep || !m_line.starts_with(';');
            if (m_inside && !m_line.empty() && counts)
                return true;
        }
        return false;
    }
    [[nodiscard]] std::string_view Line() const { return m_line; }

  private:
    Line_Reader m_reader;
    Comment_Lines m_comments;
    std::string_view m_line;
    bool m_inside = false;
};

}  // namespace

Profile::Profile(const std::filesystem::path& file) {
    std::error_code failure;
    if (std::filesystem::exists(file, failure) || failure)
        m_content = Read_File(file);
}

Profile Profile::Of_Text(std::string text) {
    Profile profile;
    profile.m_content = std::move(text);
    return profile;
}

std::string Profile::Value(std::string_view section, std::string_view key) const {
    for (Section_Lines lines(m_content, section); lines.Next();) {
        const auto equals = lines.Line().find('=');
        if (equals != std::string_view::npos &&
            Equal_No_Case(Without_White_Space(lines.Line().substr(0, equals)), key)) {
            return Value_Behind(lines.Line(), equals);
        }
    }
    return {};
}

std::map<std::string, std::string> Profile::Values(std::string_view section) const {
    std::map<std::string, std::string> values;
    for (Section_Lines lines(m_content, section); lines.Next();) {
        const auto equals = lines.Line().find('=');
        if (equals != std::string_view::npos) {
            values.try_emplace(Lower(Without_White_Space(lines.Line().substr(0, equals))),
                               Value_Behind(lines.Line(), equals));
        }
    }
    return values;
}

std::string Profile::Section(std::string_view section, Comment_Lines comments) const {
    std::string entries;
    for (Section_Lines lines(m_content, section, comments);
         entries.size() < section_buffer - 1 && lines.Next();) {
        entries += lines.Line();
        entries += '\0';
    }
    if (entries.empty())
        return {'\0'};
    if (entries.size() > section_buffer - 1) {
        entries.resize(section_buffer - 1);
        entries.back() = '\0';
    }
    return entries;
}

std::vector<std::string> Profile::Section_Names() const {
    std::vector<std::string> names;
    for (Line_Reader reader(m_content); reader.Next();) {
        if (reader.Line().starts_with('['))
            names.emplace_back(Before(reader.Line().substr(1), "]"));
    }
    return names;
}

std::string Without_Comment(std::string value) {
    const auto comment = value.find("//");
    return comment == std::string::npos ? std::move(value) : Trim(value.substr(0, comment));
}

}  // namespace norvane
