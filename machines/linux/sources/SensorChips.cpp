#include "machines/linux/sources/SensorChips.h"

#include "machines/linux/files/SystemFile.h"
#include "machines/linux/libsensors/ConfiguredChips.h"
#include "machines/linux/naming/LeftOut.h"
#include "machines/linux/sources/HwmonChips.h"
#include "machines/linux/sources/HybridCores.h"
#include "machines/linux/sources/PowerSupplies.h"
#include "machines/linux/sources/ProcessorPower.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <iterator>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

bool isReadable(const std::filesystem::path& file) {
    const int descriptor = openRegularFile(file);
    if (descriptor >= 0) ::close(descriptor);
    return descriptor >= 0;
}

void dropUnreadableCounters(std::vector<SensorChip>& chips, Log& log, LeftOutChannels* leftOut) {
    std::size_t unreadable = 0;
    for (SensorChip& chip : chips) {
        if (std::ranges::find(chip.channels, SensorKind::energy, &SensorChannel::kind) == chip.channels.end())
            continue;
        const DeviceVisit visit(chip.entry.native(), LogCategory::sourceKernel);
        if (!visit.isAllowed()) continue;
        unreadable += std::erase_if(chip.channels, [&](const SensorChannel& channel) {
            const bool isDropped = channel.kind == SensorKind::energy && !isReadable(channel.file);
            if (isDropped) leaveOut(leftOut, chip, channel, LeftOutReason::notPermitted);
            return isDropped;
        });
    }
    if (unreadable == 0) return;
    log.once(LogCategory::sourceKernel, LogLevel::info, [] {
        return std::string("energy counters are left out: only the administrator may read them");
    });
}

} // namespace

std::vector<SensorChip> sensorChips(const std::filesystem::path& root, SensorConfiguration* configuration,
                                    Log& log, LeftOutChannels* leftOut) {
    std::vector<SensorChip> chips = hwmonChips(root);
    // Before nameHybridCores(), which only renames cores with the driver's labels: a core that the user has
    // named keeps that name.
    if (configuration != nullptr) {
        const DeviceVisit visit(configurationName, LogCategory::sourceKernel);
        if (visit.isAllowed()) applyConfiguration(chips, *configuration, leftOut);
    }
    std::ranges::move(powerSupplyChips(root, leftOut), std::back_inserter(chips));
    std::ranges::move(processorPowerChips(root, leftOut), std::back_inserter(chips));
    dropUnreadableCounters(chips, log, leftOut);
    const fs::path processors = root / "sys/devices/system/cpu";
    const DeviceVisit visit(processors.native(), LogCategory::sourceKernel);
    if (visit.isAllowed()) nameHybridCores(root, chips);
    return chips;
}

} // namespace kelvinbar
