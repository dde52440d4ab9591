#include "panel/PanelInks.h"

#include "panel/PanelSurfaces.h"
#include "panel/SensorRowTexts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::panel_inks_test {

namespace {

constexpr double textContrast = 4.5;
constexpr double markContrast = 3;

constexpr std::array accents{Accent::cyan, Accent::purple, Accent::pink,   Accent::grey,
                             Accent::mint, Accent::orange, Accent::yellow, Accent::red};

/// Red, green and blue, 0 to 1.
using Channels = std::array<double, 3>;

Channels over(const Channels& below, const PanelColor& ink) {
    const Channels top{ink.red / 255.0, ink.green / 255.0, ink.blue / 255.0};
    Channels mixed{};
    for (std::size_t index = 0; index < 3; ++index) {
        mixed[index] = top[index] * ink.opacity + below[index] * (1 - ink.opacity);
    }
    return mixed;
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// As WCAG 2 defines them.
double luminance(const Channels& color) {
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

double contrast(const Channels& below, const PanelColor& ink) {
    const double dark = luminance(below);
    const double light = luminance(over(below, ink));
    return (std::max(dark, light) + 0.05) / (std::min(dark, light) + 0.05);
}

double contrast(const Channels& below, double whiteOpacity) {
    return contrast(below, withOpacity(white, whiteOpacity));
}

/// The lightest place of each surface.
Channels litMetal() { return over(over({}, surfaces::backdrop.front()), surfaces::sheen.front()); }

Channels litCard() { return over(litMetal(), surfaces::card.front()); }

Channels litRow() { return over(litCard(), withOpacity(white, 0.05)); }

/// The footer is in the lower half of the panel.
Channels footer() { return over({}, surfaces::backdrop[1]); }

Channels hoveredButton() { return over(footer(), surfaces::hoveredButton.front()); }

Channels popup() { return over({}, surfaces::popup.front()); }

Channels checkThatIsOn(Accent tint) { return over(footer(), withOpacity(shade(tint), surfaces::checkTint)); }

/// The distance of two colours as people see it, in CIELAB; from about 20 they are different colours.
double distance(const PanelColor& left, const PanelColor& right) {
    const auto lab = [](const PanelColor& color) {
        const double r = linear(color.red / 255.0);
        const double g = linear(color.green / 255.0);
        const double b = linear(color.blue / 255.0);
        const double x = std::cbrt((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
        const double y = std::cbrt(0.2126 * r + 0.7152 * g + 0.0722 * b);
        const double z = std::cbrt((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089);
        return Channels{116 * y - 16, 500 * (x - y), 200 * (y - z)};
    };
    const Channels a = lab(left);
    const Channels b = lab(right);
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

class PanelInksTest : public testing::TestWithParam<bool> {
  protected:
    PanelInks inks = panelInks(GetParam());
};

TEST_P(PanelInksTest, HeadingsAndSubtitlesOfCardsAreLegible) {
    EXPECT_GE(contrast(litCard(), inks.title), textContrast);
    EXPECT_GE(contrast(litCard(), inks.secondary), textContrast);
}

TEST_P(PanelInksTest, NamesOfRowsAreLegible) { EXPECT_GE(contrast(litRow(), inks.rowName), textContrast); }

TEST_P(PanelInksTest, TextsOfTheFooterAreLegibleUnderThePointer) {
    EXPECT_GE(contrast(hoveredButton(), inks.label), textContrast);
    EXPECT_GE(contrast(hoveredButton(), inks.secondary), textContrast);
    for (const Accent tint : {Accent::cyan, Accent::purple}) {
        EXPECT_GE(contrast(checkThatIsOn(tint), inks.label), textContrast);
        EXPECT_GE(contrast(checkThatIsOn(tint), inks.secondary), textContrast);
    }
}

TEST_P(PanelInksTest, TextsOfMenusAndAboutAreLegible) {
    EXPECT_GE(contrast(over(popup(), withOpacity(white, 0.16)), inks.label), textContrast);
    EXPECT_GE(contrast(popup(), inks.secondary), textContrast);
    EXPECT_GE(contrast(over({}, surfaces::about.front()), inks.secondary), textContrast);
}

TEST_P(PanelInksTest, RingsChecksAndTheScrollBarAreSeen) {
    EXPECT_GE(contrast(litCard(), inks.mark), markContrast);
    EXPECT_GE(contrast(litMetal(), inks.mark), markContrast);
    EXPECT_GE(contrast(hoveredButton(), inks.mark), markContrast);
}

TEST_P(PanelInksTest, TheFrameOfTheRowUnderThePointerIsSeen) {
    for (const bool isPinned : {false, true}) {
        for (const Accent accent : accents) {
            // The row's gradient and the card's have their lightest places in the same corner.
            const Channels row = over(litCard(), rowBackgroundColors(isPinned, accent).front());
            EXPECT_GE(contrast(row, inks.mark), markContrast) << isPinned << static_cast<int>(accent);
        }
    }
}

TEST_P(PanelInksTest, TheSymbolOfAMachineThatCannotBeReadIsSeen) {
    EXPECT_GE(contrast(litMetal(), withOpacity(shade(Accent::yellow), surfaces::warningTint)), markContrast);
}

TEST_P(PanelInksTest, TheDotsOfTheProgressRingAreSeen) {
    EXPECT_GE(contrast(litMetal(), inks.mark), markContrast);
    EXPECT_GE(contrast(litMetal(), inks.title), 1.5 * contrast(litMetal(), inks.mark)) << "what turns";
}

INSTANTIATE_TEST_SUITE_P(Contrast, PanelInksTest, testing::Bool(),
                         [](const auto& isHigh) { return isHigh.param ? "high" : "usual"; });

TEST(PanelInks, ThatAreFaintAreLegibleAtHighContrast) {
    const PanelInks inks = strongInks();
    EXPECT_GE(contrast(litRow(), inks.metadata), textContrast);
    EXPECT_GE(contrast(litMetal(), inks.scanning), textContrast);
    EXPECT_GE(contrast(litMetal(), inks.noticeTitle), textContrast);
    EXPECT_GE(contrast(litMetal(), inks.noticeText), textContrast);
    EXPECT_GE(contrast(hoveredButton(), inks.dim), markContrast);
}

TEST(PanelAccents, AreLegibleAsCountsAndValues) {
    for (const Accent accent : accents) {
        const Channels badge = over(litCard(), withOpacity(shade(accent), surfaces::badgeTint));
        const PanelColor ink = lightened(shade(accent), accentInText);
        EXPECT_GE(contrast(badge, ink), textContrast) << static_cast<int>(accent);
        EXPECT_GE(contrast(over(litRow(), surfaces::chip.back()), ink), textContrast);
    }
}

TEST(PanelAccents, AreSeenAsSymbols) {
    for (const Accent accent : accents) {
        const Channels tile = over(litCard(), withOpacity(shade(accent), surfaces::tileTint));
        EXPECT_GE(contrast(tile, lightened(shade(accent), accentInSymbols)), markContrast)
            << static_cast<int>(accent);
    }
    for (const Accent tint : {Accent::cyan, Accent::purple}) {
        EXPECT_GE(contrast(checkThatIsOn(tint), shade(tint)), markContrast);
    }
}

TEST(PanelAccents, AreUnlikeEachOtherAndTheMarkOfAPin) {
    constexpr double clearlyDifferent = 20;
    for (std::size_t left = 0; left < accents.size(); ++left) {
        EXPECT_GE(distance(shade(accents[left]), pinRed), clearlyDifferent) << left;
        for (std::size_t right = left + 1; right < accents.size(); ++right) {
            EXPECT_GE(distance(shade(accents[left]), shade(accents[right])), clearlyDifferent)
                << left << " and " << right;
        }
    }
}

/// The mark stands at the right, where the row's gradient is at its end and the card's in its middle.
TEST(PanelAccents, ThePinIsSeenOnItsRow) {
    const Channels card = over(over({}, surfaces::backdrop.front()), surfaces::card[1]);
    EXPECT_GE(contrast(over(card, rowBackgroundColors(true, Accent::red).back()), pinRed), markContrast);
}

} // namespace
} // namespace kelvinbar::panel_inks_test
