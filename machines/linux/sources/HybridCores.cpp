#include "machines/linux/sources/HybridCores.h"

#include "base/NumberText.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/sources/ProcessorList.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// Package and core, in the kernel's numbering.
using Core = std::pair<std::int64_t, std::int64_t>;
using CoreNames = std::map<Core, std::string>;

/// The names of the cores that a performance-monitoring unit covers.
CoreNames coreNames(const fs::path& root, std::string_view unit, std::string_view prefix) {
    const auto list = systemFileLine(root / "sys/devices" / unit / "cpus");
    if (!list) return {};
    CoreNames names;
    for (const std::uint32_t processor : processorsInList(*list)) {
        const fs::path topology =
            root / "sys/devices/system/cpu" / ("cpu" + std::to_string(processor)) / "topology";
        const auto core = systemFileNumber(topology / "core_id");
        const auto package = systemFileNumber(topology / "physical_package_id");
        if (core) names.try_emplace(Core(package.value_or(0), *core));
    }
    std::size_t index = 0;
    for (auto& [core, name] : names) name = std::string(prefix).append(std::to_string(index++));
    return names;
}

/// Empty on a processor with one type of core.
CoreNames hybridCoreNames(const fs::path& root) {
    CoreNames efficient = coreNames(root, "cpu_atom", "E-Core ");
    if (efficient.empty()) return {};
    CoreNames names = coreNames(root, "cpu_core", "P-Core ");
    names.merge(efficient);
    return names;
}

/// The package of "…/coretemp.1".
std::int64_t packageOf(const SensorChip& chip) {
    const std::string_view device = chip.device;
    return wholeNumberIn<std::int64_t>(device.substr(device.rfind('.') + 1)).value_or(0);
}

std::optional<std::int64_t> coreNumber(const SensorChannel& channel) {
    constexpr std::string_view prefix = "Core ";
    if (!channel.label.starts_with(prefix)) return std::nullopt;
    return wholeNumberIn<std::int64_t>(std::string_view(channel.label).substr(prefix.size()));
}

} // namespace

void nameHybridCores(const fs::path& root, std::vector<SensorChip>& chips) {
    const CoreNames names = hybridCoreNames(root);
    if (names.empty()) return;
    for (SensorChip& chip : chips) {
        if (chip.name != "coretemp") continue;
        for (SensorChannel& channel : chip.channels) {
            const auto core = coreNumber(channel);
            const auto name = core ? names.find({packageOf(chip), *core}) : names.end();
            if (name != names.end()) channel.label = name->second;
        }
    }
}

} // namespace kelvinbar
