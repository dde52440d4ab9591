#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "sensors/RawReading.h"

#include <optional>
#include <string>
#include <string_view>

/// Fallback for an Apple computer whose SMC keys this user may not list: the kernel driver's hwmon channels,
/// which everyone may read. Each channel is turned back into the SMC key that the driver reads for it, with
/// the type and bytes that the SMC itself would return. Pins and hidden keys therefore stay valid when the
/// user later gets access. Pure functions.
namespace kelvinbar {

/// The driver's name in the hwmon class.
inline constexpr std::string_view appleSMCChip = "applesmc";

/// An SMC key with its data type.
struct ControllerKey {
    std::string key;
    std::string_view type;
};

/// The key that the driver reads for a channel; nothing for a channel without one.
std::optional<ControllerKey> controllerKeyOf(const SensorChannel& channel);

/// The reading of `number` under a key, encoded and decoded as the type requires. Nothing when the type
/// cannot hold the number.
std::optional<RawReading> controllerReading(std::string_view key, std::string_view type, double number);

/// The reading with a fan's name, which has a key of its own; nothing for a fan without a label.
std::optional<RawReading> fanNameReading(const SensorChannel& fan);

} // namespace kelvinbar
