// The panel as a module, which is loaded when the panel is first opened.

#include "app/PanelMaker.h"
#include "desktop/qt/Modules.h"

#include <utility>

namespace kelvinbar {

namespace {

using MakePanel = PanelWindow* (*)(KelvinbarStore&, PanelHandlers);

MakePanel panelModule() {
    static const auto module =
        reinterpret_cast<MakePanel>(moduleFunction("kelvinbar-panel", "kelvinbarMakePanel"));
    return module;
}

} // namespace

std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers) {
    const MakePanel make = panelModule();
    return std::unique_ptr<PanelWindow>(make == nullptr ? nullptr : make(store, std::move(handlers)));
}

} // namespace kelvinbar
