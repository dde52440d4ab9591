#pragma once

#include "base/Clock.h"
#include "smc/IORegistry.h"
#include "smc/SMCValueDecoding.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Fan speeds in the registry: on PCs with sensor drivers they often are properties of registry entries
/// instead of keys of the controller.
namespace kelvinbar {

/// The fans of the registry as results with exactly ten entries each, in the order found; those of the last
/// walk while it is younger than 15 seconds. Empty when the walk cannot be begun. Any thread; the walk itself
/// is made outside the cache's lock.
std::vector<SMCKeyResult> cachedRegistryFans();

/// Whether `text` speaks of a fan or its speed, in any case.
bool stringContainsFanHint(std::string_view text);

/// The entry's property `name` if it is a text, otherwise empty.
std::string registryStringValue(const IORegistryEntry& entry, std::string_view name);

/// The fan speed in RPM that a property's value holds: 0 to 30000; nothing when it holds none.
std::optional<double> fanSpeed(const Value& value);

/// The value as the text of a reading's raw bytes.
std::string fanRawText(const Value& value);

/// The result for the fan that was accepted as number `index` (from 0) under a property of that name.
SMCKeyResult fanResult(std::string_view propertyName, const Value& value, double speed, std::size_t index);

/// Replaces the registry and the clock of the cache, and empties the cache. See useMachine.
void useRegistry(std::shared_ptr<IORegistry> registry, std::shared_ptr<const MonotonicClock> clock);

} // namespace kelvinbar
