#pragma once

#include "catalogue/KeySet.h"
#include "machines/linux/naming/SensorChannel.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// The four-character keys that version 0.1 invented for kernel sensors. Pins and hidden keys that it stored
/// are carried over once. To be removed in version 0.4.
namespace kelvinbar {

/// A channel by its place in a list of chips.
struct ChannelPlace {
    std::size_t chip = 0;
    std::size_t channel = 0;

    friend auto operator<=>(const ChannelPlace&, const ChannelPlace&) = default;
};

/// The channel behind each key that version 0.1 gave to one of `chips`; for a power supply that has a hwmon
/// chip too, the channel of that chip, which has the reading now. `controllerKeys` are those of a real
/// controller, which were never given to anything else. The channels of such a controller are left out.
std::map<std::string, ChannelPlace> formerKeys(const std::vector<SensorChip>& chips,
                                               const KeySet& controllerKeys);

} // namespace kelvinbar
