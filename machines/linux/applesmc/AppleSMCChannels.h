#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "sensors/RawReading.h"

#include <optional>
#include <string>
#include <string_view>

/// Apple's controller where this user may not choose its keys: the kernel's driver still shows temperatures
/// and fans to everyone. They keep the keys, types and bytes that the controller has for them.
namespace kelvinbar {

/// The name of the driver's chip.
inline constexpr std::string_view appleSMCChip = "applesmc";

/// A key of the controller with its data type.
struct ControllerKey {
    std::string key;
    std::string_view type;
};

/// The key behind a channel of the driver's chip; nothing for a channel that has none.
std::optional<ControllerKey> controllerKeyOf(const SensorChannel& channel);

/// The reading of a number under a key, as the controller itself returns it. Nothing when the type cannot
/// hold the number.
std::optional<RawReading> controllerReading(std::string_view key, std::string_view type, double number);

/// The reading of a fan's name under its own key; nothing for a fan without a label.
std::optional<RawReading> fanNameReading(const SensorChannel& fan);

} // namespace kelvinbar
