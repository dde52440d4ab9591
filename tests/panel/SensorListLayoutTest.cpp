#include "panel/SensorListLayout.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::sensor_list_layout_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using RowCounts = std::vector<std::size_t>;

const SensorListMetrics standard(1);

/// Metrics for mental arithmetic: rows of 10 points, each followed by a gap of 2.
SensorListMetrics simpleMetrics() {
    SensorListMetrics metrics(1);
    metrics.margin = 7;
    metrics.spacing = 5;
    metrics.cardHeader = 20;
    metrics.cardFooter = 3;
    metrics.rowHeight = 10;
    metrics.rowGap = 2;
    return metrics;
}

/// In simpleMetrics(), the rows of this card are at 120 to 130, 132 to 142, 144 to 154, 156 to 166 and 168 to
/// 178.
constexpr std::size_t fiveRows = 5;
constexpr Span cardOfFive{100, 83};

IndexRange visibleOfFive(double top, double height) {
    return visibleRows(simpleMetrics(), cardOfFive, fiveRows, {top, height});
}

std::size_t visibleCountOfFive(double top, double height) { return visibleOfFive(top, height).count; }

/// The expected result of visibleRows(), determined row by row.
IndexRange visibleRowsOneByOne(const SensorListMetrics& metrics, const Span& card, std::size_t rowCount,
                               const Span& viewport) {
    IndexRange range;
    for (std::size_t row = 0; row < rowCount; ++row) {
        const Span inCard = rowSpan(metrics, row);
        const double top = card.top + inCard.top;
        if (top >= viewport.bottom() || top + inCard.height <= viewport.top) continue;
        if (range.count == 0) range.first = row;
        ++range.count;
    }
    return range;
}

/// Compares the two for every viewport that starts and ends at a multiple of `step` around the card.
void compareForManyViewports(const SensorListMetrics& metrics, const Span& card, std::size_t rowCount,
                             double step) {
    const double reach = metrics.rowHeight + metrics.rowGap;
    std::size_t viewportsWithRows = 0;
    for (double top = card.top - reach; top < card.bottom() + reach; top += step) {
        for (double height = 0; height < card.height + 2 * reach; height += step) {
            const Span viewport{top, height};
            const IndexRange expected = visibleRowsOneByOne(metrics, card, rowCount, viewport);
            const IndexRange actual = visibleRows(metrics, card, rowCount, viewport);
            ASSERT_EQ(actual.count, expected.count) << top << " + " << height;
            if (expected.count == 0) continue;
            ASSERT_EQ(actual.first, expected.first) << top << " + " << height;
            ++viewportsWithRows;
        }
    }
    EXPECT_GT(viewportsWithRows, 100U);
}

// Measures

TEST(SensorListMetrics, TheStandardTextSizeLeavesTheMeasures) {
    EXPECT_EQ(standard.cardHeader, 48);
    EXPECT_EQ(standard.rowHeight, 42);
}

TEST(SensorListMetrics, ALargerTextGivesHigherHeadersRowsAndGapsOfWholePoints) {
    const SensorListMetrics larger(1.25);
    EXPECT_EQ(larger.cardHeader, 60);
    EXPECT_EQ(larger.rowHeight, 53) << "52.5, rounded";
    EXPECT_EQ(larger.spacing, 13) << "12.5, rounded";
    EXPECT_EQ(larger.rowGap, 6);
    EXPECT_EQ(larger.cardFooter, 5);
}

TEST(SensorListMetrics, ALargerTextLeavesTheMarginOfAPanelThatDoesNotGetWider) {
    EXPECT_EQ(SensorListMetrics(2).margin, standard.margin);
}

TEST(SensorListMetrics, EveryTextSizeGivesWholePoints) {
    for (const double scale : {0.8, 1.0, 1.1, 1.15, 1.25, 1.3, 1.5, 1.75, 2.0, 3.3}) {
        const SensorListMetrics metrics(scale);
        EXPECT_EQ(metrics.rowHeight, std::floor(metrics.rowHeight)) << scale;
        EXPECT_NEAR(metrics.rowHeight, standard.rowHeight * scale, 0.5) << scale;
        EXPECT_NEAR(metrics.cardHeader, standard.cardHeader * scale, 0.5) << scale;
        for (const Span& card : cardSpans(metrics, RowCounts{1, 7, 30})) {
            EXPECT_EQ(card.top, std::floor(card.top)) << scale;
            EXPECT_EQ(card.height, std::floor(card.height)) << scale;
        }
    }
}

// Cards

TEST(SensorListLayout, ACardHoldsItsHeaderItsRowsAndItsFooter) {
    EXPECT_THAT(cardSpans(simpleMetrics(), RowCounts{1}), ElementsAre(Span{7, 20 + 12 + 3}));
    EXPECT_THAT(cardSpans(simpleMetrics(), RowCounts{5}), ElementsAre(Span{7, 20 + 5 * 12 + 3}));
    EXPECT_THAT(cardSpans(standard, RowCounts{3}), ElementsAre(Span{12, 48 + 3 * 47 + 4}));
}

TEST(SensorListLayout, CardsFollowEachOtherWithTheirSpacing) {
    EXPECT_THAT(cardSpans(simpleMetrics(), RowCounts{2, 1, 4}),
                ElementsAre(Span{7, 47}, Span{7 + 47 + 5, 35}, Span{7 + 47 + 5 + 35 + 5, 71}));
    const std::vector<Span> cards = cardSpans(standard, RowCounts{4, 9, 1, 12});
    for (std::size_t next = 1; next < cards.size(); ++next) {
        EXPECT_EQ(cards[next].top - cards[next - 1].bottom(), 10);
    }
}

TEST(SensorListLayout, NoSectionsGiveNoCards) {
    EXPECT_THAT(cardSpans(standard, RowCounts{}), IsEmpty());
    EXPECT_EQ(listHeight(standard, {}), 0);
}

TEST(SensorListLayout, TheListEndsAMarginBelowItsLastCard) {
    EXPECT_EQ(listHeight(simpleMetrics(), cardSpans(simpleMetrics(), RowCounts{1})), 7 + 35 + 7);
    EXPECT_EQ(listHeight(simpleMetrics(), cardSpans(simpleMetrics(), RowCounts{2, 1, 4})),
              7 + 47 + 5 + 35 + 5 + 71 + 7);
    EXPECT_EQ(listHeight(standard, cardSpans(standard, RowCounts{1, 1})), 12 + 99 + 10 + 99 + 12);
}

TEST(SensorListLayout, OneMoreRowMakesTheListHigherByARowAndItsGap) {
    const double former = listHeight(standard, cardSpans(standard, RowCounts{3, 5}));
    EXPECT_EQ(listHeight(standard, cardSpans(standard, RowCounts{4, 5})) - former, 47);
    EXPECT_EQ(listHeight(standard, cardSpans(standard, RowCounts{3, 6})) - former, 47);
}

// Rows

TEST(SensorListLayout, RowsFollowTheHeaderWithTheirGaps) {
    EXPECT_EQ(rowSpan(simpleMetrics(), 0), (Span{20, 10}));
    EXPECT_EQ(rowSpan(simpleMetrics(), 1), (Span{32, 10}));
    EXPECT_EQ(rowSpan(simpleMetrics(), 4), (Span{68, 10}));
    EXPECT_EQ(rowSpan(standard, 2), (Span{48 + 94, 42}));
}

TEST(SensorListLayout, TheLastRowsGapAndTheFooterAreInTheCard) {
    for (const std::size_t rowCount : {std::size_t{1}, std::size_t{8}, std::size_t{1000}}) {
        const Span card = cardSpans(standard, RowCounts{rowCount}).front();
        EXPECT_EQ(card.height - rowSpan(standard, rowCount - 1).bottom(), 5 + 4);
    }
}

TEST(SensorListLayout, AThousandRowsArePlacedExactly) {
    EXPECT_EQ(rowSpan(standard, 999), (Span{48 + 999 * 47, 42}));
    EXPECT_THAT(cardSpans(standard, RowCounts{1000}), ElementsAre(Span{12, 48 + 1000 * 47 + 4}));
}

// Visible rows

TEST(SensorListLayout, AViewportOverTheWholeCardShowsEveryRow) {
    EXPECT_EQ(visibleOfFive(100, 83), (IndexRange{0, 5}));
    EXPECT_EQ(visibleOfFive(0, 1000), (IndexRange{0, 5}));
    EXPECT_EQ(visibleOfFive(120, 58), (IndexRange{0, 5}));
}

TEST(SensorListLayout, AViewportAboveTheRowsShowsNone) {
    EXPECT_EQ(visibleCountOfFive(0, 50), 0U);
    EXPECT_EQ(visibleCountOfFive(-500, 100), 0U);
    EXPECT_EQ(visibleCountOfFive(100, 20), 0U) << "the header alone";
    EXPECT_EQ(visibleOfFive(100, 20.25), (IndexRange{0, 1}));
}

TEST(SensorListLayout, AViewportBelowTheRowsShowsNone) {
    EXPECT_EQ(visibleCountOfFive(500, 50), 0U);
    EXPECT_EQ(visibleCountOfFive(178, 50), 0U) << "the footer alone";
    EXPECT_EQ(visibleOfFive(177.75, 50), (IndexRange{4, 1}));
}

TEST(SensorListLayout, ARowCountsFromItsFirstPartOnTheScreen) {
    EXPECT_EQ(visibleOfFive(100, 32), (IndexRange{0, 1}));
    EXPECT_EQ(visibleOfFive(100, 32.25), (IndexRange{0, 2}));
}

TEST(SensorListLayout, ARowCountsToItsLastPartOnTheScreen) {
    EXPECT_EQ(visibleOfFive(129.75, 100), (IndexRange{0, 5}));
    EXPECT_EQ(visibleOfFive(130, 100), (IndexRange{1, 4}));
    EXPECT_EQ(visibleOfFive(132, 100), (IndexRange{1, 4}));
    EXPECT_EQ(visibleOfFive(141.75, 100), (IndexRange{1, 4}));
    EXPECT_EQ(visibleOfFive(142, 100), (IndexRange{2, 3}));
}

TEST(SensorListLayout, AViewportInsideARowShowsThatAlone) {
    EXPECT_EQ(visibleOfFive(146, 2), (IndexRange{2, 1}));
    EXPECT_EQ(visibleOfFive(144, 10), (IndexRange{2, 1}));
}

TEST(SensorListLayout, AViewportInsideAGapShowsNothing) {
    EXPECT_EQ(visibleCountOfFive(130, 2), 0U);
    EXPECT_EQ(visibleCountOfFive(130.5, 1), 0U);
    EXPECT_EQ(visibleOfFive(129, 4), (IndexRange{0, 2}));
}

TEST(SensorListLayout, AnEmptyViewportOutsideTheRowsShowsNothing) {
    EXPECT_EQ(visibleCountOfFive(0, 0), 0U);
    EXPECT_EQ(visibleCountOfFive(120, 0), 0U);
    EXPECT_EQ(visibleCountOfFive(130, 0), 0U);
    EXPECT_EQ(visibleCountOfFive(131, 0), 0U);
    EXPECT_EQ(visibleCountOfFive(178, 0), 0U);
    EXPECT_EQ(visibleCountOfFive(1000, 0), 0U);
}

TEST(SensorListLayout, AViewportOfNegativeHeightShowsNothing) {
    EXPECT_EQ(visibleCountOfFive(170, -40), 0U);
    EXPECT_EQ(visibleCountOfFive(500, -490), 0U);
}

TEST(SensorListLayout, ACardWithoutRowsShowsNone) {
    EXPECT_EQ(visibleRows(simpleMetrics(), {100, 23}, 0, {0, 1000}).count, 0U);
}

TEST(SensorListLayout, AnEndlessViewportShowsEveryRow) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(visibleOfFive(0, infinity), (IndexRange{0, 5}));
    EXPECT_EQ(visibleOfFive(143, infinity), (IndexRange{2, 3}));
    EXPECT_EQ(visibleOfFive(-1e300, 2e300), (IndexRange{0, 5}));
    EXPECT_EQ(visibleCountOfFive(1e300, 100), 0U);
    EXPECT_EQ(visibleCountOfFive(-1e300, 100), 0U);
}

TEST(SensorListLayout, OfAThousandRowsThoseOnTheScreenAreFound) {
    const Span card = cardSpans(standard, RowCounts{1000}).front();
    const double rowTop = card.top + rowSpan(standard, 500).top;
    EXPECT_EQ(visibleRows(standard, card, 1000, {rowTop, 470}), (IndexRange{500, 10}));
    EXPECT_EQ(visibleRows(standard, card, 1000, {rowTop - 6, 477}), (IndexRange{499, 12}));
    EXPECT_EQ(visibleRows(standard, card, 1000, {card.bottom() - 100, 500}), (IndexRange{998, 2}));
}

TEST(SensorListLayout, TheVisibleRowsAreThoseThatReachIntoTheViewport) {
    compareForManyViewports(simpleMetrics(), cardOfFive, fiveRows, 0.5);
    compareForManyViewports(simpleMetrics(), {-40, 35}, 1, 0.25);
    compareForManyViewports(standard, cardSpans(standard, RowCounts{3, 6})[1], 6, 1);
    compareForManyViewports(SensorListMetrics(1.25), cardSpans(SensorListMetrics(1.25), RowCounts{4})[0], 4,
                            1);
}

TEST(SensorListLayout, WithoutAGapTheVisibleRowsTouch) {
    SensorListMetrics metrics = simpleMetrics();
    metrics.rowGap = 0;
    compareForManyViewports(metrics, cardSpans(metrics, RowCounts{4})[0], 4, 0.5);
}

TEST(SensorListLayout, ViewportsNextToEachOtherShowEveryRowAndSplitOnesTwice) {
    const Span card = cardSpans(standard, RowCounts{1000}).front();
    std::size_t next = 0;
    for (double top = 0; top < card.bottom(); top += 300) {
        const IndexRange rows = visibleRows(standard, card, 1000, {top, 300});
        ASSERT_GT(rows.count, 0U) << top;
        const double cut = card.top + rowSpan(standard, rows.first).top;
        EXPECT_EQ(rows.first, top > 0 && cut < top ? next - 1 : next) << top;
        next = rows.first + rows.count;
    }
    EXPECT_EQ(next, 1000U);
}

// Overlap

TEST(SensorListLayout, SpansThatShareAPartOverlap) {
    EXPECT_TRUE(overlap({0, 10}, {9, 10}));
    EXPECT_TRUE(overlap({9, 10}, {0, 10}));
    EXPECT_TRUE(overlap({0, 10}, {3, 2}));
    EXPECT_TRUE(overlap({3, 2}, {0, 10}));
    EXPECT_TRUE(overlap({0, 10}, {0, 10}));
    EXPECT_TRUE(overlap({-5, 6}, {0, 1}));
}

TEST(SensorListLayout, SpansThatTouchOrAreApartDoNotOverlap) {
    EXPECT_FALSE(overlap({0, 10}, {10, 10}));
    EXPECT_FALSE(overlap({10, 10}, {0, 10}));
    EXPECT_FALSE(overlap({0, 10}, {30, 10}));
    EXPECT_FALSE(overlap({30, 10}, {0, 10}));
}

TEST(SensorListLayout, ASpanEndsItsHeightBelowItsTop) {
    EXPECT_EQ((Span{12, 30}.bottom()), 42);
    EXPECT_EQ((Span{-12, 30}.bottom()), 18);
}

} // namespace
} // namespace kelvinbar::sensor_list_layout_test
