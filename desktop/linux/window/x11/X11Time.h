#pragma once

#include <cstdint>

namespace kelvinbar {

/// The X server's clock in milliseconds, which wraps after 49 days. Asks the display of the environment on a
/// connection of its own. 0 if it does not answer. Main thread.
std::uint32_t x11Time();

} // namespace kelvinbar
