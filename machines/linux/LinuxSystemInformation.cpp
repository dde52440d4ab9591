#include "machines/linux/LinuxSystemInformation.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/sources/ProcessorList.h"
#include "machines/linux/sources/ThermalZones.h"

#include <charconv>
#include <sys/utsname.h>
#include <utility>

namespace kelvinbar {

namespace {

/// The value of the first "name : value" line with that name in a file of /proc.
std::optional<std::string> procValue(const std::filesystem::path& file, std::string_view name) {
    const auto text = systemFileText(file);
    if (!text) return std::nullopt;
    for (std::string_view rest = *text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos && trimmed(line.substr(0, colon)) == name) {
            return std::string(trimmed(line.substr(colon + 1)));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::nullopt;
}

std::optional<std::string> zeroTerminated(std::optional<std::string> text) {
    if (text) text->push_back('\0');
    return text;
}

} // namespace

LinuxSystemInformation::LinuxSystemInformation(std::filesystem::path root) : root_(std::move(root)) {}

std::optional<std::string> LinuxSystemInformation::systemBytes(std::string_view name) const {
    if (name == "machdep.cpu.brand_string")
        return zeroTerminated(procValue(root_ / "proc/cpuinfo", "model name"));
    if (name != "hw.model") return std::nullopt;
    if (auto product = systemFileLine(root_ / "sys/class/dmi/id/product_name"))
        return zeroTerminated(product);
    return systemFileText(root_ / "proc/device-tree/model"); // zero-terminated already
}

int LinuxSystemInformation::activeProcessorCount() const {
    const auto online = systemFileLine(root_ / "sys/devices/system/cpu/online");
    return online ? static_cast<int>(processorsInList(*online).size()) : 0;
}

std::uint64_t LinuxSystemInformation::physicalMemory() const {
    const std::string total = procValue(root_ / "proc/meminfo", "MemTotal").value_or("");
    std::string_view text = total;
    const std::uint64_t kibibytes = takeWholeNumber<std::uint64_t>(text).value_or(0);
    return trimmed(text) == "kB" ? kibibytes * 1024 : 0;
}

std::string LinuxSystemInformation::architecture() const {
    // Kernels before 6.1 lack this file. uname() only describes the running machine, not a recorded one.
    const auto named = systemFileLine(root_ / "proc/sys/kernel/arch");
    utsname name{};
    if (named || root_ != "/" || ::uname(&name) != 0) return named.value_or("");
    return static_cast<const char*>(name.machine);
}

std::optional<int> LinuxSystemInformation::thermalState() const {
    return thermalStateOfZones(root_ / "sys/class/thermal");
}

std::string_view LinuxSystemInformation::thermalStateName() const { return "Thermal State"; }

bool LinuxSystemInformation::isLowPowerModeEnabled() const {
    const std::filesystem::path firmware = root_ / "sys/firmware/acpi";
    if (const auto profile = systemFileLine(firmware / "platform_profile")) {
        // Firmware without a "low-power" profile saves power with one of these.
        const bool hasLowPower = contains(
            systemFileText(firmware / "platform_profile_choices").value_or("low-power"), "low-power");
        return profile == "low-power" || (!hasLowPower && (profile == "quiet" || profile == "cool"));
    }
    // Without platform profiles, the power-profiles service sets this preference to save power.
    return systemFileLine(root_ / "sys/devices/system/cpu/cpufreq/policy0/energy_performance_preference") ==
           "power";
}

} // namespace kelvinbar
