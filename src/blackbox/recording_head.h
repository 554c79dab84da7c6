#pragma once
// What a recording of a flight says of itself in its remarks: by which program, when by the
// computer's clocks, under which settings; and how its file is named.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/date_time.h"
#include "simlink/recording.h"

namespace norvane {

class clsACARS;
class clsAppSettings;
class clsVASettings;
struct Services;

/// The computer's clocks at one moment.
struct Clock_Moments {
    Date_Time utc;
    Date_Time local;
};
[[nodiscard]] Clock_Moments Read_Clocks(Services& services);
/// "2026-11-23T14:05:12Z 2026-11-23T15:05:12", and back; none for anything else.
[[nodiscard]] std::string Clock_Text(const Clock_Moments& moments);
[[nodiscard]] std::optional<Clock_Moments> Parse_Clock(std::string_view text);

/// In front of a recording's first moment.
[[nodiscard]] std::vector<std::string> Head_Remarks(Services& services,
                                                    const clsAppSettings& settings,
                                                    const clsVASettings& airline,
                                                    const clsACARS& engine);
/// The value of the first remark of this key ("utc"); empty without one.
[[nodiscard]] std::string Remark_Value(const std::vector<std::string>& remarks,
                                       std::string_view key);
/// By the computer's clock then and now, in the recording's seconds; negative when unknown.
[[nodiscard]] double Seconds_Since_Beginning(const std::vector<Recorded_Moment>& moments,
                                             const Clock_Moments& now);

/// Where the settings store keeps the recording of the flight that may be taken up again, and the
/// moment from which it would go on. They stand and go with the stored flight.
namespace stored_recording {
inline constexpr std::string_view section = "ACARS";
inline constexpr std::string_view name = "Recording";
inline constexpr std::string_view seconds = "RecordedSeconds";
}  // namespace stored_recording

/// "2026-11-23_140512Z".
[[nodiscard]] std::string Recording_Stamp(const Date_Time& utc);
/// A name in the directory that nothing has yet: `stem` + `ending`, or with "-2" and so on.
[[nodiscard]] std::filesystem::path Free_Name(const std::filesystem::path& directory,
                                              std::string_view stem, std::string_view ending);

}  // namespace norvane
