#pragma once
// Text as the system keeps it: one byte is one character of the Windows-1252 code page. Owned by
// nobody; pure functions used by every folder. "Blank" is the space character only.

#include <string>
#include <string_view>
#include <vector>

namespace norvane {

inline constexpr std::string_view product_name = "Norvane";
inline constexpr std::string_view cr_lf = "\r\n";
/// What an editable field shows while nobody has filled it: bracket, five blanks, bracket.
inline constexpr std::string_view empty_field = "[     ]";
inline constexpr char field_separator = '|';

/// Without leading and trailing blanks (other white space stays).
[[nodiscard]] std::string_view Trimmed_View(std::string_view text);
[[nodiscard]] std::string Trim(std::string_view text);

/// Pieces between separators; an empty text is one empty piece.
[[nodiscard]] std::vector<std::string> Split(std::string_view text, char separator);
[[nodiscard]] std::vector<std::string> Split(std::string_view text, std::string_view separator);
[[nodiscard]] std::string Join(const std::vector<std::string>& pieces, std::string_view separator);

[[nodiscard]] std::string Replace_All(std::string_view text, std::string_view from,
                                      std::string_view to);

/// Letter case in Windows-1252, accented letters included.
[[nodiscard]] char Lower(char character);
[[nodiscard]] std::string Lower(std::string_view text);
[[nodiscard]] std::string Upper(std::string_view text);
[[nodiscard]] bool Equal_No_Case(std::string_view a, std::string_view b);
/// Position of `what` in `text` without regard to case; npos when absent.
[[nodiscard]] std::size_t Find_No_Case(std::string_view text, std::string_view what);
[[nodiscard]] bool Contains(std::string_view text, std::string_view what);
[[nodiscard]] bool Contains_No_Case(std::string_view text, std::string_view what);

/// Text before the first `mark`; the whole text when it is absent.
[[nodiscard]] std::string_view Before(std::string_view text, std::string_view mark);

/// True for the placeholder and for the empty text: a field the engine may fill.
[[nodiscard]] bool Is_Empty_Field(std::string_view text);
/// The text, or the empty text where it is the placeholder.
[[nodiscard]] std::string Without_Placeholder(std::string_view text);

enum class Field_Lines {
    one,
    many,
    /// One line, in which "|" separates the entries of a list.
    list_entries,
};

/// A text made fit for a log line: "|" becomes "/", but in `list_entries`; a lone CR or LF counts
/// as CR LF, and where the field has one line every line break becomes one blank. NUL characters
/// are dropped.
[[nodiscard]] std::string Clean_Field(std::string_view text, Field_Lines lines);

}  // namespace norvane
