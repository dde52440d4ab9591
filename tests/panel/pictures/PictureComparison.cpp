#include "tests/panel/pictures/PictureComparison.h"

#include <QColor>
#include <algorithm>
#include <cstdlib>

namespace kelvinbar {

namespace {

bool differ(QRgb left, QRgb right) {
    constexpr int noticeable = 24;
    const int difference =
        std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                  std::abs(qBlue(left) - qBlue(right))});
    return difference > noticeable;
}

} // namespace

double differingShare(const QImage& left, const QImage& right) {
    if (left.size() != right.size() || left.isNull()) return 1;
    qsizetype differing = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            if (differ(left.pixel(x, y), right.pixel(x, y))) ++differing;
        }
    }
    return static_cast<double>(differing) / (static_cast<double>(left.width()) * left.height());
}

} // namespace kelvinbar
