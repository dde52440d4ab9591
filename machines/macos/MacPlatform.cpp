#include "machines/Platform.h"
#include "machines/macos/ContinuousClock.h"
#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "machines/macos/MacSystemInformation.h"
#include "sensors/WatchedSource.h"
#include "smc/SMCBridge.h"

#include <memory>
#include <optional>

namespace kelvinbar {

Machine makePlatform(Log& log) {
    const auto clock = std::make_shared<ContinuousClock>();
    auto bridge = std::make_shared<SMCBridge>(std::make_shared<IOKitSMCDriver>(),
                                              std::make_shared<IOKitRegistry>(), clock, &log);
    return {.source = std::make_shared<WatchedSource>(std::move(bridge), "AppleSMC", LogCategory::sourceSMC),
            .system = std::make_shared<MacSystemInformation>(),
            .clock = clock,
            .watch = std::make_shared<ReadWatch>(clock, log)};
}

std::vector<FindingSection> platformFindings(const Machine& machine) {
    const SourceStatus status = machine.source->status();
    return {{.title = "Sources",
             .findings = {{.subject = "controller",
                           .state = status.isAvailable ? FindingState::good : FindingState::problem,
                           .found = status.message}}}};
}

std::string_view usualDemoMachine() { return "intel-notebook"; }

/// The toolkit names the domain of the preferences, and may choose another name.
std::optional<Dictionary> storedPreferenceLists() { return std::nullopt; }

std::string storedPreferencesStamp() { return {}; }

} // namespace kelvinbar
