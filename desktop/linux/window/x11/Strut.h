#pragma once

#include <QRect>
#include <QSize>
#include <Qt>
#include <vector>

/// The bars of a desktop by the space that they reserve. Pure functions over device pixels; any thread.
namespace kelvinbar {

/// Space along a part of one edge of the whole desktop, across all screens.
struct Strut {
    Qt::Edge edge = Qt::TopEdge;
    int depth = 0; ///< measured from the edge of the desktop
    int first = 0; ///< first pixel along the edge
    int last = 0;  ///< last pixel along the edge

    friend bool operator==(const Strut&, const Strut&) = default;
};

using Struts = std::vector<Strut>;

/// The rectangle that the strut covers on a desktop of that size.
QRect bandOf(const Strut& strut, QSize desktop);

/// What the struts leave of a screen. A strut that would leave nothing is ignored: it belongs to a bar of
/// another screen behind this one.
QRect withoutStruts(const QRect& screen, const Struts& struts, QSize desktop);

} // namespace kelvinbar
