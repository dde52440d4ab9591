#pragma once

#include "base/Log.h"
#include "panel/PanelWindow.h"

namespace kelvinbar {

/// The panel's window over `store`, which it keeps alive. Null if the panel cannot be loaded; the reason is
/// logged. Main thread.
std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers, Log& log);

} // namespace kelvinbar
