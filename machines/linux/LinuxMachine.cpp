#include "machines/linux/LinuxMachine.h"

#include "machines/linux/LinuxSystemInformation.h"
#include "machines/linux/applesmc/AppleSMCDetection.h"
#include "machines/linux/applesmc/KeySourceDriver.h"
#include "machines/linux/libsensors/Libsensors.h"
#include "machines/linux/sources/ChipLimits.h"
#include "machines/linux/sources/KernelSensorSource.h"
#include "sensors/SourceChain.h"
#include "sensors/WatchedSource.h"
#include "smc/SMCBridge.h"

#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

constexpr MachineTexts linuxTexts{.reading = "Reading sensors…",
                                  .loaded = "sensors",
                                  .nothingReadable = "No sensor returned a real value",
                                  .systemFactsOnly = "No sensors; showing what the system knows",
                                  .scanning = "Scanning sensors…",
                                  .memoryCard = "Memory sensors",
                                  .pinToolTip = "Double-click to add this key to the tray",
                                  .unpinToolTip = "Double-click to remove this key from the tray",
                                  .pinned = "Showing this key in the tray",
                                  .pin = "Show in tray",
                                  .unpin = "Remove from tray",
                                  .loginItem = "Enable or disable starting Kelvinbar with the session.",
                                  .about = "Tray sensor reader for Linux PCs and for Macs that run Linux."};

std::shared_ptr<SensorSource> appleSMC(const std::filesystem::path& root,
                                       const std::shared_ptr<const MonotonicClock>& clock, Log& log) {
    auto keys = std::make_unique<DetectedAppleSMC>([root, &log] { return openAppleSMC(root, log); }, clock);
    auto bridge =
        std::make_shared<SMCBridge>(std::make_shared<KeySourceDriver>(std::move(keys)), nullptr, clock, &log);
    return std::make_shared<WatchedSource>(std::move(bridge), std::string(appleSMCDevice),
                                           LogCategory::sourceSMC);
}

/// libsensors only reads the /sys of the running system.
std::shared_ptr<SensorConfiguration> configurationFor(const std::filesystem::path& root, Log& log) {
    return root == "/" ? libsensorsConfiguration(log) : nullptr;
}

} // namespace

Machine makeLinuxMachine(const std::filesystem::path& root, std::shared_ptr<const MonotonicClock> clock,
                         Log& log, std::chrono::milliseconds answerLimit) {
    std::vector<std::shared_ptr<SensorSource>> sources{
        appleSMC(root, clock, log),
        std::make_shared<KernelSensorSource>(root, clock, log, configurationFor(root, log))};
    auto watch = std::make_shared<ReadWatch>(clock, log, answerLimit);
    return {.source = std::make_shared<SourceChain>(std::move(sources)),
            .system = std::make_shared<LinuxSystemInformation>(root),
            .clock = std::move(clock),
            .watch = std::move(watch),
            .limits = std::make_shared<ChipLimits>(root),
            .texts = linuxTexts,
            .devicesComeAndGo = true};
}

} // namespace kelvinbar
