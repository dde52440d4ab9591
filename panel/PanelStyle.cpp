#include "panel/PanelStyle.h"

#include "panel/PanelColor.h"
#include "panel/QtColors.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace kelvinbar {

namespace {

constexpr double standardDotsPerInch = KELVINBAR_STANDARD_DOTS_PER_INCH; // 72 or 96, by platform

QString roundedFamilyOf(const QString& family) {
    const QString rounded = family + " Rounded";
    return QFontDatabase::hasFamily(rounded) ? rounded : family;
}

} // namespace

double textScale() {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? 1 : screen->logicalDotsPerInch() / standardDotsPerInch;
}

PanelStyle::PanelStyle(QObject* parent)
    : QObject(parent)
    , textScale_(kelvinbar::textScale())
    , family_(QGuiApplication::font().family())
    , roundedFamily_(roundedFamilyOf(family_)) {}

QFont PanelStyle::font(double points, int weight) const { return cut(family_, points, weight); }

QFont PanelStyle::roundedFont(double points, int weight) const { return cut(roundedFamily_, points, weight); }

QFont PanelStyle::cut(const QString& family, double points, int weight) {
    // One point of the panel is one pixel at the standard text size.
    constexpr double typographicPointsPerInch = 72;
    QFont font(family);
    font.setPointSizeF(points * typographicPointsPerInch / standardDotsPerInch);
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

QColor PanelStyle::white(double opacity) { return qtColor(withOpacity(kelvinbar::white, opacity)); }

QColor PanelStyle::black(double opacity) { return qtColor(withOpacity(kelvinbar::black, opacity)); }

QColor PanelStyle::tinted(const QColor& color, double opacity) {
    QColor tint = color;
    tint.setAlphaF(static_cast<float>(opacity));
    return tint;
}

QColor PanelStyle::chipInk(const QColor& accent) {
    constexpr float accentShare = 0.35F;
    const auto mixed = [](float channel) { return 1 - accentShare * (1 - channel); };
    return QColor::fromRgbF(mixed(accent.redF()), mixed(accent.greenF()), mixed(accent.blueF()));
}

QColor PanelStyle::focusRing() { return qtColor(withOpacity(shade(Accent::cyan), 0.95)); }

QColor PanelStyle::cyan() { return qtColor(shade(Accent::cyan)); }

QColor PanelStyle::purple() { return qtColor(shade(Accent::purple)); }

QColor PanelStyle::pink() { return qtColor(shade(Accent::pink)); }

QColor PanelStyle::orange() { return qtColor(shade(Accent::orange)); }

QColor PanelStyle::yellow() { return qtColor(shade(Accent::yellow)); }

QColor PanelStyle::red() { return qtColor(shade(Accent::red)); }

double PanelStyle::scaled(double length) const { return std::round(length * textScale_); }

} // namespace kelvinbar
