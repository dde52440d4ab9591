#include "desktop/linux/tray/PanelCorner.h"

#include "store/UserDefaults.h"

#include <algorithm>
#include <optional>
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

QString entryText(PanelCorner corner) {
    switch (corner) {
    case PanelCorner::topRight:
        return "Panel at Top Right";
    case PanelCorner::topLeft:
        return "Panel at Top Left";
    case PanelCorner::bottomRight:
        return "Panel at Bottom Right";
    case PanelCorner::bottomLeft:
        return "Panel at Bottom Left";
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

std::vector<StatusMenuEntry> panelCornerEntries(PanelCorner chosen,
                                                const std::function<void(PanelCorner)>& choose) {
    std::vector<StatusMenuEntry> entries{
        {.identity = "corner-separator", .text = {}, .action = {}, .isChecked = std::nullopt}};
    for (const PanelCorner corner : allPanelCorners) {
        entries.push_back({.identity = QString::fromStdString("corner-" + storedName(corner)),
                           .text = entryText(corner),
                           .action = [choose, corner](uint) { choose(corner); },
                           .isChecked = corner == chosen});
    }
    return entries;
}

Rect cornerPlace(PanelCorner corner, const Rect& visibleFrame) {
    const bool isLeft = corner == PanelCorner::topLeft || corner == PanelCorner::bottomLeft;
    const bool isTop = corner == PanelCorner::topLeft || corner == PanelCorner::topRight;
    return {visibleFrame.x + (isLeft ? 0 : visibleFrame.width),
            visibleFrame.y + (isTop ? 0 : visibleFrame.height), 0, 0};
}

} // namespace kelvinbar
