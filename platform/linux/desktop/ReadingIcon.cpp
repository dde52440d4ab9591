#include "platform/linux/desktop/ReadingIcon.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace kelvinbar {

namespace {

constexpr QChar degreeSign(0x00B0);

bool belongsToNumber(QChar character) {
    return character.isDigit() || character == '.' || character == '-' || character == degreeSign;
}

QFont iconFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(64); // scaled to the icon: one outline serves every size
    font.setWeight(QFont::DemiBold);
    return font;
}

/// The text with an eight for each digit: all numbers of one form have one layout.
QString formOf(QString text) {
    std::ranges::replace_if(
        text, [](QChar character) { return character.isDigit(); }, QChar('8'));
    return text;
}

/// The outline of the character at `place` of a text of that form, in the middle of its cell.
QPainterPath letterOutline(const QString& form, qsizetype place, QChar character, const QFont& font) {
    const QFontMetricsF metrics(font);
    const qreal cell = metrics.horizontalAdvance(form[place]);
    const qreal start = metrics.horizontalAdvance(form.first(place));
    QPainterPath path;
    path.addText(start + (cell - metrics.horizontalAdvance(character)) / 2, 0, font, QString(character));
    return path;
}

/// The width of the rim around the letters, in pixels.
qreal rimOf(int side) { return std::max(1.0, side / 20.0); }

/// Brings a text of that form into the middle of an icon, as large as fits.
QTransform placement(const QString& form, int side, const QFont& font) {
    QPainterPath outline;
    outline.addText(0, 0, font, form);
    const QRectF bounds = outline.boundingRect();
    const qreal room = side - 2 * rimOf(side);
    const qreal scale = std::min(room / bounds.width(), room * 0.8 / bounds.height());
    return QTransform::fromTranslate(side / 2.0, side / 2.0)
        .scale(scale, scale)
        .translate(-bounds.center().x(), -bounds.center().y());
}

QImage drawnLetter(const QString& form, int side, qsizetype place, QChar character) {
    const QFont font = iconFont();
    QImage mask(side, side, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(placement(form, side, font));
    painter.fillPath(letterOutline(form, place, character, font), Qt::black);
    return mask;
}

void addCoverage(QImage& sum, const QImage& letter) {
    for (int y = 0; y < sum.height(); ++y) {
        const uchar* const from = letter.constScanLine(y);
        uchar* const to = sum.scanLine(y);
        for (int x = 0; x < sum.width(); ++x) to[x] = std::max(to[x], from[x]);
    }
}

/// How strongly the rim covers a pixel: the strongest letter within the rim's width, weaker at its edge.
int rimAround(const QImage& letters, int x, int y, qreal rim) {
    const int reach = static_cast<int>(std::ceil(rim));
    int strongest = 0;
    for (int dy = std::max(-reach, -y); dy <= std::min(reach, letters.height() - 1 - y); ++dy) {
        const uchar* const line = letters.constScanLine(y + dy);
        for (int dx = std::max(-reach, -x); dx <= std::min(reach, letters.width() - 1 - x); ++dx) {
            const qreal nearness = std::clamp(rim + 0.5 - std::hypot(dx, dy), 0.0, 1.0);
            strongest = std::max(strongest, static_cast<int>(line[x + dx] * nearness));
        }
    }
    return strongest;
}

/// The letters over their rim.
QImage composed(const QImage& letters, bool isOnDark) {
    constexpr int strengthOfRim = 190; // of 255
    const int inkLevel = isOnDark ? 255 : 24;
    const int rimLevel = isOnDark ? 0 : 255;
    const int side = letters.width();
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y) {
        const uchar* const inks = letters.constScanLine(y);
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const int front = inks[x];
            const int rim = front == 255 ? 0 : rimAround(letters, x, y, rimOf(side)) * strengthOfRim / 255;
            const int back = rim * (255 - front) / 255;
            const int alpha = front + back;
            const int level = alpha == 0 ? 0 : (inkLevel * front + rimLevel * back) / alpha;
            pixels[x] = qRgba(level, level, level, alpha);
        }
    }
    return image;
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

const QImage& ReadingIcons::letter(const QString& text, int side, qsizetype place) {
    // What was drawn for texts of other forms is not needed again soon.
    constexpr std::size_t mostLetters = 400;
    if (letters_.size() > mostLetters) letters_.clear();
    const QString form = formOf(text);
    const LetterKey key(form, side, place, text[place]);
    const auto known = letters_.find(key);
    if (known != letters_.end()) return known->second;
    return letters_.emplace(key, drawnLetter(form, side, place, text[place])).first->second;
}

QImage ReadingIcons::icon(const QString& value, int side) {
    const QString text = iconText(value);
    QImage letters(side, side, QImage::Format_Alpha8);
    letters.fill(0);
    for (qsizetype place = 0; place < text.size(); ++place) addCoverage(letters, letter(text, side, place));
    return composed(letters, isOnDark_);
}

StatusNotifierPixmaps ReadingIcons::pixmaps(const QString& value) {
    StatusNotifierPixmaps pixmaps;
    for (const int side : iconSides) pixmaps.append(statusNotifierPixmap(icon(value, side)));
    return pixmaps;
}

} // namespace kelvinbar
