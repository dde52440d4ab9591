// The panel as a module, loaded when it is first opened.

#include "app/PanelMaker.h"
#include "desktop/qt/Modules.h"

#include <utility>

namespace kelvinbar {

namespace {

using MakePanel = PanelWindow* (*)(KelvinbarStore&, PanelHandlers);

MakePanel panelModule(Log& log) {
    static const auto module = reinterpret_cast<MakePanel>(
        moduleFunction("kelvinbar-panel", "kelvinbarMakePanel", log, LogCategory::panel));
    return module;
}

} // namespace

std::unique_ptr<PanelWindow> makeLoadedPanel(KelvinbarStore& store, PanelHandlers handlers, Log& log) {
    const MakePanel make = panelModule(log);
    return std::unique_ptr<PanelWindow>(make == nullptr ? nullptr : make(store, std::move(handlers)));
}

} // namespace kelvinbar
