#include "platform/linux/LinuxSystemInformation.h"

#include "base/Text.h"
#include "platform/linux/SystemFile.h"
#include "platform/linux/ThermalZones.h"

#include <charconv>
#include <utility>

namespace kelvinbar {

namespace {

/// The value of the first "name : value" line of that name in a file of /proc.
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

/// The whole number at the front of `text`, which loses it; nothing when there is none.
template <typename Number>
std::optional<Number> takeNumber(std::string_view& text) {
    Number number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// The number of processors in a list such as "0-3,8,10-11"; 0 when it is malformed.
int processorsInList(std::string_view list) {
    constexpr std::uint32_t mostProcessors = 1'000'000; // beyond any kernel's limit
    std::uint32_t count = 0;
    for (;;) {
        const auto first = takeNumber<std::uint32_t>(list);
        auto last = first;
        if (list.starts_with('-')) {
            list.remove_prefix(1);
            last = takeNumber<std::uint32_t>(list);
        }
        if (!first || !last || *last < *first || *last >= mostProcessors) return 0;
        count += *last - *first + 1;
        if (!list.starts_with(',') || count > mostProcessors) break;
        list.remove_prefix(1);
    }
    return list.empty() && count <= mostProcessors ? static_cast<int>(count) : 0;
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
    return processorsInList(systemFileLine(root_ / "sys/devices/system/cpu/online").value_or(""));
}

std::uint64_t LinuxSystemInformation::physicalMemory() const {
    const std::string total = procValue(root_ / "proc/meminfo", "MemTotal").value_or("");
    std::string_view text = total;
    const std::uint64_t kibibytes = takeNumber<std::uint64_t>(text).value_or(0);
    return trimmed(text) == "kB" ? kibibytes * 1024 : 0;
}

int LinuxSystemInformation::thermalState() const { return thermalStateOfZones(root_ / "sys/class/thermal"); }

bool LinuxSystemInformation::isLowPowerModeEnabled() const {
    return systemFileLine(root_ / "sys/firmware/acpi/platform_profile") == "low-power";
}

} // namespace kelvinbar
