#include "desktop/linux/tray/ReadingIcon.h"

#include <QImage>
#include <QRect>
#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

namespace kelvinbar::reading_icon_test {

namespace {

/// Whether a pixel belongs to a glyph, not only to the outline.
bool isInk(QRgb pixel, bool isOnDark) {
    return qAlpha(pixel) > 0 && (isOnDark ? qGray(pixel) > 127 : qGray(pixel) < 128);
}

/// The bounding box of the glyphs.
QRect inkBox(const QImage& image, bool isOnDark) {
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isInk(image.pixel(x, y), isOnDark)) box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

QRect inkBox(const QString& value, int side) { return inkBox(ReadingIcons(true).icon(value, side), true); }

bool isTransparent(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) return false;
        }
    }
    return true;
}

TEST(IconText, IsTheNumber) {
    EXPECT_EQ(iconText("1200rpm"), "1200");
    EXPECT_EQ(iconText("5.6 W"), "5.6");
    EXPECT_EQ(iconText("5.6W"), "5.6");
    EXPECT_EQ(iconText("85%"), "85");
}

TEST(IconText, KeepsTheDegreeSignAndTheMinus) {
    EXPECT_EQ(iconText("48°"), "48°");
    EXPECT_EQ(iconText("-3°"), "-3°");
    EXPECT_EQ(iconText("100°"), "100°");
}

TEST(IconText, RoundsAFractionAwayThatDoesNotFit) {
    EXPECT_EQ(iconText("49.80°"), "50°");
    EXPECT_EQ(iconText("49.20°"), "49°");
    EXPECT_EQ(iconText("99.90°"), "100°");
    EXPECT_EQ(iconText("-12.7°"), "-13°");
    EXPECT_EQ(iconText("12.34V"), "12");
    EXPECT_EQ(iconText("1234.5rpm"), "1235");
}

TEST(IconText, KeepsAFractionThatFits) { EXPECT_EQ(iconText("1.25V"), "1.25"); }

TEST(IconText, IsEmptyForAWord) {
    EXPECT_EQ(iconText("Charging"), "");
    EXPECT_EQ(iconText("On"), "");
}

TEST(IconText, IsEmptyForNothing) {
    EXPECT_EQ(iconText(""), "");
    EXPECT_EQ(iconText("  "), "");
}

TEST(ReadingIcons, HasInkAtEverySide) {
    for (const bool isOnDark : {true, false}) {
        ReadingIcons icons(isOnDark);
        for (const int side : iconSides) {
            for (const auto* const value : {"48°", "1200rpm", "5.6W", "-3°", "100°"}) {
                const QImage image = icons.icon(value, side);
                ASSERT_EQ(image.size(), QSize(side, side));
                EXPECT_FALSE(inkBox(image, isOnDark).isEmpty()) << value << " at " << side;
            }
        }
    }
}

TEST(ReadingIcons, KeepsItsLettersOffTheOutermostPixels) {
    for (const bool isOnDark : {true, false}) {
        ReadingIcons icons(isOnDark);
        for (const int side : iconSides) {
            for (const auto* const value : {"48°", "1200rpm", "5.6W", "11"}) {
                const QRect box = inkBox(icons.icon(value, side), isOnDark);
                EXPECT_TRUE(QRect(1, 1, side - 2, side - 2).contains(box)) << value << " at " << side;
            }
        }
    }
}

TEST(ReadingIcons, FillsTheIcon) {
    for (const int side : iconSides) {
        const QRect box = inkBox("48°", side);
        EXPECT_GE(std::max(box.width(), box.height()) * 10, side * 6) << side;
    }
}

TEST(ReadingIcons, HasLightInkOnDarkAndDarkInkOnLight) {
    for (const bool isOnDark : {true, false}) {
        const QImage image = ReadingIcons(isOnDark).icon("88", 64);
        int opaquePixels = 0;
        bool hasRim = false;
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                const QRgb pixel = image.pixel(x, y);
                const bool isLight = qGray(pixel) > 127;
                if (qAlpha(pixel) == 255) {
                    ++opaquePixels;
                    EXPECT_EQ(isLight, isOnDark) << x << ", " << y;
                } else if (qAlpha(pixel) > 100 && isLight != isOnDark) {
                    hasRim = true;
                }
            }
        }
        EXPECT_GT(opaquePixels, 100);
        EXPECT_TRUE(hasRim);
    }
}

TEST(ReadingIcons, IsGray) {
    const QImage image = ReadingIcons(true).icon("48°", 32);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const QRgb pixel = image.pixel(x, y);
            ASSERT_EQ(qRed(pixel), qGreen(pixel));
            ASSERT_EQ(qRed(pixel), qBlue(pixel));
        }
    }
}

TEST(ReadingIcons, HasDigitsOfOneWidthAndScale) {
    const QRect ones = inkBox("11", 64);
    const QRect eights = inkBox("88", 64);
    EXPECT_LE(std::abs(ones.top() - eights.top()), 2);
    EXPECT_LE(std::abs(ones.bottom() - eights.bottom()), 2);
    EXPECT_LT(ones.width(), eights.width()); // narrower glyphs in equally wide cells
    EXPECT_GT(ones.width() * 2, eights.width());
}

TEST(ReadingIcons, ADigitStaysInItsPlaceWhenAnotherChanges) {
    ReadingIcons icons(true);
    for (const int side : iconSides) {
        const QImage one = icons.icon("18", side);
        const QImage eight = icons.icon("88", side);
        EXPECT_NE(one, eight) << side;
        const QRect lastThird(side * 2 / 3, 0, side - side * 2 / 3, side);
        EXPECT_EQ(one.copy(lastThird), eight.copy(lastThird)) << side;
    }
}

TEST(ReadingIcons, DrawsOtherTextsOtherwise) {
    ReadingIcons icons(true);
    EXPECT_NE(icons.icon("48°", 22), icons.icon("49°", 22));
    EXPECT_NE(icons.icon("48°", 22), icons.icon("48", 22));
    EXPECT_EQ(icons.icon("49.80°", 22), icons.icon("50°", 22));
}

TEST(ReadingIcons, DrawsTheSameWhateverItDrewBefore) {
    ReadingIcons icons(true);
    const QImage first = icons.icon("48°", 24);
    for (int value = 0; value < 500; ++value) static_cast<void>(icons.icon(QString::number(value), 24));
    EXPECT_EQ(icons.icon("48°", 24), first);
    EXPECT_EQ(ReadingIcons(true).icon("48°", 24), first);
}

TEST(ReadingIcons, IsTransparentForNothing) { EXPECT_TRUE(isTransparent(ReadingIcons(true).icon("", 22))); }

TEST(ReadingIcons, HasAPixmapOfEverySide) {
    ReadingIcons icons(true);
    const StatusNotifierPixmaps pixmaps = icons.pixmaps("48°");
    ASSERT_EQ(pixmaps.size(), static_cast<qsizetype>(std::size(iconSides)));
    qsizetype place = 0;
    for (const int side : iconSides) {
        EXPECT_EQ(pixmaps[place].width, side);
        EXPECT_EQ(pixmaps[place].height, side);
        EXPECT_EQ(pixmaps[place], statusNotifierPixmap(icons.icon("48°", side)));
        ++place;
    }
}

} // namespace
} // namespace kelvinbar::reading_icon_test
