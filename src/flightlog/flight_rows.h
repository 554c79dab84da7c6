#pragma once
// The row that a flight was logged as, wherever it stands by now: in the log it was logged in or
// another one, sorted, copied, and corrected in any of its cells. A row is told by its text and by
// what the corrections tell of its text before; after edits by another program by its date and the
// flight's own figures (see `Same_Flight_Of_Day`).

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

class Corrections;
struct Services;

struct Flight_Row {
    /// The log's name, code page text.
    std::string log;
    /// In `Read_Log`, from 0.
    std::size_t row = 0;
    /// All 53 fields.
    std::string line;
};

/// `logged`: the line that the flight was logged with. `log`: the name of the log that is looked at
/// first. A log that cannot be read is passed over. A row that is told by its text stands before
/// one that is told by its figures.
[[nodiscard]] std::optional<Flight_Row> Find_Flight_Row(const Services& services,
                                                        Corrections& corrections,
                                                        std::string_view logged,
                                                        std::string_view log);

/// The way back: which of the lines that flights were logged with is the row's; none is. Empty
/// lines are no row's.
[[nodiscard]] std::optional<std::size_t> Find_Logged_Line(Corrections& corrections,
                                                          std::string_view row,
                                                          const std::vector<std::string>& logged);

}  // namespace norvane
