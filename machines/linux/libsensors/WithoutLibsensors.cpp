#include "machines/linux/libsensors/Libsensors.h"

namespace kelvinbar {

std::shared_ptr<SensorConfiguration> libsensorsConfiguration(Log& log, const LibsensorsPlace&) {
    log.write(LogCategory::sourceKernel, LogLevel::info, "libsensors is not used: built without it");
    return nullptr;
}

} // namespace kelvinbar
