#include "panel/PanelStyle.h"

#include "panel/PanelColor.h"
#include "panel/PanelSurfaces.h"
#include "panel/QtColors.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace kelvinbar {

namespace {

constexpr double typographicPointsPerInch = 72;

QColor lightened(const QColor& color, double share) {
    return qtColor(kelvinbar::lightened(panelColor(color), share));
}

} // namespace

PanelStyle::PanelStyle(QObject* parent) : QObject(parent) {
    setLook(PanelLook::of(QGuiApplication::primaryScreen(), {}, false));
}

void PanelStyle::setLook(const PanelLook& look) {
    inks_ = panelInks(look.isContrastHigh);
    typographicPoints_ = typographicPointsPerInch / look.dotsPerInch;
    textScale_ = look.textScale;
    family_ = look.family;
    roundedFamily_ = look.roundedFamily;
}

QFont PanelStyle::font(double points, int weight) const { return cut(family_, points, weight); }

QFont PanelStyle::roundedFont(double points, int weight) const { return cut(roundedFamily_, points, weight); }

QFont PanelStyle::cut(const QString& family, double points, int weight) const {
    QFont font(family);
    font.setPointSizeF(points * textScale_ * typographicPoints_);
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

QColor PanelStyle::accentText(const QColor& accent) { return lightened(accent, accentInText); }

QColor PanelStyle::accentSymbol(const QColor& accent) { return lightened(accent, accentInSymbols); }

QList<QColor> PanelStyle::backdropColors() { return qtColors(surfaces::backdrop); }

QList<QColor> PanelStyle::sheenColors() { return qtColors(surfaces::sheen); }

QList<QColor> PanelStyle::cardColors() { return qtColors(surfaces::card); }

QList<QColor> PanelStyle::popupColors() { return qtColors(surfaces::popup); }

QList<QColor> PanelStyle::aboutColors() { return qtColors(surfaces::about); }

QList<QColor> PanelStyle::chipColors() { return qtColors(surfaces::chip); }

QList<QColor> PanelStyle::buttonColors() { return qtColors(surfaces::button); }

QList<QColor> PanelStyle::hoveredButtonColors() { return qtColors(surfaces::hoveredButton); }

double PanelStyle::badgeTint() { return surfaces::badgeTint; }

double PanelStyle::tileTint() { return surfaces::tileTint; }

double PanelStyle::checkTint() { return surfaces::checkTint; }

QColor PanelStyle::focusRing() { return qtColor(withOpacity(shade(Accent::cyan), 0.95)); }

QColor PanelStyle::cyan() { return qtColor(shade(Accent::cyan)); }

QColor PanelStyle::purple() { return qtColor(shade(Accent::purple)); }

QColor PanelStyle::pink() { return qtColor(shade(Accent::pink)); }

QColor PanelStyle::orange() { return qtColor(shade(Accent::orange)); }

QColor PanelStyle::yellow() { return qtColor(shade(Accent::yellow)); }

QColor PanelStyle::pin() { return qtColor(pinRed); }

QColor PanelStyle::warning() { return qtColor(withOpacity(shade(Accent::yellow), surfaces::warningTint)); }

double PanelStyle::scaled(double length) const { return std::round(length * textScale_); }

} // namespace kelvinbar
