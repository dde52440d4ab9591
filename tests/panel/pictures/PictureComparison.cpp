#include "tests/panel/pictures/PictureComparison.h"

#include <QColor>
#include <algorithm>
#include <cstdlib>

namespace kelvinbar {

namespace {

/// The largest difference of a channel.
int difference(QRgb left, QRgb right) {
    return std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                     std::abs(qBlue(left) - qBlue(right))});
}

bool differAtEdges(QRgb left, QRgb right) {
    constexpr int noticeable = 24;
    return difference(left, right) > noticeable;
}

bool differOnSurfaces(QRgb left, QRgb right) {
    constexpr int rounding = 2;
    return difference(left, right) > rounding;
}

/// Whether the pixels around are so alike that none of them belongs to a letter or symbol.
bool isSurface(const QImage& picture, int x, int y) {
    constexpr int reach = 2;
    constexpr int borders = 40; // the strongest ones against what they surround
    const QRgb middle = picture.pixel(x, y);
    for (int row = std::max(0, y - reach); row <= std::min(picture.height() - 1, y + reach); ++row) {
        for (int column = std::max(0, x - reach); column <= std::min(picture.width() - 1, x + reach);
             ++column) {
            if (difference(middle, picture.pixel(column, row)) > borders) return false;
        }
    }
    return true;
}

template <typename Differ>
double shareOf(const QImage& left, const QImage& right, Differ differ) {
    if (left.size() != right.size() || left.isNull()) return 1;
    qsizetype differing = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            if (differ(x, y)) ++differing;
        }
    }
    return static_cast<double>(differing) / (static_cast<double>(left.width()) * left.height());
}

} // namespace

double differingShare(const QImage& left, const QImage& right) {
    return shareOf(left, right,
                   [&](int x, int y) { return differAtEdges(left.pixel(x, y), right.pixel(x, y)); });
}

double differingSurface(const QImage& reference, const QImage& picture) {
    return shareOf(reference, picture, [&](int x, int y) {
        return differOnSurfaces(reference.pixel(x, y), picture.pixel(x, y)) && isSurface(reference, x, y);
    });
}

} // namespace kelvinbar
