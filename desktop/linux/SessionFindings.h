#pragma once

#include "base/Finding.h"

#include <QString>
#include <vector>

namespace kelvinbar {

class Log;

/// What the session of this process has for the program whose bus name is `name`: its tray, and the toolkit
/// and window system that the panel is drawn with. Asks the session bus and the X server on connections of
/// its own; a running instance is not called. Needs no application object.
std::vector<FindingSection> sessionFindings(const QString& name, Log& log);

} // namespace kelvinbar
