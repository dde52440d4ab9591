#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// Where the cards and rows of the list are. All heights are known beforehand, so that what is off screen
/// need not be built. Lengths in points from the top.
namespace kelvinbar {

/// The measures of the list. They grow with the size of the text.
struct SensorListMetrics {
    /// `textScale`: the user's text size, 1 for the standard.
    explicit SensorListMetrics(double textScale);

    double margin = 12;     ///< above the first and below the last card
    double spacing = 10;    ///< between cards
    double cardHeader = 48; ///< above a card's first row
    double cardFooter = 3;  ///< below a card's last row and its gap
    double rowHeight = 41;
    double rowGap = 5; ///< below a row

    /// From one row to the next.
    [[nodiscard]] double rowPitch() const { return rowHeight + rowGap; }
};

/// A stretch of the list.
struct Span {
    double top = 0;
    double height = 0;

    [[nodiscard]] double bottom() const { return top + height; }

    friend bool operator==(const Span&, const Span&) = default;
};

/// Rows or cards that follow each other.
struct IndexRange {
    std::size_t first = 0;
    std::size_t count = 0;

    friend bool operator==(const IndexRange&, const IndexRange&) = default;
};

/// The cards for sections with these numbers of rows.
std::vector<Span> cardSpans(const SensorListMetrics& metrics, std::span<const std::size_t> rowCounts);

/// The height of the whole list.
double listHeight(const SensorListMetrics& metrics, std::span<const Span> cards);

/// A row inside its card.
Span rowSpan(const SensorListMetrics& metrics, std::size_t row);

/// The rows of a card that are at least in part inside `viewport`.
IndexRange visibleRows(const SensorListMetrics& metrics, const Span& card, std::size_t rowCount,
                       const Span& viewport);

bool overlap(const Span& left, const Span& right);

} // namespace kelvinbar
