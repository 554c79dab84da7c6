#pragma once
// Where a program finds its files: the program directory and the settings store, by the command
// line's choices. Demonstration flights get places of their own, so that they never touch the
// pilot's.

#include <filesystem>
#include <optional>

namespace norvane {

struct Program_Places {
    std::filesystem::path program_directory;
    std::filesystem::path store;
};

struct Place_Choices {
    /// "--home" and "--settings"; empty when not given.
    std::filesystem::path home;
    std::filesystem::path settings;
    /// A flight with a simulator of its own (demo, scenario, replay).
    bool demonstration = false;
};

/// The directory of the running executable; raises 76 when the system does not tell.
[[nodiscard]] std::filesystem::path Executable_Directory();

/// The places by the choices. A program directory other than the executable's that has no "bin" yet
/// is filled with the files the executable's directory ships; files that exist are left alone.
/// Raises when a directory cannot be made or filled.
[[nodiscard]] Program_Places Find_Places(const std::filesystem::path& executable_directory,
                                         const Place_Choices& choices);

}  // namespace norvane
