#pragma once

#include <QString>

class QScreen;

namespace kelvinbar {

/// What of the desktop decides how the panel looks.
struct PanelLook {
    /// By which fonts in points are measured, whatever screen a window is on: those of the primary one.
    double dotsPerInch = 96;
    double textScale = 1;  ///< see textScale()
    QString family;        ///< of the interface font
    QString roundedFamily; ///< for headings and values; the interface font's where there is no rounded one
    bool isContrastHigh = false;

    /// The one that holds on a screen now. `roundedFamily` is empty for none. Main thread.
    static PanelLook of(const QScreen* screen, const QString& roundedFamily, bool isContrastHigh);

    friend bool operator==(const PanelLook&, const PanelLook&) = default;
};

/// The user's text size on a screen as a factor; 1 is the desktop's standard, and what is returned without a
/// screen. Main thread.
double textScale(const QScreen* screen);

} // namespace kelvinbar
