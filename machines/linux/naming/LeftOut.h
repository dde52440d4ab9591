#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

namespace kelvinbar {

/// Notes a channel in `leftOut`, by its file: a speed and its limits have one feature. Does nothing if
/// `leftOut` is null.
inline void leaveOut(LeftOutChannels* leftOut, const SensorChip& chip, const SensorChannel& channel,
                     LeftOutReason reason) {
    if (leftOut == nullptr) return;
    const std::string file = channel.file.filename().string();
    leftOut->push_back(
        {chip.entry.native(), chip.sensorsName + "/" + (file.empty() ? channel.feature : file), reason});
}

} // namespace kelvinbar
