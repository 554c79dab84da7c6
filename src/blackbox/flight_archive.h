#pragma once
// What becomes of a recording when its flight has ended: it is packed as `flights/ID.rec.gz`, named
// after the flight, and gets the row by which the log has the flight. Recordings that an earlier
// run left are packed at the next start. Nothing of it touches the flight: what fails is in the
// error log, and the plain recording stays. Owned by the program.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "blackbox/flight_summary.h"
#include "common/services.h"
#include "common/timer_queue.h"

namespace norvane {

class clsAppSettings;
class Flight_Store;

class Flight_Archive {
  public:
    Flight_Archive(Services& services, const clsAppSettings& settings);
    Flight_Archive(const Flight_Archive&) = delete;
    Flight_Archive& operator=(const Flight_Archive&) = delete;

    /// Packs a finished recording when the flight's row and PIREP are made; nothing for an empty
    /// name.
    void Take_Soon(const std::filesystem::path& recording);
    /// Packs at once what `Take_Soon` still waits with.
    void Finish();
    /// Packs what an earlier run left, but for the recording of a flight that goes on.
    void Take_Leftovers(bool flight_goes_on);
    /// The log has the flight that was packed last as this line of it.
    void Note_Logged(std::string_view log_name, std::string_view line);
    /// Another flight begins: what the log gets from now on is not the last one's.
    void Forget_Last();

  private:
    void Take(const std::filesystem::path& recording);
    void Pack(const std::filesystem::path& recording);
    void Store();
    void Prune(Flight_Store& store) const;
    void Take_Up_Stored(const std::string& stored_name);
    [[nodiscard]] std::filesystem::path Packed_File() const;

    Services& m_services;
    const clsAppSettings& m_settings;
    std::vector<std::filesystem::path> m_waiting;
    /// The flight that was packed last, while the log may still get it.
    std::optional<Flight_Summary> m_last;
    /// Of its recording's last moment.
    double m_end_seconds = 0;
    Timer m_timer;
};

}  // namespace norvane
