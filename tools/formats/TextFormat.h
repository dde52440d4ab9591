#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// The text that the panel copies. It ends with a line feed on a terminal and in a series.
ReportWriter makeTextWriter(const FormatSettings& settings);

} // namespace kelvinbar
