#pragma once

#include "desktop/linux/window/FocusInput.h"
#include "desktop/linux/window/LayerShell.h"

#include <QRect>

namespace kelvinbar {

/// Which output a layer surface is on.
enum class LayerOutput {
    ofPlace, ///< the one with the place that the window asks for
    inUse,   ///< the one that the compositor chooses; the window's place is then relative to any output
};

/// Popovers as layer surfaces. They get the keyboard like a window. Where the compositor does not give it
/// within a short time, as sway does not, they take it until they are hidden: then no press elsewhere moves
/// the focus, so transparent surfaces around the popover receive presses and dismiss it.
FocusInput::WindowSystem layerWindowSystem(const LayerShell& shell, LayerOutput output);

/// The edges of `screen` that `frame` is nearest to, and its distances from these. A distance that bars may
/// fill is 0: there the compositor keeps the surface beside the bar. Without a screen. Pure function; any
/// thread.
LayerPlace layerPlace(const QRect& frame, const QRect& screen);

} // namespace kelvinbar
