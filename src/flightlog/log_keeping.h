#pragma once
// The files that stand beside a flight log so that nothing of it is ever lost: the backup (".bak"),
// lines that have no place in the table (".skipped"), what another program wrote meanwhile
// (".other"), flights and edits that could not be saved (".unsaved"). None of them is ever loaded.

#include <filesystem>
#include <string_view>

namespace norvane {

struct Services;

/// The log's path with only its final extension replaced by `ending` (with its point).
[[nodiscard]] std::filesystem::path Beside_Log(const std::filesystem::path& log,
                                               std::string_view ending);

/// Copies the log over its ".bak". A backup that is larger than the new one becomes ".bak1", unless
/// that is larger still. Raises when it fails, what was kept staying as it was.
void Backup_Log(const std::filesystem::path& log);

/// Adds lines to the log's ".skipped", but none that it has already: a log is loaded many times.
/// Returns that file; raises when it fails.
std::filesystem::path Keep_Skipped(const std::filesystem::path& log, std::string_view lines);

/// Copies the log as it stands to ".other" (".other2", ... where that is taken). Returns the copy;
/// raises when it fails.
std::filesystem::path Keep_Other(const std::filesystem::path& log);

/// Writes lines in the log's own format (the last one's end is supplied) to ".unsaved" beside the
/// log, ".unsaved2" and so on where that is taken, or in the program directory where the log's
/// directory takes no file. Says so in the error log. Returns the file; raises when it fails.
std::filesystem::path Write_Unsaved(Services& services, const std::filesystem::path& log,
                                    std::string_view lines);

/// Raises 70 for a log that was made read-only: the pilot does not want it replaced.
void Demand_Writable(const std::filesystem::path& log);

/// Adds lines to the end of a file, creating it when missing; a missing final line end is supplied
/// first, and one behind the lines. A file that takes only a part of them is cut back to what it
/// was. Raises when it fails.
void Append_Lines(const std::filesystem::path& file, std::string_view lines,
                  std::string_view line_end);
/// The same for one line of a log that may be written.
void Append_To_Log(const std::filesystem::path& log, std::string_view line);

}  // namespace norvane
