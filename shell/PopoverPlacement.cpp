#include "shell/PopoverPlacement.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelvinbar {

namespace {

enum class Edge { top, bottom, left, right };

double right(const Rect& rect) { return rect.x + rect.width; }

double bottom(const Rect& rect) { return rect.y + rect.height; }

Point center(const Rect& rect) { return {rect.x + rect.width / 2, rect.y + rect.height / 2}; }

/// The edge of the screen with the bar that contains the anchor: the side on which the anchor is outside the
/// visible frame. If no bar reserves space there, the nearest edge. Near a corner the top or bottom edge is
/// chosen, because most bars are there.
Edge edgeOfBar(const Rect& anchor, const ScreenFrames& screen) {
    constexpr double highestBar = 64;
    const Rect& visible = screen.visibleFrame;
    const auto [x, y] = center(anchor);
    if (y < visible.y) return Edge::top;
    if (y >= bottom(visible)) return Edge::bottom;
    if (x < visible.x) return Edge::left;
    if (x >= right(visible)) return Edge::right;
    const bool isUpper = y - screen.frame.y <= bottom(screen.frame) - y;
    const bool isLeft = x - screen.frame.x < right(screen.frame) - x;
    const double vertical = isUpper ? y - screen.frame.y : bottom(screen.frame) - y;
    const double horizontal = isLeft ? x - screen.frame.x : right(screen.frame) - x;
    if (vertical <= std::max(highestBar, horizontal)) return isUpper ? Edge::top : Edge::bottom;
    return isLeft ? Edge::left : Edge::right;
}

/// The edge where a bar reserves most space.
Edge edgeOfWidestBar(const ScreenFrames& screen) {
    const auto& [frame, visible] = screen;
    const std::array<std::pair<double, Edge>, 4> reserved{{
        {visible.y - frame.y, Edge::top},
        {bottom(frame) - bottom(visible), Edge::bottom},
        {visible.x - frame.x, Edge::left},
        {right(frame) - right(visible), Edge::right},
    }};
    return std::ranges::max_element(reserved, {}, &std::pair<double, Edge>::first)->second;
}

/// `start`, moved so that `start` + `length` does not exceed `last`, but never below `first`.
double inside(double start, double length, double first, double last) {
    return std::max(first, std::min(start, last - length));
}

} // namespace

Rect cornerOfBar(const ScreenFrames& screen) {
    const Rect& visible = screen.visibleFrame;
    const Edge edge = edgeOfWidestBar(screen);
    return {edge == Edge::left ? visible.x : right(visible), edge == Edge::top ? visible.y : bottom(visible),
            0, 0};
}

Rect placedPopover(const Rect& anchor, Size size, const ScreenFrames& screen) {
    const Rect& visible = screen.visibleFrame;
    double x = anchor.x + (anchor.width - size.width) / 2;
    double y = anchor.y + (anchor.height - size.height) / 2;
    switch (edgeOfBar(anchor, screen)) {
    case Edge::top:
        y = bottom(anchor);
        break;
    case Edge::bottom:
        y = anchor.y - size.height;
        break;
    case Edge::left:
        x = right(anchor);
        break;
    case Edge::right:
        x = anchor.x - size.width;
        break;
    }
    return {inside(x, size.width, visible.x, right(visible)),
            inside(y, size.height, visible.y, bottom(visible)), size.width, size.height};
}

} // namespace kelvinbar
