#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// One line: the title that the menu bar shows for these readings, without the space that separates it from
/// the icon there. Empty without readings.
ReportWriter makeTitleWriter(const FormatSettings& settings);

} // namespace kelvinbar
