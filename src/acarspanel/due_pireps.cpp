#include "acarspanel/due_pireps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/log_line.h"

namespace norvane {

namespace {

constexpr std::string_view section = "Due PIREPs";
/// A row that could not be saved may be recovered later; those that never are go in their turn.
constexpr std::size_t most_kept = 20;

/// As stored; the place is the stage.
constexpr std::array<std::string_view, 3> stages{"Noted", "Written", "Sending"};
constexpr std::string_view to_airline = "1";

struct Stored_Text {
    std::string_view key;
    std::string Due_PIREP::*text;
};
constexpr std::array<Stored_Text, 4> stored_texts{{{"File", &Due_PIREP::file},
                                                   {"Line", &Due_PIREP::line},
                                                   {"Row", &Due_PIREP::row},
                                                   {"Airline", &Due_PIREP::airline}}};

std::string Key(std::size_t number, std::string_view what) {
    return fmt::format("{} {}", number, what);
}

Due_PIREP::Stage Stage_Of(std::string_view text) {
    // A stage that nobody knows sends nothing a second time.
    const auto* const found = std::find(stages.begin(), stages.end(), text);
    return found == stages.end() ? Due_PIREP::Stage::sending
                                 : static_cast<Due_PIREP::Stage>(found - stages.begin());
}

}  // namespace

void Due_PIREPs::Load() {
    m_due.clear();
    Guarded(m_services, "ucACARS.Restore()", Show::silent, [&] {
        Settings_Store& store = m_services.settings;
        for (std::size_t number = 1; store.Find(section, Key(number, "File")); ++number) {
            Due_PIREP due;
            for (const Stored_Text& stored : stored_texts)
                due.*stored.text = store.Get(section, Key(number, stored.key));
            due.is_sent = store.Get(section, Key(number, "Send")) == to_airline;
            due.stage = Stage_Of(store.Get(section, Key(number, "Stage")));
            m_due.push_back(std::move(due));
        }
    });
}

void Due_PIREPs::Store() {
    Guarded(m_services, "ucACARS.Persist()", Show::silent, [&] {
        Settings_Store& store = m_services.settings;
        Settings_Batch batch(store);
        store.Delete_Section(section);
        std::size_t number = 0;
        for (const Due_PIREP& due : m_due) {
            ++number;
            for (const Stored_Text& stored : stored_texts)
                store.Set(section, Key(number, stored.key), due.*stored.text);
            store.Set(section, Key(number, "Send"), due.is_sent ? to_airline : "");
            store.Set(section, Key(number, "Stage"),
                      stages.at(static_cast<std::size_t>(due.stage)));
        }
        batch.Commit();
    });
}

void Due_PIREPs::Note(Due_PIREP due) {
    std::erase_if(m_due, [&](const Due_PIREP& other) {
        return other.file == due.file ||
               (other.stage == Due_PIREP::Stage::noted && Same_Flight(other.row, due.row));
    });
    m_due.push_back(std::move(due));
    if (m_due.size() > most_kept)
        m_due.erase(m_due.begin());
    Store();
}

void Due_PIREPs::Set_Stage(const std::string& file, Due_PIREP::Stage stage) {
    for (Due_PIREP& due : m_due) {
        if (due.file == file)
            due.stage = stage;
    }
    Store();
}

void Due_PIREPs::Take_Off(const std::string& file) {
    if (std::erase_if(m_due, [&](const Due_PIREP& due) { return due.file == file; }) > 0)
        Store();
}

}  // namespace norvane
