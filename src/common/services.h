#pragma once
// Everything a procedure needs from outside, handed to constructors by reference: the desktop, the
// settings store, the clock, the country's signs, the error log and the program directory. The
// simulator's transport is handed to the link itself. Owned by the program that starts.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/date_time.h"
#include "common/number.h"

namespace norvane {

class Timer_Queue;

enum class Icon { none, information, question, exclamation };
enum class Buttons { ok, yes_no };
/// `none`: a question that was left by Escape or by closing its box. It has not been answered, so
/// the command that asked does nothing.
enum class Answer { ok, yes, no, none };

struct Message_Box {
    std::string text;
    std::string title;
    Icon icon = Icon::none;
    Buttons buttons = Buttons::ok;
    /// What a technician wants to know of a failure, shown under "Details"; empty: none.
    std::string details = {};
    /// What a note is about that holds for a while only, so that `Desktop::Withdraw` can take it
    /// away; a newer one takes the place of an older one. Empty: it stays until it is closed.
    std::string topic = {};
};

/// A file that the pilot is asked for.
struct File_Choice {
    std::string title;
    /// What is offered and its pattern, separated by "|": "Flight Plans (*.pln)|*.pln".
    std::string filter;
    /// Where the dialog opens; empty: anywhere.
    std::filesystem::path directory;
};

/// The pilot's screen, or what stands in its place.
class Desktop {
  public:
    virtual ~Desktop() = default;
    Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    virtual void Set_Busy(bool busy) = 0;
    /// The cursor is normal again, however many procedures are still busy: one of them failed, and
    /// the pilot must not think that it goes on.
    virtual void End_Busy() { Set_Busy(false); }
    /// Shows the box and waits for the answer. An information box that nothing asked for (raised by
    /// a timer) may be shown without waiting.
    virtual Answer Show_Message(const Message_Box& box) = 0;
    /// Takes a box of this topic off the screen: what it says is true no longer.
    virtual void Withdraw(std::string_view /*topic*/) {}
    /// Empty when the pilot chose none, or nobody can be asked.
    virtual std::filesystem::path Choose_File(const File_Choice& choice) = 0;
    /// The colour that the pilot chose, 0xBBGGRR, beginning at `current`; none when none was
    /// chosen, or nobody can be asked.
    virtual std::optional<std::int32_t> Choose_Color(std::int32_t current) = 0;
    /// Opens a file with the program that the pilot's desktop has for its kind, a report in the
    /// browser; shown and forgotten. `anchor`: the place in a page; empty: its top.
    virtual void Open_File(const std::filesystem::path& file, std::string_view anchor = {}) = 0;
    /// Puts a text where other programs paste from.
    virtual void Copy_Text(std::string_view text) = 0;
    /// Handles what has happened: timers that are due, input, repaints.
    virtual void Process_Events() = 0;
    /// Keeps events flowing, without spinning, until `condition` holds (true) or `at_most` of the
    /// timers' time has passed (false).
    virtual bool Wait_Until(const std::function<bool()>& condition,
                            std::chrono::milliseconds at_most) = 0;
    [[nodiscard]] virtual Timer_Queue& Timers() = 0;

    /// What is being waited for; empty when nothing is.
    [[nodiscard]] std::string_view Waiting_For() const {
        return m_waits.empty() ? std::string_view() : m_waits.back();
    }

  protected:
    /// `Waiting_For` is another one now.
    virtual void Wait_Changed() {}

  private:
    friend class Wait_Notice;
    std::list<std::string> m_waits;
};

/// Tells the pilot what is being waited for, for the length of the wait. Of several the one that
/// began last is told; they may end in any order.
class Wait_Notice {
  public:
    Wait_Notice(Desktop& desktop, std::string_view what);
    ~Wait_Notice();
    Wait_Notice(const Wait_Notice&) = delete;
    Wait_Notice& operator=(const Wait_Notice&) = delete;

  private:
    Desktop& m_desktop;
    std::list<std::string>::iterator m_place;
};

/// The busy cursor for the length of a procedure.
class Busy_Cursor {
  public:
    explicit Busy_Cursor(Desktop& desktop) : m_desktop(desktop) { m_desktop.Set_Busy(true); }
    ~Busy_Cursor() { m_desktop.Set_Busy(false); }
    Busy_Cursor(const Busy_Cursor&) = delete;
    Busy_Cursor& operator=(const Busy_Cursor&) = delete;

  private:
    Desktop& m_desktop;
};

/// Per-user texts by section and key, all of application "Norvane". Every operation raises a
/// Run_Error when the store fails.
class Settings_Store {
  public:
    virtual ~Settings_Store() = default;
    Settings_Store() = default;
    Settings_Store(const Settings_Store&) = delete;
    Settings_Store& operator=(const Settings_Store&) = delete;

    [[nodiscard]] virtual std::optional<std::string> Find(std::string_view section,
                                                          std::string_view key) = 0;
    virtual void Set(std::string_view section, std::string_view key, std::string_view value) = 0;
    /// A section that does not exist is no error.
    virtual void Delete_Section(std::string_view section) = 0;
    /// Writes between Begin and the outermost Commit are one transaction; batches nest.
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    /// Keeps a copy of the store as it stands (name + ".bak"), for a load that met a bad value.
    virtual void Back_Up() = 0;

    /// The stored text, or `otherwise` when the key is absent.
    [[nodiscard]] std::string Get(std::string_view section, std::string_view key,
                                  std::string_view otherwise = {});
};

/// A batch for the length of a block. What was written is kept even when the block fails: half a
/// step's figures are worth more than none.
class Settings_Batch {
  public:
    explicit Settings_Batch(Settings_Store& store) : m_store(store) { m_store.Begin(); }
    ~Settings_Batch();
    Settings_Batch(const Settings_Batch&) = delete;
    Settings_Batch& operator=(const Settings_Batch&) = delete;
    /// Commits now, so that a failure is raised to the caller.
    void Commit();

  private:
    Settings_Store& m_store;
    bool m_open = true;
};

/// When standard or daylight time begins in a year, in local time. With a year: that moment.
/// Without (0): the `week`-th `weekday` (0 Sunday) of the month, 5 meaning the last one.
struct Zone_Rule {
    int year = 0;
    int month = 0;  // 0: the zone has no daylight time
    int week = 0;
    int weekday = 0;
    int day = 0;
    Time_Of_Day time;
};

/// Minutes; local time + bias = UTC.
struct Time_Zone {
    int standard_bias = 0;
    int daylight_bias = 0;  // added while daylight time holds, 0 when the zone has none
    Zone_Rule standard_start;
    Zone_Rule daylight_start;
};

class Clock {
  public:
    virtual ~Clock() = default;
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    [[nodiscard]] virtual Date_Time Local_Now() = 0;
    /// Empty where the platform knows local time only; UTC then follows from `Zone`.
    [[nodiscard]] virtual std::optional<Date_Time> Utc_Now() { return std::nullopt; }
    /// Time that never jumps, from an arbitrary start; timers run by it.
    [[nodiscard]] virtual std::chrono::microseconds Monotonic() = 0;
    /// Blocks, without handling events.
    virtual void Sleep(std::chrono::microseconds duration) = 0;
    [[nodiscard]] virtual Time_Zone Zone() = 0;
};

/// Where error reports are kept.
class Error_Log {
  public:
    virtual ~Error_Log() = default;
    Error_Log() = default;
    Error_Log(const Error_Log&) = delete;
    Error_Log& operator=(const Error_Log&) = delete;

    /// Adds one entry (date, three blanks, report, empty line). May fail; the caller swallows it.
    virtual void Append(const std::string& entry) = 0;
};

/// A directory as the simulator names it, without a final separator, and the same one here.
struct Path_Mapping {
    std::string simulators;
    std::filesystem::path ours;
};

struct Services {
    Desktop& desktop;
    Settings_Store& settings;
    Clock& clock;
    Error_Log& error_log;
    Regional regional;
    /// The program directory, taken as it is.
    std::filesystem::path program_directory;
    /// Where the simulator's directories are, if it runs on a system of its own.
    std::vector<Path_Mapping> path_mappings = {};
};

/// All of `outside`, but for the error log.
[[nodiscard]] Services With_Error_Log(const Services& outside, Error_Log& error_log);

}  // namespace norvane
