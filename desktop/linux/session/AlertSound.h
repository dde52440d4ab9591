#pragma once

#include "base/Finding.h"

#include <functional>
#include <vector>

namespace kelvinbar {

/// A way to play the desktop's alert sound. Returns false if it is not there.
using AlertWay = std::function<bool()>;

/// Plays the sound in the first way that is there. Silent if none is.
void playAlert(const std::vector<AlertWay>& ways);

/// The ways of this desktop, best first: the bell of the sound theme, which every desktop with sounds can
/// play; the bell of the X server, which desktops turn into a sound or a flash; the bell of the terminal.
/// Main thread, while the application object exists.
///
/// Limit: whether a sound is audible in the end is not known.
std::vector<AlertWay> alertWays();

/// Whether libcanberra, which plays the theme's bell, can be loaded; loads it. Needs no application object.
bool hasThemeBell();

/// What plays the sound. Pure function.
Finding alertFinding(bool hasThemeBell);

} // namespace kelvinbar
