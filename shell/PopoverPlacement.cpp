#include "shell/PopoverPlacement.h"

#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

enum class Edge { top, bottom, left, right };

double right(const Rect& rect) { return rect.x + rect.width; }

double bottom(const Rect& rect) { return rect.y + rect.height; }

/// The edge of the screen at which the anchor is: that is where its bar is.
Edge nearestEdge(const Rect& anchor, const Rect& screen) {
    const double x = anchor.x + anchor.width / 2;
    const double y = anchor.y + anchor.height / 2;
    // Bars at the top and at the bottom are the common ones: they win where two are as near.
    const std::array distances{y - screen.y, bottom(screen) - y, x - screen.x, right(screen) - x};
    return static_cast<Edge>(std::ranges::min_element(distances) - distances.begin());
}

/// `start` moved so that `length` from it ends before `last`, but never before `first`.
double inside(double start, double length, double first, double last) {
    return std::max(first, std::min(start, last - length));
}

} // namespace

Rect placedPopover(const Rect& anchor, Size size, const ScreenFrames& screen) {
    const Rect& visible = screen.visibleFrame;
    double x = anchor.x + (anchor.width - size.width) / 2;
    double y = anchor.y + (anchor.height - size.height) / 2;
    switch (nearestEdge(anchor, screen.frame)) {
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
