#include "panel/PanelLook.h"

#include <QFont>
#include <QGuiApplication>
#include <QScreen>

namespace kelvinbar {

namespace {

constexpr double standardDotsPerInch = KELVINBAR_STANDARD_DOTS_PER_INCH; // 72 or 96, by platform

} // namespace

double textScale(const QScreen* screen) {
    return screen == nullptr ? 1 : screen->logicalDotsPerInch() / standardDotsPerInch;
}

PanelLook PanelLook::of(const QScreen* screen, const QString& roundedFamily, bool isContrastHigh) {
    const QString family = QGuiApplication::font().family();
    return {QGuiApplication::primaryScreen()->logicalDotsPerInch(), kelvinbar::textScale(screen), family,
            roundedFamily.isEmpty() ? family : roundedFamily, isContrastHigh};
}

} // namespace kelvinbar
