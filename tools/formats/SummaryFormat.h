#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// Four lines: the hottest sensor, the fastest fan, the total power and the battery, each "none" if the
/// machine tells nothing about it.
///
/// Total power is what a meter of the whole machine or a controller's total says. Without one it is the sum
/// of the highest power of each processor package, its memory, each other chip, and a controller. Cores, and
/// graphics in the package, are parts of the package. Limits, targets and other settings do not count, and
/// neither do batteries and chargers.
ReportWriter makeSummaryWriter(const FormatSettings& settings);

} // namespace kelvinbar
