#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// One line of JSON for a custom module of Waybar: the title as "text", key, name and value of each reading
/// as "tooltip", both as Pango markup, and the "class" that a style sheet can refer to: "readings", or
/// "empty" if there is none.
ReportWriter makeWaybarWriter(const FormatSettings& settings);

} // namespace kelvinbar
