#pragma once
// A program under test as a process of its own: its output is collected while it runs, it can be
// killed at any moment, and it never outlives the test.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace norvane::test {

class Child_Process {
  public:
    /// Starts `arguments[0]`. `prepare` runs in the child before the program.
    explicit Child_Process(std::vector<std::string> arguments,
                           const std::function<void()>& prepare = {});
    ~Child_Process();
    Child_Process(const Child_Process&) = delete;
    Child_Process& operator=(const Child_Process&) = delete;

    /// Reads until `done` holds for what was read so far; false at the end of the output or after
    /// `at_most`.
    bool Read_Until(const std::function<bool(const std::string& output)>& done,
                    std::chrono::milliseconds at_most = std::chrono::seconds(120));
    void Send(int signal) const;
    /// Reads to the end; the exit status, or 128 + the signal that ended the program, or -1 when it
    /// did not end within `at_most` (it is killed then).
    int Wait(std::chrono::milliseconds at_most = std::chrono::seconds(120));

    /// Standard output and standard error so far.
    [[nodiscard]] const std::string& Output() const { return m_output; }
    [[nodiscard]] const std::string& Errors() const { return m_errors; }

  private:
    bool Read_Some(std::chrono::milliseconds at_most);

    pid_t m_child = -1;
    int m_output_end = -1;
    int m_errors_end = -1;
    std::string m_output;
    std::string m_errors;
};

struct Run_Result {
    int status = -1;
    std::string output;
    std::string errors;
};

/// Runs a program to its end.
[[nodiscard]] Run_Result Run_Program(std::vector<std::string> arguments);

}  // namespace norvane::test
