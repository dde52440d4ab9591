#pragma once

#include <IOKit/IOKitLib.h>

namespace kelvinbar {

/// The port for calls to I/O Kit. MACH_PORT_NULL means the default port in every macOS version. The named
/// constant was renamed in macOS 12 (kIOMasterPortDefault, kIOMainPortDefault), so neither name builds
/// everywhere.
inline constexpr mach_port_t mainPort = MACH_PORT_NULL;

} // namespace kelvinbar
