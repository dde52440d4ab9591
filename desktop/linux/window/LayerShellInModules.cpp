// Layer surfaces by two modules: a small one that asks the compositor, and the one that LayerShellQt needs.

#include "desktop/linux/window/LayerShell.h"
#include "desktop/qt/Modules.h"

#include <QGuiApplication>

namespace kelvinbar {

bool offersLayerShell(Log& log) {
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return false;
    using Offers = bool (*)();
    const auto offers = reinterpret_cast<Offers>(
        moduleFunction("kelvinbar-layer-probe", "kelvinbarOffersLayerShell", log, LogCategory::panel));
    return offers != nullptr && offers();
}

std::optional<LayerShell> layerShellOfApplication(Log& log) {
    if (QGuiApplication::platformName() != "wayland" || !offersLayerShell(log)) return std::nullopt;
    using GetModule = void (*)(LayerShell&);
    const auto get = reinterpret_cast<GetModule>(
        moduleFunction("kelvinbar-layer-shell", "kelvinbarLayerShell", log, LogCategory::panel));
    if (get == nullptr) return std::nullopt;
    LayerShell functions;
    get(functions);
    return functions;
}

} // namespace kelvinbar
