#include "process/CostMeter.h"

#include <charconv>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <system_error>

namespace kelvinbar {

namespace {

std::chrono::duration<double> secondsOf(const timeval& time) {
    return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

/// Without the time and the memory.
ProcessCost costSinceStart() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    // A voluntary switch is a wait, which ends with a wake-up.
    return {.cpuTime = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
            .wakeUps = static_cast<std::uint64_t>(usage.ru_nvcsw),
            .memory = {}};
}

/// The bytes in the line "NAME:  123 kB".
std::optional<std::uint64_t> bytesIn(std::string_view text, const std::string& name) {
    const auto line = text.find("\n" + name + ":");
    if (line == std::string_view::npos) return std::nullopt;
    const auto digits = text.find_first_not_of(' ', line + name.size() + 2);
    if (digits == std::string_view::npos) return std::nullopt;
    const std::string_view rest = text.substr(digits);
    std::uint64_t kibibytes = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), kibibytes);
    const bool isNumber =
        error == std::errc() && rest.substr(static_cast<std::size_t>(end - rest.data())).starts_with(" kB\n");
    return isNumber ? std::optional(kibibytes * 1024) : std::nullopt;
}

std::optional<MemoryUse> ownMemoryUse() {
    std::ifstream file("/proc/self/smaps_rollup");
    std::ostringstream text;
    text << file.rdbuf();
    return memoryUseIn(text.str());
}

} // namespace

CostMeter::CostMeter() : beginning_(std::chrono::steady_clock::now()), before_(costSinceStart()) {}

ProcessCost CostMeter::cost() const {
    const ProcessCost now = costSinceStart();
    return {.time = std::chrono::steady_clock::now() - beginning_,
            .cpuTime = now.cpuTime - before_.cpuTime,
            .wakeUps = now.wakeUps - before_.wakeUps,
            .memory = ownMemoryUse()};
}

std::optional<MemoryUse> memoryUseIn(std::string_view smapsRollup) {
    const auto resident = bytesIn(smapsRollup, "Rss");
    const auto clean = bytesIn(smapsRollup, "Private_Clean");
    const auto dirty = bytesIn(smapsRollup, "Private_Dirty");
    if (!resident || !clean || !dirty) return std::nullopt;
    return MemoryUse{.resident = *resident, .withoutShared = *clean + *dirty};
}

} // namespace kelvinbar
