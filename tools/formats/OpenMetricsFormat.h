#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// The text format of OpenMetrics 1.0: a family of gauges for each base unit, one for numbers without a unit,
/// and one for texts. Without time stamps: a scrape has its own time. Ends with "# EOF".
ReportWriter makeOpenMetricsWriter(const FormatSettings& settings);

} // namespace kelvinbar
