#pragma once

#include "base/Log.h"
#include "machines/linux/libsensors/SensorConfiguration.h"

#include <filesystem>
#include <memory>

/// The user's sensor configuration, as libsensors reads it from /etc/sensors3.conf and /etc/sensors.d. The
/// library is loaded at the first discovery. Without it nothing is configured, everything else works, and the
/// log has a line about it.
///
/// Pitfalls of the library:
/// - It reads the system's /sys only, so it must not be used with a recorded machine.
/// - Its state is global: one configuration per process.
/// - It is not thread-safe. One lock serialises all calls, so a sensor that stalls in the library stalls the
///   other computed ones.
/// - It exits the program when it runs out of memory.
namespace kelvinbar {

/// Where the library and its configuration are.
struct LibsensorsPlace {
    std::filesystem::path sharedObject = "libsensors.so.5"; ///< found by the dynamic linker
    std::filesystem::path configuration =
        "/etc"; ///< watched for changes; the library itself always reads /etc
};

/// Null when the program was built without the library's header. `log` outlives the configuration.
std::shared_ptr<SensorConfiguration> libsensorsConfiguration(Log& log, const LibsensorsPlace& place = {});

} // namespace kelvinbar
