#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// The geometry of the list: positions of cards and rows. All heights are fixed, so a position follows from
/// row counts alone, and rows off screen need not exist. Lengths are in points, positions are measured from
/// the top. Pure functions.
namespace kelvinbar {

/// The measures of the list, which scale with the text size, except its margin: the panel does not get wider.
struct SensorListMetrics {
    /// `textScale`: see textScale().
    explicit SensorListMetrics(double textScale);

    double margin = 12;     ///< above the first and below the last card
    double spacing = 10;    ///< between cards
    double cardHeader = 48; ///< above a card's first row
    double cardFooter = 4;  ///< below a card's last row and its gap
    double rowHeight = 42;
    double rowGap = 5; ///< below a row

    /// From the top of a row to the top of the next.
    [[nodiscard]] double rowPitch() const { return rowHeight + rowGap; }
};

/// A vertical range of the list.
struct Span {
    double top = 0;
    double height = 0;

    [[nodiscard]] double bottom() const { return top + height; }

    friend bool operator==(const Span&, const Span&) = default;
};

/// A range of rows or cards.
struct IndexRange {
    std::size_t first = 0;
    std::size_t count = 0;

    friend bool operator==(const IndexRange&, const IndexRange&) = default;
};

/// The positions of cards whose sections have these numbers of rows.
std::vector<Span> cardSpans(const SensorListMetrics& metrics, std::span<const std::size_t> rowCounts);

/// The height of the whole list, margins included.
double listHeight(const SensorListMetrics& metrics, std::span<const Span> cards);

/// The position of a row, relative to its card.
Span rowSpan(const SensorListMetrics& metrics, std::size_t row);

/// The rows of a card that are at least partly inside `viewport`.
IndexRange visibleRows(const SensorListMetrics& metrics, const Span& card, std::size_t rowCount,
                       const Span& viewport);

/// Whether the ranges have more than an edge in common.
bool overlap(const Span& left, const Span& right);

} // namespace kelvinbar
