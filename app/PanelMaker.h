#pragma once

#include "panel/PanelWindow.h"

namespace kelvinbar {

/// The panel's window over the store, which outlives it. Null when it cannot be loaded, which is reported.
std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers);

} // namespace kelvinbar
