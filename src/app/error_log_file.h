#pragma once
// The error log on disk: "ErrorLog.Log" in the program directory, appended to, never truncated.

#include <filesystem>
#include <string>

#include "common/services.h"

namespace norvane {

class Error_Log_File : public Error_Log {
  public:
    explicit Error_Log_File(const std::filesystem::path& program_directory)
        : m_file(program_directory / "ErrorLog.Log") {}

    /// Opens, writes and closes the file; raises when that fails.
    void Append(const std::string& entry) override;

  private:
    std::filesystem::path m_file;
};

}  // namespace norvane
