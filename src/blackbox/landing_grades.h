#pragma once
// Words for a landing by its rate, from an editable table: "landing.cfg" of the airline's
// directory, else of "bin". One grade a line, "LIMIT|WORD": so many feet a minute down at the most,
// softest first; the last line may have "more" for its limit. Lines that begin with ";" are
// comments.

#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace norvane {

struct Services;

struct Landing_Grade {
    /// Feet a minute, down.
    double most_fpm = std::numeric_limits<double>::infinity();
    std::string word;
};

class Landing_Grades {
  public:
    /// Softest first.
    explicit Landing_Grades(std::vector<Landing_Grade> grades) : m_grades(std::move(grades)) {}

    /// `rate_fpm` as of a touch, down negative. Empty when the table ends before it.
    [[nodiscard]] std::string Word_For(double rate_fpm) const;

  private:
    std::vector<Landing_Grade> m_grades;
};

/// What counts where there is no table, and where there is a faulty one.
[[nodiscard]] Landing_Grades Default_Landing_Grades();

/// Raises with the file and the line that is no grade.
[[nodiscard]] Landing_Grades Read_Landing_Grades(const std::filesystem::path& file);

/// The table that counts for an airline ("DEFAULT" for the default one). A faulty one is reported
/// to the error log.
[[nodiscard]] Landing_Grades Find_Landing_Grades(Services& services, std::string_view airline);

}  // namespace norvane
