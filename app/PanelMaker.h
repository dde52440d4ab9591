#pragma once

#include "base/Log.h"
#include "panel/PanelWindow.h"

namespace kelvinbar {

/// The panel's window over the store, which outlives it. Null when it cannot be loaded, which is logged.
std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers, Log& log);

} // namespace kelvinbar
