#pragma once

#include <QMargins>
#include <functional>
#include <optional>
#include <qnamespace.h>

class QScreen;
class QWindow;

/// Windows as layer surfaces of a Wayland compositor (protocol zwlr_layer_shell_v1). An ordinary Wayland
/// window cannot choose its place; a layer surface keeps a distance from edges of an output, beside the bars
/// there. KWin and the compositors over wlroots offer it, GNOME's shell does not.
///
/// The implementation is in modules that are built if LayerShellQt 6 is found, because it needs Qt's Wayland
/// library, which costs memory in a session without Wayland. Without them, nothing is ever offered.
namespace kelvinbar {

class Log;

/// Where a layer surface is.
struct LayerPlace {
    Qt::Edges edges;  ///< one or both of either direction; between both, the surface is as large as possible
    QMargins margins; ///< distances from `edges` or from the bars there, in device-independent pixels
    /// Null for the output that the compositor chooses, which is the one that the user works on.
    QScreen* screen = nullptr;

    friend bool operator==(const LayerPlace&, const LayerPlace&) = default;
};

/// What a layer surface is in front of.
enum class LayerLevel {
    belowWindows, ///< above the desktop only
    aboveWindows,
    aboveAll, ///< also above windows that fill the screen, and above the other levels
};

enum class LayerKeyboard {
    none,
    onDemand,  ///< the surface gets and loses the focus like a window
    exclusive, ///< the surface has the focus while it is shown
};

/// The functions of the module. Main thread.
struct LayerShell {
    /// Makes the window, which must be hidden, a layer surface. Other windows of the program are left alone.
    /// May be repeated.
    std::function<void(QWindow&, LayerLevel)> adopt;
    /// Shows the window, now or when it is shown, at a place. A change of the screen takes effect when it is
    /// next shown.
    std::function<void(QWindow&, const LayerPlace&)> place;
    std::function<void(QWindow&, LayerKeyboard)> setKeyboard;
};

/// Whether the Wayland compositor of the environment offers layer surfaces, and the program can use them.
/// Does not need the application object.
bool offersLayerShell(Log& log);

/// The functions, for windows of the application object. No value unless it draws on a compositor that offers
/// layer surfaces.
std::optional<LayerShell> layerShellOfApplication(Log& log);

} // namespace kelvinbar
