#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// The user's text size as the desktop tells it, 1 for the standard.
double textScale();

/// What the views draw with: the desktop's interface font in the panel's sizes, and its inks. Main thread.
class PanelStyle : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor focusRing READ focusRing CONSTANT)
    // The platform's named colours.
    Q_PROPERTY(QColor cyan READ cyan CONSTANT)
    Q_PROPERTY(QColor purple READ purple CONSTANT)
    Q_PROPERTY(QColor pink READ pink CONSTANT)
    Q_PROPERTY(QColor orange READ orange CONSTANT)
    Q_PROPERTY(QColor yellow READ yellow CONSTANT)
    Q_PROPERTY(QColor red READ red CONSTANT)

  public:
    explicit PanelStyle(QObject* parent = nullptr);

    [[nodiscard]] static QColor focusRing();
    [[nodiscard]] static QColor cyan();
    [[nodiscard]] static QColor purple();
    [[nodiscard]] static QColor pink();
    [[nodiscard]] static QColor orange();
    [[nodiscard]] static QColor yellow();
    [[nodiscard]] static QColor red();

    /// A cut of the interface font; `points` at the standard text size.
    Q_INVOKABLE [[nodiscard]] QFont font(double points, int weight) const;
    /// The same in the font's rounded form, where it has one.
    Q_INVOKABLE [[nodiscard]] QFont roundedFont(double points, int weight) const;

    /// Inks over the dark background.
    Q_INVOKABLE [[nodiscard]] static QColor white(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor black(double opacity);
    Q_INVOKABLE [[nodiscard]] static QColor tinted(const QColor& color, double opacity);
    /// Light, with a breath of the accent: a value is legible first.
    Q_INVOKABLE [[nodiscard]] static QColor chipInk(const QColor& accent);

    /// A length that grows with the text, in whole points.
    Q_INVOKABLE [[nodiscard]] double scaled(double length) const;

  private:
    [[nodiscard]] static QFont cut(const QString& family, double points, int weight);

    double textScale_;
    QString family_;
    QString roundedFamily_;
};

} // namespace kelvinbar
