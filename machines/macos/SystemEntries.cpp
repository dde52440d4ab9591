#include "machines/macos/SystemEntries.h"

#include <sys/sysctl.h>

namespace kelvinbar {

std::optional<std::string> systemEntry(std::string_view name) {
    const std::string entry(name);
    std::size_t size = 0;
    if (sysctlbyname(entry.c_str(), nullptr, &size, nullptr, 0) != 0) return std::nullopt;
    std::string bytes(size, '\0');
    if (sysctlbyname(entry.c_str(), bytes.data(), &size, nullptr, 0) != 0) return std::nullopt;
    return bytes;
}

} // namespace kelvinbar
