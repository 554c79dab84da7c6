#pragma once
// What benchmarks need of the outside: a desktop where nothing happens, an error log that ends the
// run, because a report would mean that something else was measured, and a directory.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "app/still_desktop.h"

namespace norvane {

class Idle_Desktop : public Still_Desktop {
  public:
    using Still_Desktop::Still_Desktop;
    Answer Show_Message(const Message_Box& box) override { throw std::runtime_error(box.text); }
};

class Fatal_Error_Log : public Error_Log {
  public:
    void Append(const std::string& entry) override {
        std::fprintf(stderr, "%s\n", entry.c_str());
        std::abort();
    }
};

/// Gone afterwards.
class Temporary_Directory {
  public:
    Temporary_Directory() {
        std::string name =
            (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        m_path = name;
    }
    ~Temporary_Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Temporary_Directory(const Temporary_Directory&) = delete;
    Temporary_Directory& operator=(const Temporary_Directory&) = delete;
    [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

}  // namespace norvane
