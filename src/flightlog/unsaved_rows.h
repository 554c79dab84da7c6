#pragma once
// What stands in the ".unsaved" files of all logs: flights and edits that could not be saved or
// were given up. Used by the dialog and the command that bring them back.

#include <filesystem>
#include <string>
#include <vector>

namespace norvane {

struct Services;

/// How a log's table differs from its file.
struct Unsaved_Edits {
    /// Rows of the table that the file does not have.
    std::vector<std::string> lines;
    bool rows_deleted = false;
};

struct Unsaved_Row {
    std::filesystem::path file;
    /// All 53 fields, without line end.
    std::string line;
};

/// The rows that stand in no log, each once, by file name and in the file's order, those without a
/// date behind the others. Touches nothing. A file that cannot be read is told in the error log and
/// passed over.
[[nodiscard]] std::vector<Unsaved_Row> Find_Unsaved_Rows(Services& services);

/// Takes the rows that stand in a log by now out of the ".unsaved" files, and deletes files that
/// have nothing left. Raises when a file cannot be written; what is in a log is not found again
/// either way.
void Drop_Saved_Rows(Services& services);

}  // namespace norvane
