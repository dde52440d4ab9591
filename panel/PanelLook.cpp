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

PanelLook PanelLook::of(const QScreen* screen, bool isContrastHigh) {
    return {kelvinbar::textScale(screen), QGuiApplication::font().family(), isContrastHigh};
}

} // namespace kelvinbar
