#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// Fields separated by commas, as in RFC 4180, with a heading; lines end with a line feed. A single report
/// has a row a reading. A series has a row a report and a column a reading, under the name and the unit; its
/// columns are the readings of the first report, and a reading that is missing later leaves its field empty.
ReportWriter makeCsvWriter(const FormatSettings& settings);

} // namespace kelvinbar
