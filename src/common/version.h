#pragma once
// The version of this build, as the build system names it.

namespace norvane {

inline constexpr const char* version = NORVANE_VERSION;

}  // namespace norvane
