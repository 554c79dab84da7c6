#pragma once
// What was corrected in logged flights: "flights/corrections.jsonl" below the program directory, a
// JSON object a line, which is only ever added to. A correction keeps its row's whole line before
// and after, so that a row is found again by its text alone: whatever log it stands in by now,
// under whatever name, and whichever of its cells were edited since. Owned by who edits or shows
// rows; any number of owners may come one after another.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct Services;

/// Lines of logs are those of all 53 fields or less, without line end. All texts are of the code
/// page.
struct Correction {
    /// Of the computer's clock, local time: "2026-11-23 14:05:09".
    std::string when;
    /// The log's name at that time.
    std::string log;
    std::size_t column = 0;
    std::string was;
    std::string is;
    /// Empty where nobody said.
    std::string why;
};

class Corrections {
  public:
    /// Why of a correction that puts back what was before another one.
    static constexpr std::string_view taken_back = "taken back";

    explicit Corrections(Services& services) : m_services(services) {}
    Corrections(const Corrections&) = delete;
    Corrections& operator=(const Corrections&) = delete;

    /// To be called once the log has the row's line as `after`: keeps a correction for each column
    /// in which the lines differ. False when the file takes none; that is in the error log, and the
    /// next call tries again.
    bool Note(std::string_view log, std::string_view before, std::string_view after,
              std::string_view why);
    /// The row was changed by other than a correction: its corrections go on with the new line.
    /// Without any there is nothing to do.
    bool Carry_Over(std::string_view log, std::string_view before, std::string_view after);

    /// Of the row with this line, oldest first; what was taken back and the taking back are both in
    /// it. A row that is no step of its history by its text is the one of the same date and flight
    /// (see `Same_Flight_Of_Day`).
    [[nodiscard]] std::vector<Correction> History(std::string_view line);

    /// What the row's line was before each of them, the last one first, as 53 fields.
    [[nodiscard]] std::vector<std::string> Earlier_Lines(std::string_view line);

    [[nodiscard]] std::filesystem::path File() const;

  private:
    /// A line of the file: a correction, or how the line went on without one.
    struct Step {
        std::string before;
        std::string after;
        std::optional<Correction> correction;
    };

    void Read();
    [[nodiscard]] static std::optional<Step> Step_Of(std::string_view json_line);
    [[nodiscard]] static std::string Json_Of(std::string_view when, std::string_view log,
                                             const Step& step);
    bool Keep(std::string_view log, std::vector<Step> steps);
    [[nodiscard]] std::vector<const Step*> Steps_Back(std::string_view line);
    [[nodiscard]] std::optional<std::size_t> Step_To(std::string_view line, std::size_t end) const;

    Services& m_services;
    std::vector<Step> m_steps;
    /// Bytes of the file when it was read, 0 when it was not there; none before that.
    std::optional<std::uintmax_t> m_size;
    /// Lines up to here have been looked at, and told of where they cannot be read.
    std::size_t m_lines_told = 0;
    /// Lines that the file did not take yet, each with its end.
    std::string m_waiting;
};

/// The correction that taking back would put back: the last one that neither was taken back nor
/// takes one back, if the row still has what it made of its cell. `taken_back`: how many were taken
/// back that the history does not tell of yet.
[[nodiscard]] std::optional<Correction> Last_Correction(const std::vector<Correction>& history,
                                                        std::string_view line,
                                                        std::size_t taken_back = 0);

}  // namespace norvane
