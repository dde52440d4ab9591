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

/// Fan speeds in the I/O registry. On PCs with sensor drivers, fans are properties of registry entries
/// instead of keys of the controller. There is no standard name for them, so an entry is recognised by words
/// in its class, name and model, and a fan by words in the property's name.
///
/// Limits: at most sixteen fans, 0 to 30000 RPM. Pitfall: iterating over the registry takes long, so the
/// result is cached and may be 15 seconds old.
namespace kelvinbar {

/// The fans of one registry, with their cache. Any thread.
class RegistryFans {
  public:
    /// `registry` is null on systems without an I/O registry.
    RegistryFans(std::shared_ptr<IORegistry> registry, std::shared_ptr<const MonotonicClock> clock);

    /// The fans in the order found, each with name, category and unit. Empty if the iteration cannot start.
    /// Two threads that find the cache outdated both iterate: the lock is not held meanwhile.
    std::vector<RawReading> read();

  private:
    const std::shared_ptr<IORegistry> registry_;
    const std::shared_ptr<const MonotonicClock> clock_;
    std::mutex monitor_; ///< guards the members below
    std::optional<std::vector<RawReading>> superIOFanCache_;
    std::chrono::nanoseconds superIOFanCacheDate_{0}; ///< when the cached iteration ended
};

/// Whether `text` contains a word for a fan or its speed. Ignores case.
bool stringContainsFanHint(std::string_view text);

/// The entry's property `name`. Empty if it is missing or not a text.
std::string registryStringValue(const IORegistryEntry& entry, std::string_view name);

/// The raw text of a registry property: bytes as hex digits, a text unchanged, and a number as the hex digits
/// of its unsigned 64-bit value. Negative numbers wrap around, numbers outside 64 bits are clamped, NaN is 0.
std::string fanRawText(const Value& value);

} // namespace kelvinbar
