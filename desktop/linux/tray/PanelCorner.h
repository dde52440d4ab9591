#pragma once

#include "desktop/linux/tray/StatusMenuEntry.h"
#include "shell/Geometry.h"

#include <array>
#include <functional>
#include <vector>

/// The corner of the screen in which the panel opens where the place of the status item cannot be known: in a
/// Wayland session whose host does not report it. A preference of the user. Main thread.
namespace kelvinbar {

class UserDefaults;

enum class PanelCorner { topRight, topLeft, bottomRight, bottomLeft };

inline constexpr std::array allPanelCorners{PanelCorner::topRight, PanelCorner::topLeft,
                                            PanelCorner::bottomRight, PanelCorner::bottomLeft};

/// What the user has chosen, or else the top right corner.
PanelCorner loadPanelCorner(const UserDefaults& defaults);

void storePanelCorner(UserDefaults& defaults, PanelCorner corner);

/// Entries of the status item's menu, one a corner below a separator, of which `chosen` is marked.
std::vector<StatusMenuEntry> panelCornerEntries(PanelCorner chosen,
                                                const std::function<void(PanelCorner)>& choose);

/// The corner of `visibleFrame` as an anchor of the panel. Pure function; any thread.
Rect cornerPlace(PanelCorner corner, const Rect& visibleFrame);

} // namespace kelvinbar
