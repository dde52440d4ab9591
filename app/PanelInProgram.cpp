// The panel linked into the program.

#include "app/PanelMaker.h"

#include <utility>

namespace kelvinbar {

std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers, Log& /*log*/) {
    return makePanelWindow(store, std::move(handlers));
}

} // namespace kelvinbar
