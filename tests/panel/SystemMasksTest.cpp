#include "panel/SystemMasks.h"

#include <QQuickWindow>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::system_masks_test {

namespace {

/// Every symbol is a square of uniform coverage.
SystemSymbols squaresOf(std::uint8_t coverage) {
    return [coverage](const std::string& /*name*/, int pixels) {
        const auto count = static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels);
        return std::optional(
            SymbolMask{.side = pixels, .coverage = std::vector<std::uint8_t>(count, coverage)});
    };
}

TEST(SystemMasks, AMaskIsTheSymbolsCoverage) {
    SystemMasks masks(squaresOf(128));
    const QImage mask = masks.mask("cpu", 12);
    EXPECT_EQ(mask.size(), QSize(12, 12));
    EXPECT_EQ(mask.pixelColor(11, 11).alpha(), 128);
}

TEST(SystemMasks, WithoutSymbolsOfTheSystemEveryMaskIsNull) {
    SystemMasks masks({});
    EXPECT_TRUE(masks.mask("cpu", 12).isNull());
}

TEST(SystemMasks, AWindowHasNoneUntilTheyAreSet) {
    const QQuickWindow window;
    EXPECT_EQ(systemMasksOf(&window), nullptr);
    EXPECT_EQ(systemMasksOf(nullptr), nullptr);
}

TEST(SystemMasks, EachWindowHasItsOwn) {
    SystemMasks bright(squaresOf(255));
    SystemMasks faint(squaresOf(16));
    QQuickWindow first;
    QQuickWindow second;
    setSystemMasks(first, bright);
    setSystemMasks(second, faint);
    EXPECT_EQ(systemMasksOf(&first), &bright);
    EXPECT_EQ(systemMasksOf(&second), &faint);
}

} // namespace
} // namespace kelvinbar::system_masks_test
