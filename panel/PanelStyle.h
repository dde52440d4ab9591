#pragma once

#include "panel/PanelFrameMetrics.h"
#include "panel/PanelInks.h"
#include "panel/PanelLook.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// Fonts, colours and lengths for the views. Fonts are cuts of two families (PanelLook.h); colours do not
/// depend on the desktop's theme, since the panel is always dark. Everything is constant while views exist:
/// whoever changes it makes the views anew. Main thread.
class PanelStyle : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor focusRing READ focusRing CONSTANT)
    // See PanelInks.h.
    Q_PROPERTY(QColor titleInk READ titleInk CONSTANT)
    Q_PROPERTY(QColor labelInk READ labelInk CONSTANT)
    Q_PROPERTY(QColor rowNameInk READ rowNameInk CONSTANT)
    Q_PROPERTY(QColor secondaryInk READ secondaryInk CONSTANT)
    Q_PROPERTY(QColor metadataInk READ metadataInk CONSTANT)
    Q_PROPERTY(QColor noticeTitleInk READ noticeTitleInk CONSTANT)
    Q_PROPERTY(QColor scanningInk READ scanningInk CONSTANT)
    Q_PROPERTY(QColor noticeTextInk READ noticeTextInk CONSTANT)
    Q_PROPERTY(QColor markInk READ markInk CONSTANT)
    Q_PROPERTY(QColor dimInk READ dimInk CONSTANT)
    // Gradients; see PanelSurfaces.h.
    Q_PROPERTY(QList<QColor> backdropColors READ backdropColors CONSTANT)
    Q_PROPERTY(QList<QColor> sheenColors READ sheenColors CONSTANT)
    Q_PROPERTY(QList<QColor> cardColors READ cardColors CONSTANT)
    Q_PROPERTY(QList<QColor> popupColors READ popupColors CONSTANT)
    Q_PROPERTY(QList<QColor> aboutColors READ aboutColors CONSTANT)
    Q_PROPERTY(QList<QColor> chipColors READ chipColors CONSTANT)
    Q_PROPERTY(QList<QColor> buttonColors READ buttonColors CONSTANT)
    Q_PROPERTY(QList<QColor> hoveredButtonColors READ hoveredButtonColors CONSTANT)
    Q_PROPERTY(double badgeTint READ badgeTint CONSTANT)
    Q_PROPERTY(double tileTint READ tileTint CONSTANT)
    Q_PROPERTY(double checkTint READ checkTint CONSTANT)
    // The heights of the panel's parts; see PanelFrameMetrics.h. Those of controls grow with the text.
    Q_PROPERTY(double headerHeight READ headerHeight CONSTANT)
    Q_PROPERTY(double dividerHeight READ dividerHeight CONSTANT)
    Q_PROPERTY(double footerPadding READ footerPadding CONSTANT)
    Q_PROPERTY(double footerSpacing READ footerSpacing CONSTANT)
    Q_PROPERTY(double settingsHeight READ settingsHeight CONSTANT)
    Q_PROPERTY(double actionHeight READ actionHeight CONSTANT)
    /// Of the values of rows.
    Q_PROPERTY(QFont valueFont READ valueFont CONSTANT)
    // Accents; see PanelColor.h.
    Q_PROPERTY(QColor cyan READ cyan CONSTANT)
    Q_PROPERTY(QColor purple READ purple CONSTANT)
    Q_PROPERTY(QColor pink READ pink CONSTANT)
    Q_PROPERTY(QColor orange READ orange CONSTANT)
    Q_PROPERTY(QColor yellow READ yellow CONSTANT)
    Q_PROPERTY(QColor pin READ pin CONSTANT)
    Q_PROPERTY(QColor warning READ warning CONSTANT)

  public:
    /// With the look of the primary screen at the usual contrast.
    explicit PanelStyle(QObject* parent = nullptr);

    /// Call while no view uses the style.
    void setLook(const PanelLook& look);

    [[nodiscard]] double headerHeight() const { return scaled(frame_.header); }

    [[nodiscard]] double dividerHeight() const { return frame_.divider; }

    [[nodiscard]] double footerPadding() const { return frame_.footerPadding; }

    [[nodiscard]] double footerSpacing() const { return frame_.footerSpacing; }

    [[nodiscard]] double settingsHeight() const { return scaled(frame_.settingsRow); }

    [[nodiscard]] double actionHeight() const { return scaled(frame_.actionRow); }

    [[nodiscard]] QFont valueFont() const { return roundedFont(11.5, QFont::Black); }

    [[nodiscard]] static QColor focusRing();
    [[nodiscard]] static QColor cyan();
    [[nodiscard]] static QColor purple();
    [[nodiscard]] static QColor pink();
    [[nodiscard]] static QColor orange();
    [[nodiscard]] static QColor yellow();
    [[nodiscard]] static QColor pin();
    [[nodiscard]] static QColor warning();

    [[nodiscard]] QColor titleInk() const { return white(inks_.title); }

    [[nodiscard]] QColor labelInk() const { return white(inks_.label); }

    [[nodiscard]] QColor rowNameInk() const { return white(inks_.rowName); }

    [[nodiscard]] QColor secondaryInk() const { return white(inks_.secondary); }

    [[nodiscard]] QColor metadataInk() const { return white(inks_.metadata); }

    [[nodiscard]] QColor noticeTitleInk() const { return white(inks_.noticeTitle); }

    [[nodiscard]] QColor scanningInk() const { return white(inks_.scanning); }

    [[nodiscard]] QColor noticeTextInk() const { return white(inks_.noticeText); }

    [[nodiscard]] QColor markInk() const { return white(inks_.mark); }

    [[nodiscard]] QColor dimInk() const { return white(inks_.dim); }

    [[nodiscard]] static QList<QColor> backdropColors();
    [[nodiscard]] static QList<QColor> sheenColors();
    [[nodiscard]] static QList<QColor> cardColors();
    [[nodiscard]] static QList<QColor> popupColors();
    [[nodiscard]] static QList<QColor> aboutColors();
    [[nodiscard]] static QList<QColor> chipColors();
    [[nodiscard]] static QList<QColor> buttonColors();
    [[nodiscard]] static QList<QColor> hoveredButtonColors();
    [[nodiscard]] static double badgeTint();
    [[nodiscard]] static double tileTint();
    [[nodiscard]] static double checkTint();

    /// The interface font. `points` is the size at the standard text size; `weight` as in QFont.
    Q_INVOKABLE [[nodiscard]] QFont font(double points, int weight) const;
    /// The same of the rounded font.
    Q_INVOKABLE [[nodiscard]] QFont roundedFont(double points, int weight) const;

    /// White, black and other colours with an opacity from 0 to 1.
    Q_INVOKABLE [[nodiscard]] static QColor white(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor black(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor tinted(const QColor& color, double opacity);
    /// Accents as inks, for texts and for symbols on a tint of themselves; see PanelColor.h.
    Q_INVOKABLE [[nodiscard]] static QColor accentText(const QColor& accent);
    Q_INVOKABLE [[nodiscard]] static QColor accentSymbol(const QColor& accent);

    /// A length that scales with the text size, rounded to whole points.
    Q_INVOKABLE [[nodiscard]] double scaled(double length) const;

  private:
    /// A font in the panel's points, which are pixels at the standard text size.
    [[nodiscard]] QFont cut(const QString& family, double points, int weight) const;

    PanelFrameMetrics frame_;
    PanelInks inks_;
    double typographicPoints_ = 1; ///< a pixel in points of fonts
    double textScale_ = 1;
    QString family_;
    QString roundedFamily_;
};

} // namespace kelvinbar
