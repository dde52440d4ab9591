#include "desktop/macos/SystemSymbolMask.h"

#include "tests/macos-runtime/CocoaTest.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvinbar::system_symbol_mask_test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

class SystemSymbolMaskTest : public CocoaTest {
  protected:
    SystemSymbolMaskTest() {
        cocoa.symbols = {{"wide", {40, 20}}, {"tall", {10, 20}}, {"empty", {0, 20}}};
        cocoa.paint = [](std::uint8_t* bytes, std::size_t side) {
            for (std::size_t pixel = 0; pixel < side * side; ++pixel) {
                bytes[4 * pixel + 3] = static_cast<std::uint8_t>(10 * (pixel + 1));
            }
        };
    }

    /// Where the symbol is drawn in a square of 10 pixels.
    Rect placeOf(const std::string& name) {
        EXPECT_NE(systemSymbolMask(name, 10), std::nullopt);
        return cocoa.drawings.empty() ? Rect{} : cocoa.drawings.back().place;
    }
};

TEST_F(SystemSymbolMaskTest, TheMaskIsTheCoverageOfEachPixel) {
    const auto mask = systemSymbolMask("wide", 2);
    ASSERT_NE(mask, std::nullopt);
    EXPECT_EQ(mask->side, 2);
    EXPECT_THAT(mask->coverage, ElementsAre(10, 20, 30, 40));
}

TEST_F(SystemSymbolMaskTest, WhatIsNotDrawnIsNotCovered) {
    cocoa.paint = nullptr;
    const auto mask = systemSymbolMask("wide", 3);
    ASSERT_NE(mask, std::nullopt);
    EXPECT_THAT(mask->coverage, SizeIs(9));
    EXPECT_THAT(mask->coverage, Each(0));
}

TEST_F(SystemSymbolMaskTest, ASymbolIsDrawnWithAMediumWeightInItsSize) {
    systemSymbolMask("wide", 24);
    ASSERT_THAT(cocoa.drawings, SizeIs(1));
    EXPECT_EQ(cocoa.drawings.front().name, "wide");
    EXPECT_EQ(cocoa.drawings.front().pointSize, 24);
    EXPECT_EQ(cocoa.drawings.front().weight, fakes::fakeMediumWeight);
}

TEST_F(SystemSymbolMaskTest, ASymbolIsCentredAndAsLargeAsPossible) {
    EXPECT_EQ(placeOf("wide"), (Rect{0, 2.5, 10, 5}));
    EXPECT_EQ(placeOf("tall"), (Rect{2.5, 0, 5, 10}));
}

TEST_F(SystemSymbolMaskTest, ASymbolWithoutWidthIsDrawnInsideTheSquare) {
    EXPECT_EQ(placeOf("empty"), (Rect{5, 0, 0, 10}));
}

TEST_F(SystemSymbolMaskTest, ASymbolThatTheSystemLacksHasNoMask) {
    EXPECT_EQ(systemSymbolMask("nothing", 10), std::nullopt);
}

TEST_F(SystemSymbolMaskTest, ASideBelowOnePixelHasNoMask) {
    EXPECT_EQ(systemSymbolMask("wide", 0), std::nullopt);
    EXPECT_EQ(systemSymbolMask("wide", -1), std::nullopt);
}

TEST_F(SystemSymbolMaskTest, WithoutBitmapThereIsNoMask) {
    cocoa.givesBitmaps = false;
    EXPECT_EQ(systemSymbolMask("wide", 10), std::nullopt);
}

TEST_F(SystemSymbolMaskTest, WithoutBytesThereIsNoMask) {
    cocoa.givesBitmapBytes = false;
    EXPECT_EQ(systemSymbolMask("wide", 10), std::nullopt);
}

TEST_F(SystemSymbolMaskTest, WithoutContextThereIsNoMask) {
    cocoa.givesGraphicsContexts = false;
    EXPECT_EQ(systemSymbolMask("wide", 10), std::nullopt);
}

} // namespace
} // namespace kelvinbar::system_symbol_mask_test
