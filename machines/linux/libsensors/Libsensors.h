#pragma once

#include "base/Log.h"
#include "machines/linux/libsensors/SensorConfiguration.h"

#include <filesystem>
#include <memory>

/// The user's configuration of sensors as libsensors reads it from /etc/sensors3.conf and /etc/sensors.d. The
/// library is loaded at the first discovery. Where it is missing, nothing is configured and all else works;
/// the log says so.
///
/// Pitfalls of the library: it reads /sys and no other tree, so it must not be used for a recorded machine.
/// Its state is the process's, so there is one configuration a process. It is not safe with threads: one lock
/// serialises all calls, and a sensor that stalls in the library stalls the other computed ones. It ends the
/// program when it runs out of memory.
namespace kelvinbar {

/// Where the library and its configuration are.
struct LibsensorsPlace {
    std::filesystem::path library = "libsensors.so.5"; ///< looked for where shared libraries are
    std::filesystem::path configuration = "/etc";      ///< only watched; the library knows its own place
};

/// Null when the program was built without the library's header. `log` outlives the configuration.
std::shared_ptr<SensorConfiguration> libsensorsConfiguration(Log& log, const LibsensorsPlace& place = {});

} // namespace kelvinbar
