#pragma once
// The PIREPs that are due: noted in the settings store before their flight's row goes to the log,
// and taken off when they are written and have gone to the airline, or the pilot was told that they
// did not. A program that is killed anywhere between makes them up when it starts again. Owned by
// the ACARS panel.

#include <string>
#include <vector>

namespace norvane {

struct Services;

struct Due_PIREP {
    enum class Stage {
        noted,    // its row may not be in the log yet
        written,  // its file is there, and waits to be posted
        sending,  // given to the airline's server: it may have arrived
    };
    /// Full name of the file, as the log entry states it.
    std::string file;
    /// The file's line.
    std::string line;
    /// The flight's row in the log.
    std::string row;
    std::string airline;
    /// It goes to the airline, not only into its file.
    bool is_sent = false;
    Stage stage = Stage::noted;
};

class Due_PIREPs {
  public:
    explicit Due_PIREPs(Services& services) : m_services(services) {}

    /// Takes what an earlier run has left.
    void Load();
    /// Notes one more. A flight that is to be logged once more has one PIREP, the later, whatever
    /// the pilot changed in its row.
    void Note(Due_PIREP due);
    void Set_Stage(const std::string& file, Due_PIREP::Stage stage);
    void Take_Off(const std::string& file);
    [[nodiscard]] const std::vector<Due_PIREP>& All() const { return m_due; }

  private:
    /// A store that fails costs a note, not the PIREP.
    void Store();

    Services& m_services;
    std::vector<Due_PIREP> m_due;
};

}  // namespace norvane
