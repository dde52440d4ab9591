#pragma once

#include <optional>

namespace kelvinbar {

/// What the test program does instead of running tests when a test starts it a second time, with an option
/// that names the part to play. Returns the exit status, or no value without such an option.
std::optional<int> playedPart(int& argc, char** argv);

} // namespace kelvinbar
