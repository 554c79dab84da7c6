#pragma once
// The recordings on the disk: "flights/ID.rec.gz", and "ID.rec" while a flight is being recorded or
// was not packed yet.

#include <filesystem>
#include <string>
#include <vector>

namespace norvane {

struct Services;

/// "flights" below the program directory.
[[nodiscard]] std::filesystem::path Flights_Directory(const Services& services);

struct Recording_File {
    std::string id;
    std::filesystem::path file;
    /// Plain: the flight may still be going on.
    bool is_packed = true;
};

/// By ID; of a flight that has both the packed one. A directory that is not there has none.
[[nodiscard]] std::vector<Recording_File> List_Recordings(const std::filesystem::path& directory);

/// A recording's file name without its endings; empty when it does not end as one.
[[nodiscard]] std::string Recording_Id(const std::filesystem::path& file);

/// Writes a recording, plain or packed, packed to `packed`, which is there whole or not at all.
/// Raises when either cannot be read or written.
void Pack_Recording(const std::filesystem::path& recording, const std::filesystem::path& packed);

/// The recording has no moment yet.
[[nodiscard]] bool Is_Empty_Recording(const std::filesystem::path& recording);
/// The packed recording can be read and begins with all that the plain one holds.
[[nodiscard]] bool Is_Packed_As(const std::filesystem::path& recording,
                                const std::filesystem::path& packed);

/// The packed recordings but for the newest `keep`, the oldest first; none for -1.
[[nodiscard]] std::vector<Recording_File> Recordings_Beyond(const std::filesystem::path& directory,
                                                            int keep);

}  // namespace norvane
