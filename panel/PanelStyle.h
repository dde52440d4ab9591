#pragma once

#include "panel/PanelFrameMetrics.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// The user's text size as a factor; 1 is the desktop's standard. Derived from the primary screen.
double textScale();

/// Fonts, colours and lengths for the views. Fonts are cuts of the desktop's interface font; colours do not
/// depend on the desktop's theme, since the panel is always dark. Font and text size are read once, at
/// construction. Main thread.
class PanelStyle : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor focusRing READ focusRing CONSTANT)
    // The heights of the panel's parts; see PanelFrameMetrics.h. Those of controls grow with the text.
    Q_PROPERTY(double headerHeight READ headerHeight CONSTANT)
    Q_PROPERTY(double dividerHeight READ dividerHeight CONSTANT)
    Q_PROPERTY(double footerPadding READ footerPadding CONSTANT)
    Q_PROPERTY(double footerSpacing READ footerSpacing CONSTANT)
    Q_PROPERTY(double settingsHeight READ settingsHeight CONSTANT)
    Q_PROPERTY(double actionHeight READ actionHeight CONSTANT)
    // Accents; see PanelColor.h.
    Q_PROPERTY(QColor cyan READ cyan CONSTANT)
    Q_PROPERTY(QColor purple READ purple CONSTANT)
    Q_PROPERTY(QColor pink READ pink CONSTANT)
    Q_PROPERTY(QColor orange READ orange CONSTANT)
    Q_PROPERTY(QColor yellow READ yellow CONSTANT)
    Q_PROPERTY(QColor red READ red CONSTANT)

  public:
    explicit PanelStyle(QObject* parent = nullptr);

    [[nodiscard]] double headerHeight() const { return scaled(frame_.header); }

    [[nodiscard]] double dividerHeight() const { return frame_.divider; }

    [[nodiscard]] double footerPadding() const { return frame_.footerPadding; }

    [[nodiscard]] double footerSpacing() const { return frame_.footerSpacing; }

    [[nodiscard]] double settingsHeight() const { return scaled(frame_.settingsRow); }

    [[nodiscard]] double actionHeight() const { return scaled(frame_.actionRow); }

    [[nodiscard]] static QColor focusRing();
    [[nodiscard]] static QColor cyan();
    [[nodiscard]] static QColor purple();
    [[nodiscard]] static QColor pink();
    [[nodiscard]] static QColor orange();
    [[nodiscard]] static QColor yellow();
    [[nodiscard]] static QColor red();

    /// The interface font. `points` is the size at the standard text size; `weight` as in QFont.
    Q_INVOKABLE [[nodiscard]] QFont font(double points, int weight) const;
    /// The same with the rounded design, if the font has one.
    Q_INVOKABLE [[nodiscard]] QFont roundedFont(double points, int weight) const;

    /// White, black and other colours with an opacity from 0 to 1.
    Q_INVOKABLE [[nodiscard]] static QColor white(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor black(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor tinted(const QColor& color, double opacity);
    /// A light colour with a touch of the accent, for values on a chip: legibility first.
    Q_INVOKABLE [[nodiscard]] static QColor chipInk(const QColor& accent);

    /// A length that scales with the text size, rounded to whole points.
    Q_INVOKABLE [[nodiscard]] double scaled(double length) const;

  private:
    /// A font in the panel's points, which are pixels at the standard text size.
    [[nodiscard]] static QFont cut(const QString& family, double points, int weight);

    PanelFrameMetrics frame_;
    double textScale_;
    QString family_;
    QString roundedFamily_;
};

} // namespace kelvinbar
