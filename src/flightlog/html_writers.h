#pragma once
// The pieces that the HTML reports are made of: the report's file with the start and the end that
// all pages share, and the writers of their rows. The maker of a report owns its file while it is
// written. The page is opened as a local file, where a script could read the pilot's disk: whatever
// comes from a log, a server or the pilot is escaped here.

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/text.h"

namespace norvane {

struct Services;

/// "report.html" in the program directory. Every operation raises a Run_Error that names the file
/// when it cannot be written; what was written by then stays.
class Report_File {
  public:
    /// Begins the file anew with the start of a page.
    Report_File(const Services& services, std::string_view title);
    Report_File(const Report_File&) = delete;
    Report_File& operator=(const Report_File&) = delete;

    /// One line: the texts one behind the other, CR LF.
    template <class... Texts>
    void Line(const Texts&... texts) {
        ((m_waiting += texts), ...);
        m_waiting += cr_lf;
        if (m_waiting.size() >= piece_size)
            Write_Waiting();
    }
    /// Ends the page and the file, which is whole then; its path.
    std::filesystem::path Finish();

  private:
    /// A logbook may have hundreds of megabytes: it is written in pieces.
    static constexpr std::size_t piece_size = std::size_t{1} << 20;

    void Write_Waiting();

    std::filesystem::path m_path;
    std::string m_waiting;
};

/// What an empty cell holds, and a spacer's labels and values: no semicolon behind it.
inline constexpr std::string_view blank = "&nbsp";

/// A text as it stands in a page, its marks escaped; `blank` stays one. For texts that are handed
/// to `Line`; the writers below do it themselves.
[[nodiscard]] std::string HTML_Text(std::string_view text);

struct HTML_Pair {
    std::string label;
    std::string value;
};

enum class Row_Kind {
    normal,
    /// The second value takes the place of all that follow. Of field rows only.
    wide,
    /// Closes the frame.
    bottom,
};

/// A row of up to three labels with their values.
struct Field_Row {
    std::array<HTML_Pair, 3> pairs;
    Row_Kind kind = Row_Kind::normal;
};

/// All six texts `blank`.
[[nodiscard]] Field_Row Spacer_Row(Row_Kind kind = Row_Kind::normal);

/// The report's name across the page, and the beginning of its table.
void HTML_Heading(Report_File& file, std::string_view text);
/// Labels get ":" behind them, but for empty and blank ones.
void HTML_Field_Row(Report_File& file, const Field_Row& row);
/// A label and its value; empty ones become "&nbsp;".
void HTML_Stat_Row(Report_File& file, const HTML_Pair& pair, Row_Kind kind = Row_Kind::normal);
/// The header over rows of `HTML_Stat_Row`: what stands over the labels, and over the values.
void HTML_Stat_Header(Report_File& file, const HTML_Pair& titles);
/// The header over a section of field rows, with so many empty cells within.
void HTML_Section_Header(Report_File& file, std::string_view title, int empty_cells);
/// A table of its own: a title and a text, "&nbsp;" for an empty one.
void HTML_Text_Box(Report_File& file, std::string_view title, std::string_view text);

}  // namespace norvane
