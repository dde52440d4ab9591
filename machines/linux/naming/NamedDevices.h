#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/SensorWords.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// A chip with what the keys and names of its readings have in common.
struct NamedDevice {
    const SensorChip* chip = nullptr;
    std::string keyStart; ///< of its keys, up to the slash
    std::string type;
    std::string family; ///< the name that the tables know it by
    const DeviceRow* row = nullptr;
    std::string words;
    int number = 1;
    bool isNumberShown = false;
    std::string detail; ///< model or interface, where that tells it apart
};

/// All chips with readings, in an order that does not depend on the one they came in, with their keys and
/// names counted. Apple's controller is left out: its keys have names of their own. The devices point into
/// `chips`.
std::vector<NamedDevice> namedDevices(const std::vector<SensorChip>& chips);

/// Whether the channel is a measurement or a state rather than a limit, a target or a name of a fan.
bool isMeasured(const SensorChannel& channel);

/// The hwmon chip with channels of that kind that the kernel made for a power supply; null when there is
/// none, and for a chip that is no supply. Points into `chips`.
const SensorChip* monitorOf(const SensorChip& supply, SensorKind kind, const std::vector<SensorChip>& chips);

/// Whether such a hwmon chip repeats the supply. It is kept instead: other tools know it by its keys.
bool isRepetition(const SensorChip& supply, SensorKind kind, const std::vector<SensorChip>& chips);

/// The kernel's name of a channel: "temp3".
std::string featureOf(const SensorChannel& channel);

/// `text` without what may not stand in a key.
std::string keyText(std::string_view text);

/// The type column of a chip's readings.
std::string typeOf(const SensorChip& chip);

} // namespace kelvinbar
