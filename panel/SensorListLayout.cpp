#include "panel/SensorListLayout.h"

#include <algorithm>
#include <cmath>

namespace kelvinbar {

namespace {

std::size_t clampedRow(double row, std::size_t rowCount) {
    return static_cast<std::size_t>(std::clamp(row, 0.0, static_cast<double>(rowCount)));
}

} // namespace

// Whole points keep the edges sharp.
SensorListMetrics::SensorListMetrics(double textScale) {
    cardHeader = std::round(cardHeader * textScale);
    rowHeight = std::round(rowHeight * textScale);
    rowGap = std::round(rowGap * textScale);
    cardFooter = std::round(cardFooter * textScale);
    spacing = std::round(spacing * textScale);
}

std::vector<Span> cardSpans(const SensorListMetrics& metrics, std::span<const std::size_t> rowCounts) {
    std::vector<Span> cards;
    cards.reserve(rowCounts.size());
    double top = metrics.margin;
    for (const std::size_t rowCount : rowCounts) {
        const double height = rowSpan(metrics, rowCount).top + metrics.cardFooter;
        cards.push_back({top, height});
        top += height + metrics.spacing;
    }
    return cards;
}

double listHeight(const SensorListMetrics& metrics, std::span<const Span> cards) {
    return cards.empty() ? 0 : cards.back().bottom() + metrics.margin;
}

Span rowSpan(const SensorListMetrics& metrics, std::size_t row) {
    return {metrics.cardHeader + static_cast<double>(row) * metrics.rowPitch(), metrics.rowHeight};
}

IndexRange visibleRows(const SensorListMetrics& metrics, const Span& card, std::size_t rowCount,
                       const Span& viewport) {
    const double pitch = metrics.rowPitch();
    const double firstRowTop = card.top + metrics.cardHeader;
    const auto first =
        clampedRow(std::floor((viewport.top - firstRowTop + metrics.rowGap) / pitch), rowCount);
    const auto end = clampedRow(std::ceil((viewport.bottom() - firstRowTop) / pitch), rowCount);
    return {first, end > first ? end - first : 0};
}

bool overlap(const Span& left, const Span& right) {
    return left.top < right.bottom() && right.top < left.bottom();
}

} // namespace kelvinbar
