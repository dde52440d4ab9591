#include "panel/SymbolPainting.h"

#include "panel/SystemMasks.h"

#include <QImage>
#include <QPainter>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::symbol_painting_test {

namespace {

constexpr double side = 12;

class SymbolPainting : public testing::Test {
  protected:
    void useSystemSymbols(SystemSymbols symbols) {
        masks = std::make_unique<SystemMasks>(std::move(symbols));
    }

    /// Covers the left half of the square, and records the request.
    void useHalves() {
        useSystemSymbols([this](const std::string& name, int pixels) -> std::optional<SymbolMask> {
            asked.emplace_back(name, pixels);
            if (name == "unknown") return std::nullopt;
            SymbolMask mask{.side = pixels, .coverage = {}};
            for (int pixel = 0; pixel < pixels * pixels; ++pixel) {
                mask.coverage.push_back(pixel % pixels < pixels / 2 ? 255 : 0);
            }
            return mask;
        });
    }

    [[nodiscard]] QImage painted(const QString& name, double scale = 1, const QColor& color = Qt::red) const {
        const int pixels = qRound(side * scale);
        QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintSymbol(painter, name, color, side, masks.get());
        return image;
    }

    std::unique_ptr<SystemMasks> masks; ///< null at first
    std::vector<std::pair<std::string, int>> asked;
};

TEST_F(SymbolPainting, TheProgramHasItsOwnSymbols) {
    const QImage image = painted("cpu");
    EXPECT_NE(image, painted("minus"));
    EXPECT_NE(image, painted("no such symbol"));
}

TEST_F(SymbolPainting, ASymbolOfTheSystemTakesTheirPlaceInTheColourOfTheText) {
    useHalves();
    const QImage image = painted("cpu");
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(5, 11), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(6, 0).alpha(), 0);
    EXPECT_EQ(painted("cpu", 1, Qt::green).pixelColor(0, 0), QColor(Qt::green));
}

TEST_F(SymbolPainting, HalfOfAColourIsHalfOfItsAlpha) {
    useSystemSymbols([](const std::string&, int pixels) {
        const auto count = static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels);
        return std::optional(SymbolMask{.side = pixels, .coverage = std::vector<std::uint8_t>(count, 128)});
    });
    EXPECT_EQ(painted("cpu").pixelColor(3, 3).alpha(), 128);
}

TEST_F(SymbolPainting, ASymbolIsAskedForOnceAndInThePixelsOfTheScreen) {
    useHalves();
    for (const double scale : {2.0, 2.0, 1.5}) static_cast<void>(painted("cpu", scale));
    EXPECT_EQ(asked, (std::vector<std::pair<std::string, int>>{{"cpu", 24}, {"cpu", 18}}));
}

TEST_F(SymbolPainting, WhatTheSystemDoesNotHaveIsTheProgramsOwn) {
    const QImage own = painted("cpu");
    useSystemSymbols([](const std::string&, int) { return std::optional<SymbolMask>(); });
    EXPECT_EQ(painted("cpu"), own);
}

TEST_F(SymbolPainting, AMaskOfAnotherSizeThanItSaysIsNone) {
    const QImage own = painted("cpu");
    useSystemSymbols(
        [](const std::string&, int) { return std::optional(SymbolMask{.side = 12, .coverage = {1, 2, 3}}); });
    EXPECT_EQ(painted("cpu"), own);
}

} // namespace
} // namespace kelvinbar::symbol_painting_test
