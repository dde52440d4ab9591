#pragma once

#include "base/Log.h"
#include "sensors/ReadWatch.h"

#include <filesystem>

namespace kelvinbar {

/// What `read` returns, which reads files of `device` and of no other. A value without content if the device
/// has been set aside because it does not answer.
template <typename Read>
auto visitedRead(const std::filesystem::path& device, const Read& read) -> decltype(read()) {
    const DeviceVisit visit(device.native(), LogCategory::sourceKernel);
    return visit.isAllowed() ? read() : decltype(read())();
}

} // namespace kelvinbar
