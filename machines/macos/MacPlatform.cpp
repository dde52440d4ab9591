#include "machines/Platform.h"
#include "machines/macos/ContinuousClock.h"
#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "machines/macos/MacSystemInformation.h"

#include <memory>

namespace kelvinbar {

Machine makePlatform() {
    return {.driver = std::make_shared<IOKitSMCDriver>(),
            .registry = std::make_shared<IOKitRegistry>(),
            .system = std::make_shared<MacSystemInformation>(),
            .clock = std::make_shared<ContinuousClock>()};
}

} // namespace kelvinbar
