#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/SensorWords.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// The first step of naming: identifies each chip, puts the chips into a fixed order and numbers those that
/// look alike. SensorNames.h combines the result with the labels of the channels. Pure functions; results
/// point into their arguments.
namespace kelvinbar {

/// A chip with the parts that the keys and names of its readings share.
struct NamedDevice {
    const SensorChip* chip = nullptr;
    std::string keyStart;           ///< of its keys: what precedes the slash
    std::string type;               ///< see typeOf()
    std::string family;             ///< the type, or a stand-in for it, to look up in the tables
    const DeviceRow* row = nullptr; ///< null for a device that no row matches
    std::string words;              ///< "GPU"
    int number = 1;                 ///< among equal devices, from 1
    bool isNumberShown = false;
    std::string detail; ///< model or interface, where that distinguishes it
    std::map<SensorKind, std::size_t> channelCounts;
};

/// All chips with readings, in an order that does not depend on the order of `chips`, with numbered keys and
/// names. Leaves out Apple's SMC, whose keys have names in the catalogue.
std::vector<NamedDevice> namedDevices(const std::vector<SensorChip>& chips);

/// Whether the channel is a measurement or a state, as opposed to a limit, a target or the mode of a fan.
bool isMeasured(const SensorChannel& channel);

/// The kernel's name of a channel ("temp3"), from its kind and number if it has no name.
std::string featureOf(const SensorChannel& channel);

/// `text` with an underscore for each control character and ill-formed byte, so that it can be part of a key.
std::string keyText(std::string_view text);

/// The type of a chip's readings: the driver's name, or "battery", "charger", "usb" or "peripheral".
std::string typeOf(const SensorChip& chip);

} // namespace kelvinbar
