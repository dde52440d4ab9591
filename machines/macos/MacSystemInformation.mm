#include "machines/macos/MacSystemInformation.h"

#include "machines/macos/SystemEntries.h"

#import <Foundation/Foundation.h>

namespace kelvinbar {

std::optional<std::string> MacSystemInformation::systemBytes(std::string_view name) const {
    return systemEntry(name);
}

int MacSystemInformation::activeProcessorCount() const {
    @autoreleasepool {
        return static_cast<int>(NSProcessInfo.processInfo.activeProcessorCount);
    }
}

std::uint64_t MacSystemInformation::physicalMemory() const {
    @autoreleasepool {
        return NSProcessInfo.processInfo.physicalMemory;
    }
}

std::string MacSystemInformation::architecture() const { return "Apple Silicon"; }

std::string_view MacSystemInformation::thermalStateName() const { return "macOS Thermal State"; }

std::optional<int> MacSystemInformation::thermalState() const {
    @autoreleasepool {
        return static_cast<int>(NSProcessInfo.processInfo.thermalState);
    }
}

bool MacSystemInformation::isLowPowerModeEnabled() const {
    if (@available(macOS 12.0, *)) {
        @autoreleasepool {
            return NSProcessInfo.processInfo.lowPowerModeEnabled;
        }
    }
    return false;
}

} // namespace kelvinbar
