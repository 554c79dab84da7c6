#pragma once
// Where a program finds its files: the program directory and the settings store, by the command
// line's choices. Demonstration flights get places of their own, so that they never touch the
// pilot's.

#include <filesystem>

#include "common/system_places.h"

namespace norvane {

struct Program_Places {
    std::filesystem::path program_directory;
    std::filesystem::path store;
    /// What the program directory is filled from; the program directory itself when it was staged
    /// complete.
    std::filesystem::path shipped;
};

struct Place_Choices {
    /// "--home" and "--settings"; empty when not given.
    std::filesystem::path home;
    std::filesystem::path settings;
    /// A flight with a simulator of its own (demo, scenario, replay).
    bool demonstration = false;
};

/// The places by the choices, nothing being made there yet. Programs that were staged fly from
/// their own directory, those that are installed from "norvane" in the user's data directory.
/// Raises 76 when the user has no home that is needed.
[[nodiscard]] Program_Places Find_Places(const std::filesystem::path& executable_directory,
                                         const Place_Choices& choices);

}  // namespace norvane
