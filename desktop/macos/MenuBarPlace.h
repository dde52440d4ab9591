#pragma once

#include "shell/Geometry.h"
#include "shell/PopoverPlacement.h"

#include <optional>
#include <vector>

/// Where a status item is in the menu bar. The system reports a frame for every item, also for one that
/// cannot be seen: since macOS 26 a user can switch items off, and their windows then wait outside the bar;
/// an item for which there is no room may lie behind the notch of a screen.
///
/// Places are in points, with the origin at the top left corner of the main screen. Pure functions; any
/// thread.
namespace kelvinbar {

/// A screen with the menu bar along its top.
struct BarScreen {
    ScreenFrames frames;
    /// The parts of the bar left and right of the notch; empty without one.
    Rect leftOfNotch{};
    Rect rightOfNotch{};
};

/// Whether a status item can be seen.
enum class ItemSight { inBar, notInBar, behindNotch };

/// No value, or a frame outside the bar of every screen: not in the bar.
ItemSight sightOf(const std::optional<Rect>& item, const std::vector<BarScreen>& screens);

/// The item's frame, or no value if it is not in the bar of a screen.
std::optional<Rect> frameInBar(const std::optional<Rect>& item, const std::vector<BarScreen>& screens);

/// Whether a press at `place` reaches the item. That is also so at the edge of the screen above its frame.
bool isOnItem(Point place, const std::optional<Rect>& item, const std::vector<BarScreen>& screens);

/// A sentence for the user on why the item cannot be seen. Null if it can.
const char* whyUnseen(ItemSight sight);

/// The anchor of a panel whose item is not in the bar: where the first items usually are. Unlike
/// `cornerOfBar`, whatever space the Dock takes.
Rect topRightCorner(const ScreenFrames& screen);

} // namespace kelvinbar
