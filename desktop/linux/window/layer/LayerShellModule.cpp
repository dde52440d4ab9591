// Layer surfaces by LayerShellQt, as a module that is loaded where the compositor offers them.

#include "desktop/linux/window/LayerShell.h"

#include <LayerShellQt/window.h>
#include <QWindow>

namespace kelvinbar {

namespace {

using LayerShellQt::Window;

Window::Anchors anchorsAt(Qt::Edges edges) {
    Window::Anchors anchors;
    anchors.setFlag(Window::AnchorTop, edges.testFlag(Qt::TopEdge));
    anchors.setFlag(Window::AnchorBottom, edges.testFlag(Qt::BottomEdge));
    anchors.setFlag(Window::AnchorLeft, edges.testFlag(Qt::LeftEdge));
    anchors.setFlag(Window::AnchorRight, edges.testFlag(Qt::RightEdge));
    return anchors;
}

Window::Layer layerOf(LayerLevel level) {
    switch (level) {
    case LayerLevel::belowWindows:
        return Window::LayerBottom;
    case LayerLevel::aboveWindows:
        return Window::LayerTop;
    case LayerLevel::aboveAll:
        return Window::LayerOverlay;
    }
    return Window::LayerTop;
}

void adopt(QWindow& window, LayerLevel level) {
    Window& surface = *Window::get(&window);
    surface.setScope("kelvinbar");
    surface.setLayer(layerOf(level));
    surface.setExclusiveZone(0);
    // A closed window would come back as an ordinary one.
    surface.setCloseOnDismissed(false);
}

void place(QWindow& window, const LayerPlace& place) {
    Window& surface = *Window::get(&window);
    surface.setScreenConfiguration(place.screen == nullptr ? Window::ScreenFromCompositor
                                                           : Window::ScreenFromQWindow);
    if (place.screen != nullptr) window.setScreen(place.screen);
    surface.setAnchors(anchorsAt(place.edges));
    surface.setMargins(place.margins);
}

Window::KeyboardInteractivity interactivity(LayerKeyboard keyboard) {
    switch (keyboard) {
    case LayerKeyboard::none:
        return Window::KeyboardInteractivityNone;
    case LayerKeyboard::onDemand:
        return Window::KeyboardInteractivityOnDemand;
    case LayerKeyboard::exclusive:
        return Window::KeyboardInteractivityExclusive;
    }
    return Window::KeyboardInteractivityNone;
}

void setKeyboard(QWindow& window, LayerKeyboard keyboard) {
    Window::get(&window)->setKeyboardInteractivity(interactivity(keyboard));
    window.requestUpdate(); // takes effect with the next frame
}

} // namespace

} // namespace kelvinbar

extern "C" Q_DECL_EXPORT void kelvinbarLayerShell(kelvinbar::LayerShell& functions) {
    functions = {kelvinbar::adopt, kelvinbar::place, kelvinbar::setKeyboard};
}
