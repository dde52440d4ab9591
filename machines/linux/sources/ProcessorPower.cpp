#include "machines/linux/sources/ProcessorPower.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "sensors/ReadWatch.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// The number in "package-1": the name of the zone, or of the zone that contains it.
std::optional<int> packageOf(const fs::path& zone) {
    constexpr std::string_view prefix = "package-";
    const std::string entry = zone.filename().string();
    const fs::path package = zone.parent_path() / entry.substr(0, entry.find(':', entry.find(':') + 1));
    const std::string name = systemFileLine(package / "name").value_or("");
    std::string_view number = name;
    if (!number.starts_with(prefix)) return std::nullopt;
    number.remove_prefix(prefix.size());
    return takeWholeNumber<int>(number);
}

SensorChip chipAt(const fs::path& zone, const std::string& label) {
    SensorChannel channel(SensorKind::energy, 0);
    channel.feature = "energy";
    channel.label = label;
    channel.isLabelled = true;
    channel.file = zone / "energy_uj";
    channel.countsPerUnit = 1e6;
    channel.range = zone / "max_energy_range_uj";
    SensorChip chip;
    chip.device = zone.filename().string();
    chip.name = chip.stableName = "rapl";
    chip.sensorsName = replacedAll(chip.device, ":", "-");
    chip.place = packageOf(zone);
    chip.entry = chip.folder = zone;
    chip.channels.push_back(std::move(channel));
    return chip;
}

} // namespace

std::vector<SensorChip> processorPowerChips(const fs::path& root, LeftOutChannels* leftOut) {
    std::vector<SensorChip> chips;
    // "intel-rapl:0:1" is a zone. A name without a colon is the control type, and "intel-rapl-mmio:0" is the
    // package again.
    for (const fs::path& zone : visitedClassEntries(root, "powercap")) {
        const std::string entry = zone.filename().string();
        if (!entry.starts_with("intel-rapl:")) continue;
        const DeviceVisit visit(zone.native(), LogCategory::sourceKernel);
        if (!visit.isAllowed()) continue;
        const auto label = systemFileLine(zone / "name");
        if (label) {
            chips.push_back(chipAt(zone, *label));
        } else if (leftOut != nullptr) {
            leftOut->push_back({zone.native(), entry, LeftOutReason::unnamed});
        }
    }
    return chips;
}

} // namespace kelvinbar
