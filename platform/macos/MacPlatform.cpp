#include "platform/Platform.h"
#include "platform/macos/ContinuousClock.h"
#include "platform/macos/IOKitRegistry.h"
#include "platform/macos/IOKitSMCDriver.h"
#include "platform/macos/MacSystemInformation.h"

#include <memory>

namespace kelvinbar {

Machine makePlatform() {
    return {.driver = std::make_shared<IOKitSMCDriver>(),
            .registry = std::make_shared<IOKitRegistry>(),
            .system = std::make_shared<MacSystemInformation>(),
            .clock = std::make_shared<ContinuousClock>()};
}

} // namespace kelvinbar
