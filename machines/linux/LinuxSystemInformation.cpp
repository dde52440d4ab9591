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
