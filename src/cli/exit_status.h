#pragma once
// Exit statuses of `norvane-cli`: a contract with the scripts that call it.

namespace norvane::exit_status {

inline constexpr int done = 0;
inline constexpr int failed = 1;
inline constexpr int wrong_usage = 2;
inline constexpr int no_simulator = 3;
inline constexpr int store_in_use = 4;

}  // namespace norvane::exit_status
