#pragma once

#include <QImage>

namespace kelvinbar {

/// The share of pixels, 0 to 1, that differ by more than other versions of a font or of Qt change the edges
/// of letters. 1 for pictures of different sizes.
double differingShare(const QImage& left, const QImage& right);

/// The largest tolerated share. A card that has moved by a pixel exceeds it.
inline constexpr double tolerance = 0.002;

} // namespace kelvinbar
