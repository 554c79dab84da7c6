#pragma once
// Reading and writing numbers as texts. Two families: the system's own numbers, always with "." as
// decimal sign (simulator files, stored values, messages), and the pilot's numbers, written with
// the signs of the pilot's country (`Regional`). Formatted figures round halves away from zero on
// the decimal value the pilot sees, not on its binary neighbour; conversions to whole numbers round
// halves to even.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace norvane {

/// How numbers and dates are written where the pilot lives.
struct Regional {
    /// Short date pattern: "d", "dd", "M", "MM", "yyyy" and the characters between them.
    std::string short_date = "M/d/yyyy";
    char decimal_sign = '.';
    /// Written before every third digit; NUL where the country groups no digits.
    char grouping_sign = ',';
};

/// Nearest whole number, halves to even.
[[nodiscard]] double Round_Half_Even(double value);
/// Nearest multiple of 10^-decimals of the decimal value (15 significant digits), halves away from
/// zero. `decimals` 0..9.
[[nodiscard]] double Round_Half_Up(double value, int decimals = 0);
/// As `Round_Half_Up` to a whole number, limited to the range of a 32-bit integer; a value that is
/// not a number gives 0.
[[nodiscard]] std::int32_t Whole(double value);

/// A number with "." as decimal sign; blanks around it are ignored. Empty when the text is not
/// wholly a finite number.
[[nodiscard]] std::optional<double> Parse_Number(std::string_view text);
/// As `Parse_Number`, but only for a whole number within 32 bits.
[[nodiscard]] std::optional<std::int32_t> Parse_Int32(std::string_view text);
/// A number as the pilot writes it: grouping counts only before exactly three digits; otherwise a
/// single "." or "," is the decimal sign whatever the country. Blanks (0xA0 too) and apostrophes
/// group digits in every country.
[[nodiscard]] std::optional<double> Parse_Pilot_Number(std::string_view text, const Regional&);

/// A sum of figures as they are written, with up to four decimals: no binary remainder of its parts
/// tips the way it is rounded.
class Decimal_Sum {
  public:
    void Add(double figure);
    [[nodiscard]] double Value() const;

  private:
    double m_units = 0;
};

/// Fixed decimals with ".", rounded as `Round_Half_Up`, at least `min_digits` before the point; a
/// zero never carries a sign.
[[nodiscard]] std::string Format_Fixed(double value, int decimals, int min_digits = 1);
/// `Format_Fixed` without decimals: the number itself, or padded ("00", "000") by `min_digits`.
[[nodiscard]] std::string Format_Whole(double value, int min_digits = 1);
/// Whole number with digits grouped in threes by ",", as the engine writes its own texts.
[[nodiscard]] std::string Format_Grouped(double value);
/// Fixed decimals with the pilot's signs and grouping.
[[nodiscard]] std::string Format_Pilot(double value, int decimals, const Regional&);
/// The shortest text that reads back as the same double.
[[nodiscard]] std::string Format_Exact(double value);
/// Up to 15 significant digits, no trailing zeros.
[[nodiscard]] std::string Format_Significant(double value);

}  // namespace norvane
