#pragma once

#include "base/Log.h"
#include "desktop/macos/MenuBarPlace.h"

#include <functional>

namespace kelvinbar {

/// Opens the panel for somebody who opens the running program again, and who may do so because its item
/// cannot be seen: then logs why. Does nothing without `openPanel`, as before the program has set its
/// handlers. Main thread.
void openAgain(const std::function<void()>& openPanel, const std::function<ItemSight()>& itemSight, Log& log);

} // namespace kelvinbar
