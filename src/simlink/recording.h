#pragma once
// Recordings of a simulator: which bytes of the offset area changed at which moment. The black box
// and `norvane-sim record` write them, `norvane-sim replay` and whatever computes a flight again
// read them. Plain, or packed by gzip.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace norvane {

/// Bytes that changed, in memory order, within the offset area.
struct Recorded_Change {
    std::uint32_t offset = 0;
    std::vector<std::byte> bytes;
};

struct Recorded_Moment {
    /// Since the recording's start; never less than the moment before.
    double seconds = 0;
    std::vector<Recorded_Change> changes;
    /// The comment lines in front of it, without the "#" and the blank that follows it.
    std::vector<std::string> remarks = {};
};

/// The moments of a recording, at least one. Raises with the file and the line when the file is no
/// whole recording.
[[nodiscard]] std::vector<Recorded_Moment> Read_Recording(const std::filesystem::path& file);

/// The line that every recording begins with, without its end.
[[nodiscard]] std::string Recording_Head();
/// A moment as it stands in a recording: its remarks, a line each, then its own line.
[[nodiscard]] std::string Recording_Lines(const Recorded_Moment& moment);

/// Creates or overwrites the file and adds moment by moment; the file is a whole recording after
/// each of them. Every operation raises when the file cannot be written.
class Recording_Writer {
  public:
    explicit Recording_Writer(std::filesystem::path file);
    void Add(const Recorded_Moment& moment);

  private:
    std::filesystem::path m_file;
};

}  // namespace norvane
