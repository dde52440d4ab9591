#include "desktop/linux/PanelCorner.h"

#include "store/UserDefaults.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace kelvinbar {

namespace {

constexpr std::string_view panelCornerKey = "KelvinbarPanelCorner";

std::string storedName(PanelCorner corner) {
    switch (corner) {
    case PanelCorner::topRight:
        return "top-right";
    case PanelCorner::topLeft:
        return "top-left";
    case PanelCorner::bottomRight:
        return "bottom-right";
    case PanelCorner::bottomLeft:
        return "bottom-left";
    }
    return {};
}

} // namespace

PanelCorner loadPanelCorner(const UserDefaults& defaults) {
    const auto stored = defaults.text(panelCornerKey);
    const auto* const found = std::ranges::find_if(
        allPanelCorners, [&](PanelCorner corner) { return storedName(corner) == stored; });
    return found == allPanelCorners.end() ? PanelCorner::topRight : *found;
}

void storePanelCorner(UserDefaults& defaults, PanelCorner corner) {
    defaults.setText(panelCornerKey, storedName(corner));
}

Rect cornerPlace(PanelCorner corner, const Rect& visibleFrame) {
    const bool isLeft = corner == PanelCorner::topLeft || corner == PanelCorner::bottomLeft;
    const bool isTop = corner == PanelCorner::topLeft || corner == PanelCorner::topRight;
    return {visibleFrame.x + (isLeft ? 0 : visibleFrame.width),
            visibleFrame.y + (isTop ? 0 : visibleFrame.height), 0, 0};
}

} // namespace kelvinbar
