#pragma once
// A simulator's stand-in of the program's own: `norvane-sim` started as a child process on a Unix
// socket of its own, ended with its owner, even with one that is killed.

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace norvane {

class Sim_Process {
  public:
    /// Starts `program` with `arguments` and "--listen" an address of its own; returns when it
    /// listens. Raises 53 with what went wrong when it does not start.
    Sim_Process(const std::filesystem::path& program, std::vector<std::string> arguments);
    ~Sim_Process();
    Sim_Process(const Sim_Process&) = delete;
    Sim_Process& operator=(const Sim_Process&) = delete;

    /// The link address at which it listens.
    [[nodiscard]] const std::string& Address() const { return m_address; }

  private:
    void Await_Listening();
    void End();

    std::filesystem::path m_directory;
    std::string m_address;
    pid_t m_child = -1;
};

}  // namespace norvane
