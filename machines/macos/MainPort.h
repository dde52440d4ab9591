#pragma once

#include <IOKit/IOKitLib.h>

namespace kelvinbar {

/// The port to I/O Kit. No port stands for the main one on every version of the system; the constant for it
/// has had two names.
inline constexpr mach_port_t mainPort = MACH_PORT_NULL;

} // namespace kelvinbar
