#pragma once

#include "catalogue/KeySet.h"
#include "machines/linux/naming/SensorChannel.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Migration of the four-character keys that version 0.1 invented for kernel sensors. Pins and hidden keys
/// stored under them are converted once, to the keys that the sensors have now. Reproduces the old
/// assignment, including its quirks. To be removed in version 0.4. Pure functions.
namespace kelvinbar {

/// A channel, by its indexes into a list of chips.
struct ChannelPlace {
    std::size_t chip = 0;
    std::size_t channel = 0;

    friend bool operator==(const ChannelPlace&, const ChannelPlace&) = default;

    friend bool operator<(ChannelPlace left, ChannelPlace right) {
        return std::pair(left.chip, left.channel) < std::pair(right.chip, right.channel);
    }
};

/// The channel behind each key that version 0.1 assigned for `chips`. If a power supply also has a hwmon
/// chip, that is the chip's channel, because it now has the reading.
///
/// `controllerKeys` are the keys of a real SMC, which version 0.1 never assigned to anything else. The
/// channels of the SMC's own driver are left out.
std::map<std::string, ChannelPlace> formerKeys(const std::vector<SensorChip>& chips,
                                               const KeySet& controllerKeys);

} // namespace kelvinbar
