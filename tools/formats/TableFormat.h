#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// The sections of the panel with its names and values, in aligned columns. What belongs to no section comes
/// last. Within a section, readings are in the user's order, or else in that of the panel. In a series, the
/// table has the time above it.
ReportWriter makeTableWriter(const FormatSettings& settings);

} // namespace kelvinbar
