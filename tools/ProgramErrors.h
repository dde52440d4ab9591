#pragma once

#include <string>

/// What kelvinbar-snapshot says on standard error, and how it ends.
namespace kelvinbar {

inline constexpr int inputErrorExit = 1;
inline constexpr int usageErrorExit = 2;

// Those of --diff, as of diff(1); wrong use is as above.
inline constexpr int differentExit = 1;
inline constexpr int diffErrorExit = 3;

/// Prints `message` as a line that begins with the program's name.
void reportError(const std::string& message);

/// Says that memory ran out. Needs no memory itself.
void reportMissingMemory();

} // namespace kelvinbar
