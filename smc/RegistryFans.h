#pragma once

#include "base/Clock.h"
#include "sensors/RawReading.h"
#include "smc/IORegistry.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Fan speeds in the I/O registry: on PCs with sensor drivers they are properties of registry entries rather
/// than keys of the controller. A walk over the registry is slow, so its result is kept for 15 seconds.
class RegistryFans {
  public:
    /// `registry` is null on a system without an I/O registry.
    RegistryFans(std::shared_ptr<IORegistry> registry, std::shared_ptr<const MonotonicClock> clock);

    /// The fans in the order found, each with name, category and unit. Empty when the walk cannot begin. Any
    /// thread; the walk itself is made outside the cache's lock.
    std::vector<RawReading> read();

  private:
    const std::shared_ptr<IORegistry> registry_;
    const std::shared_ptr<const MonotonicClock> clock_;
    std::mutex monitor_; ///< guards what follows
    std::optional<std::vector<RawReading>> superIOFanCache_;
    std::chrono::nanoseconds superIOFanCacheDate_{0}; ///< when the cached walk ended
};

/// Whether `text` mentions a fan or its speed, in any letter case.
bool stringContainsFanHint(std::string_view text);

/// The entry's property `name` if it is a text, otherwise empty.
std::string registryStringValue(const IORegistryEntry& entry, std::string_view name);

/// The raw text of a registry property: hex digits of bytes, a text as it is, and of a number the hex digits
/// of its unsigned 64-bit value. Negative numbers wrap around; what is beyond 64 bits is clamped; NaN is 0.
std::string fanRawText(const Value& value);

} // namespace kelvinbar
