#pragma once

#include <QImage>

namespace kelvinbar {

/// The share of pixels, 0 to 1, that differ by more than other versions of a font or of Qt change the edges
/// of letters. 1 for pictures of different sizes.
double differingShare(const QImage& left, const QImage& right);

/// The largest tolerated share. A card that has moved by a pixel exceeds it.
inline constexpr double tolerance = 0.002;

/// The share of pixels, 0 to 1, that differ although no letter or symbol is near them in the reference: on
/// the faint gradients and borders of surfaces, whose colours do not depend on versions. 1 for pictures of
/// different sizes.
double differingSurface(const QImage& reference, const QImage& picture);

/// The largest tolerated share. One row without its border, or without its gradient, exceeds it.
inline constexpr double surfaceTolerance = 0.0005;

} // namespace kelvinbar
