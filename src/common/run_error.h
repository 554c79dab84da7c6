#pragma once
// The one failure type of the core. A procedure that cannot do its work throws a Run_Error; the
// nearest reporting procedure (see log_error.h) catches it and writes it to the error log.

#include <exception>
#include <string>

namespace norvane {

/// Error numbers as the error log shows them: the run-time error numbers of the field.
namespace error_number {
inline constexpr int invalid_call = 5;
inline constexpr int overflow = 6;
inline constexpr int subscript_out_of_range = 9;
inline constexpr int type_mismatch = 13;
inline constexpr int file_not_found = 53;
inline constexpr int device_io_error = 57;
inline constexpr int disk_full = 61;
inline constexpr int permission_denied = 70;
inline constexpr int path_file_access = 75;
inline constexpr int path_not_found = 76;
inline constexpr int other = 440;
}  // namespace error_number

/// A failure with its number and a technical description (code page text, no trailing period).
class Run_Error : public std::exception {
  public:
    /// `for_pilot`: what the failure means for the flight and what to do, in whole sentences;
    /// empty where nothing better is known than its number tells.
    Run_Error(int number, std::string description, std::string for_pilot = {});

    [[nodiscard]] int Number() const { return m_number; }
    [[nodiscard]] const std::string& Description() const { return m_description; }
    [[nodiscard]] const std::string& For_Pilot() const { return m_for_pilot; }
    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

  private:
    int m_number;
    std::string m_description;
    std::string m_for_pilot;
};

/// A failure that means a file's content, rather than the access to it, is at fault.
class Broken_Content : public Run_Error {
  public:
    using Run_Error::Run_Error;
};

/// The error for a failed system call on a file: number by `errno_value`, description naming
/// `path`.
[[nodiscard]] Run_Error File_Error(int errno_value, const std::string& path);

/// The exception being handled as a Run_Error; standard exceptions are mapped to numbers here and
/// nowhere else. Call only inside a catch block.
[[nodiscard]] Run_Error Caught_Error();

}  // namespace norvane
