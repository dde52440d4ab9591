#pragma once

#include <QImage>

namespace kelvinbar {

/// The share of pixels, 0 to 1, that differ by more than what another version of a font or of the toolkit
/// changes at the edges of letters. Pictures of different sizes differ altogether.
double differingShare(const QImage& left, const QImage& right);

/// What may differ at most. A card that has moved by a pixel makes more.
inline constexpr double tolerance = 0.002;

} // namespace kelvinbar
