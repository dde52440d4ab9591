#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <optional>

/// Where on the screen the user has clicked the status item. Hosts report it, but some in coordinates of the
/// item or of their own window, and some in device pixels. Pure functions; any thread.
namespace kelvinbar {

/// No bar is wider, in device-independent pixels.
inline constexpr int widestBar = 64;

/// A screen in Qt's coordinates, device-independent pixels, with the number of device pixels in each.
struct ScaledScreen {
    QRect frame;
    QRect visibleFrame; ///< the part that no bar covers
    qreal ratio = 1;
};

/// The place in device-independent pixels of one in device pixels. Unchanged if it is on no screen.
QPoint logicalPlace(QPoint devicePlace, const QList<ScaledScreen>& screens);

/// The place of the click, in device-independent pixels. The reported place is believed, in either unit, if
/// it is near the pointer or in a bar; otherwise the pointer's place is used. `pointer` has no value where it
/// is unknown, as in a Wayland session. No value if the report cannot be believed and the pointer is unknown.
std::optional<QPoint> clickPlace(QPoint reported, std::optional<QPoint> pointer,
                                 const QList<ScaledScreen>& screens);

/// The place of a click that Plasma reports on Wayland, in device-independent pixels. Version 6.3 multiplies
/// it, also the screen's own place, by the screen's ratio; others may not. So a place where a bar can be is
/// preferred. No value if the report is on no screen.
///
/// Limit: at a fractional scale, a place in a bar at the top or the left may be too near to the corner, since
/// Qt does not tell that scale before a window is shown.
std::optional<QPoint> plasmaClickPlace(QPoint reported, const QList<ScaledScreen>& screens);

} // namespace kelvinbar
