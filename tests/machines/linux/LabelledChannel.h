#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <string_view>

namespace kelvinbar {

/// A channel with a label file.
inline SensorChannel labelled(SensorKind kind, int number, std::string_view label) {
    SensorChannel channel(kind, number);
    channel.label = label;
    channel.isLabelled = true;
    return channel;
}

} // namespace kelvinbar
