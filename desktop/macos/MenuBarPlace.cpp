#include "desktop/macos/MenuBarPlace.h"

#include <algorithm>

namespace kelvinbar {

namespace {

/// Of a bar that hides itself and so takes no space.
constexpr double leastBarHeight = 24;

double right(const Rect& rect) { return rect.x + rect.width; }

double barHeight(const ScreenFrames& screen) {
    return std::max(screen.visibleFrame.y - screen.frame.y, leastBarHeight);
}

/// Whether the whole width of the item, and at least half its height, lie in the bar.
bool isInBar(const Rect& item, const ScreenFrames& screen) {
    const double middle = item.y + item.height / 2 - screen.frame.y;
    return item.width > 0 && item.x >= screen.frame.x && right(item) <= right(screen.frame) && middle >= 0 &&
           middle <= barHeight(screen);
}

bool isBehindNotch(const Rect& item, const BarScreen& screen) {
    if (screen.leftOfNotch.width <= 0 || screen.rightOfNotch.width <= 0) return false;
    const double middle = item.x + item.width / 2;
    return middle > right(screen.leftOfNotch) && middle < screen.rightOfNotch.x;
}

/// The screen whose bar contains the item. Null if there is none.
const BarScreen* screenOf(const std::optional<Rect>& item, const std::vector<BarScreen>& screens) {
    if (!item) return nullptr;
    const auto found =
        std::ranges::find_if(screens, [&](const BarScreen& screen) { return isInBar(*item, screen.frames); });
    return found == screens.end() ? nullptr : &*found;
}

} // namespace

ItemSight sightOf(const std::optional<Rect>& item, const std::vector<BarScreen>& screens) {
    const BarScreen* const screen = screenOf(item, screens);
    if (screen == nullptr) return ItemSight::notInBar;
    return isBehindNotch(*item, *screen) ? ItemSight::behindNotch : ItemSight::inBar;
}

std::optional<Rect> frameInBar(const std::optional<Rect>& item, const std::vector<BarScreen>& screens) {
    return screenOf(item, screens) == nullptr ? std::nullopt : item;
}

bool isOnItem(Point place, const std::optional<Rect>& item, const std::vector<BarScreen>& screens) {
    const BarScreen* const screen = screenOf(item, screens);
    if (screen == nullptr) return false;
    return place.x >= item->x && place.x < right(*item) && place.y >= screen->frames.frame.y &&
           place.y <= item->y + item->height;
}

const char* whyUnseen(ItemSight sight) {
    switch (sight) {
    case ItemSight::inBar:
        return nullptr;
    case ItemSight::notInBar:
        return "the menu bar does not show the status item; System Settings, Menu Bar may have switched it "
               "off";
    case ItemSight::behindNotch:
        return "the status item is behind the notch of the screen; with fewer items in the menu bar it comes "
               "out";
    }
    return nullptr;
}

Rect topRightCorner(const ScreenFrames& screen) {
    return {right(screen.visibleFrame), screen.visibleFrame.y, 0, 0};
}

} // namespace kelvinbar
