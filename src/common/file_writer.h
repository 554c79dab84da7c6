#pragma once
// Writing files that matter. An Atomic_File is written beside its target, flushed to the disk and
// renamed over it: readers see the old file or the new one, never half of one. All functions raise
// a Run_Error that names the file and why it failed.

#include <filesystem>
#include <string>
#include <string_view>

namespace norvane {

/// Owned by the writing procedure; a file that is not committed leaves nothing behind.
class Atomic_File {
  public:
    /// Begins a new content for `target`. A symbolic link is followed to the file it leads to,
    /// whose mode the new file keeps; a missing target is created with the usual mode
    /// (the file that a link leads to, not one in the place of the link).
    explicit Atomic_File(const std::filesystem::path& target);
    ~Atomic_File();
    Atomic_File(const Atomic_File&) = delete;
    Atomic_File& operator=(const Atomic_File&) = delete;

    void Write(std::string_view bytes);
    /// Flushes, renames, and flushes the directory. Nothing may be written afterwards.
    void Commit();

  private:
    void Discard();

    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    int m_descriptor = -1;
};

/// A file that grows as things happen: what was added is the system's at once, and the disk's after
/// `Sync`, which raises when the file was deleted meanwhile. What could not be added whole is not
/// there.
class Growing_File {
  public:
    /// Creates the file, or goes on behind its end; a last line that has no end is cut off first.
    explicit Growing_File(const std::filesystem::path& file);
    ~Growing_File();
    Growing_File(const Growing_File&) = delete;
    Growing_File& operator=(const Growing_File&) = delete;

    void Add(std::string_view bytes);
    void Sync();
    [[nodiscard]] const std::filesystem::path& Name() const { return m_file; }

  private:
    void Cut_Torn_Line();

    std::filesystem::path m_file;
    int m_descriptor = -1;
};

/// Removes temporary files that an Atomic_File left in `directory` when its program was killed more
/// than a day ago. For who holds the lock; a directory or file that cannot be read or removed is
/// passed over, and so is a name that a pilot might have given (".notes.txt.backup").
void Sweep_Temporaries(const std::filesystem::path& directory);

void Write_File_Atomically(const std::filesystem::path& target, std::string_view content);
/// Creates or overwrites in place, without flushing: for files that can be made again.
void Write_File(const std::filesystem::path& file, std::string_view content);
/// Adds to the end, creating the file when it is missing; all bytes or an error.
void Append_To_File(const std::filesystem::path& file, std::string_view content);
/// Copies a file's bytes over `to`, leaving `to` as it was when `from` cannot be read.
void Copy_File(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace norvane
