#include "platform/linux/desktop/ReadingIcon.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace kelvinbar {

namespace {

constexpr QChar degreeSign(0x00B0);

bool belongsToNumber(QChar character) {
    return character.isDigit() || character == '.' || character == '-' || character == degreeSign;
}

/// The text's outline, each digit in a cell as wide as the widest digit.
QPainterPath outlineOf(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    qreal digitWidth = 0;
    for (const char digit : std::string_view("0123456789")) {
        digitWidth = std::max(digitWidth, metrics.horizontalAdvance(QLatin1Char(digit)));
    }
    QPainterPath path;
    qreal x = 0;
    for (const QChar character : text) {
        const qreal own = metrics.horizontalAdvance(character);
        const qreal cell = character.isDigit() ? digitWidth : own;
        path.addText(x + (cell - own) / 2, 0, font, QString(character));
        x += cell;
    }
    return path;
}

} // namespace

QString iconText(const QString& value) {
    const QString text = value.trimmed();
    qsizetype length = 0;
    while (length < text.size() && belongsToNumber(text[length])) ++length;
    QString number = text.first(length);
    // Four characters are what one can read in 16 pixels: a fraction is rounded away first.
    if (number.size() > 4 && number.contains('.')) {
        const QString degrees = number.endsWith(degreeSign) ? QString(degreeSign) : QString();
        number = QString::number(qRound(number.chopped(degrees.size()).toDouble())) + degrees;
    }
    return number.isEmpty() ? text.first(std::min<qsizetype>(text.size(), 4)) : number;
}

QImage readingIcon(const QString& value, int side, bool isOnDark) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const QString text = iconText(value);
    if (text.isEmpty()) return image;

    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(64); // scaled below: one outline serves every size
    font.setWeight(QFont::DemiBold);
    const QPainterPath outline = outlineOf(text, font);
    const QRectF bounds = outline.boundingRect();
    if (bounds.isEmpty()) return image;
    const qreal rim = std::max(1.5, side / 12.0);
    const qreal scale = std::min((side - rim) / bounds.width(), (side - rim) * 0.78 / bounds.height());

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(side / 2.0, side / 2.0);
    painter.scale(scale, scale);
    painter.translate(-bounds.center());
    const QColor ink = isOnDark ? Qt::white : QColor(24, 24, 26);
    QColor halo = isOnDark ? Qt::black : Qt::white;
    halo.setAlphaF(0.7F);
    painter.strokePath(outline, QPen(halo, rim / scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(outline, ink);
    return image;
}

StatusNotifierPixmaps readingIcons(const QString& value, bool isOnDark) {
    StatusNotifierPixmaps pixmaps;
    for (const int side : iconSides) pixmaps.append(statusNotifierPixmap(readingIcon(value, side, isOnDark)));
    return pixmaps;
}

} // namespace kelvinbar
