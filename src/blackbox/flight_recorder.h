#pragma once
// The black box: writes what the simulator told while a flight is tracked, step by step, into a
// recording that plays like any other. It looks on: whatever becomes of the recording, the flight
// does not notice. The recording in progress is `flights/BEGAN.rec` below the program directory; a
// finished one is the archive's (flight_archive.h). A flight that was taken up again goes on in its
// recording. Owned by the program.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "blackbox/step_sampler.h"
#include "common/file_writer.h"
#include "common/services.h"
#include "common/signal.h"
#include "common/timer_queue.h"

namespace norvane {

class clsACARS;
class clsAppSettings;
class clsVASettings;
class modFSUIPC;
struct Engine_Step;
struct Flight_State;

class Flight_Recorder {
  public:
    /// All of it longer lived than the recorder.
    struct Parts {
        Services& services;
        modFSUIPC& link;
        const clsAppSettings& settings;
        const clsVASettings& airline;
        clsACARS& engine;
    };
    explicit Flight_Recorder(const Parts& parts);
    Flight_Recorder(const Flight_Recorder&) = delete;
    Flight_Recorder& operator=(const Flight_Recorder&) = delete;

    /// The flight is tracked no longer, for this reason ("gate"): its recording is whole and its
    /// name is returned; empty when nothing is recorded, or not to its end.
    std::filesystem::path End(std::string_view why);
    /// The flight is flown by a plan with these figures, as `Planned_Text` writes them.
    void Note_Planned(std::string_view planned);
    /// The log has the flight as this line of it: that stands in the recording at once, as long as
    /// it is not packed. True when it does, or when the flight's recording has failed.
    bool Note_Logged(std::string_view log_name, std::string_view line);

  private:
    void Take_Step(const Engine_Step& step);
    void Begin();
    void Go_On();
    void Forget_Contact();
    void Write_Step(const Engine_Step& step);
    void Note_Events(const Engine_Step& step);
    void Note_Airports(const Flight_State& now, const Flight_State& before);
    void Note_Clock(bool something_happens);
    void Note_Contact(bool on_ground);
    void Keep_Place(const Flight_State& state);
    void Mark(std::string_view remark);
    void Add(const Recorded_Moment& moment);
    void Watch_Height(const Flight_State& state);
    void Sample_Fast();
    void Stop_Sampling();
    void Give_Up();
    void Fail();
    [[nodiscard]] double Seconds() const;
    [[nodiscard]] std::filesystem::path Directory() const;

    /// What the recording says of the computer's clocks, in seconds: UTC less what has passed since
    /// second 0, and local time less UTC.
    struct Told_Clock {
        std::int64_t offset_s = 0;
        std::int64_t zone_s = 0;
    };

    Parts m_parts;
    std::unique_ptr<Growing_File> m_file;
    /// Of the flight that was tracked last, once it is written no more.
    std::filesystem::path m_ended;
    /// That one is not whole; it was told of.
    bool m_has_failed = false;
    Step_Sampler m_sampler;
    /// The clock's moment of second 0, as if it had never stood still.
    std::chrono::microseconds m_start{0};
    double m_last_seconds = 0;
    std::chrono::microseconds m_synced{0};
    /// What the next moment is preceded by.
    std::vector<std::string> m_remarks;
    /// The first moment, until the first step completes it.
    std::optional<Recorded_Moment> m_first;
    std::optional<Told_Clock> m_clock;
    bool m_paused = false;
    /// The aircraft has been high enough for its next contact to be a landing.
    bool m_armed = false;
    bool m_was_on_ground = true;
    std::optional<double> m_contact_seconds;
    Timer m_fast;
    Connections m_connections;
};

}  // namespace norvane
