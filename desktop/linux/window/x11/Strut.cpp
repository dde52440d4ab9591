#include "desktop/linux/window/x11/Strut.h"

namespace kelvinbar {

namespace {

/// What a bar at `edge` of the screen leaves of it.
QRect beside(const QRect& band, QRect screen, Qt::Edge edge) {
    switch (edge) {
    case Qt::TopEdge:
        screen.setTop(band.bottom() + 1);
        break;
    case Qt::BottomEdge:
        screen.setBottom(band.top() - 1);
        break;
    case Qt::LeftEdge:
        screen.setLeft(band.right() + 1);
        break;
    case Qt::RightEdge:
        screen.setRight(band.left() - 1);
        break;
    }
    return screen;
}

} // namespace

QRect bandOf(const Strut& strut, QSize desktop) {
    const int length = strut.last - strut.first + 1;
    switch (strut.edge) {
    case Qt::TopEdge:
        return {strut.first, 0, length, strut.depth};
    case Qt::BottomEdge:
        return {strut.first, desktop.height() - strut.depth, length, strut.depth};
    case Qt::LeftEdge:
        return {0, strut.first, strut.depth, length};
    case Qt::RightEdge:
        return {desktop.width() - strut.depth, strut.first, strut.depth, length};
    }
    return {};
}

QRect withoutStruts(const QRect& screen, const Struts& struts, QSize desktop) {
    QRect left = screen;
    for (const Strut& strut : struts) {
        const QRect band = bandOf(strut, desktop) & screen;
        if (band.isEmpty()) continue;
        const QRect rest = left & beside(band, screen, strut.edge);
        if (!rest.isEmpty()) left = rest;
    }
    return left;
}

} // namespace kelvinbar
