#include "desktop/linux/tray/ReadingIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>

namespace kelvinbar {

namespace {

constexpr QChar degreeSign(0x00B0);

bool belongsToNumber(QChar character) {
    return character.isDigit() || character == '.' || character == '-' || character == degreeSign;
}

/// Glyphs are drawn as strokes on a grid 8 units high, so that no font engine is loaded for a few characters.
constexpr qreal strokeWidth = 1.3;

qreal cellWidth(QChar character) {
    if (character == '.') return 1.9;
    if (character == '-') return 3.5;
    return character == degreeSign ? 3.2 : 5;
}

/// Strokes of the digits: M moves, L draws a line, C a cubic curve, E an ellipse in a rectangle.
constexpr std::array digitStrokes{
    "E .8 .7 3.4 6.6",
    "M 1.2 2.2 L 2.9 .7 L 2.9 7.3",
    "M .8 2.4 C .9 1.3 1.6 .7 2.5 .7 C 3.5 .7 4.2 1.4 4.2 2.4 C 4.2 4.2 1.6 5 .9 7.3 L 4.3 7.3",
    "M .9 1.7 C 1.3 1 1.9 .7 2.5 .7 C 3.5 .7 4.1 1.4 4.1 2.3 C 4.1 3.3 3.4 3.8 2.3 3.8 "
    "C 3.6 3.8 4.3 4.6 4.3 5.6 C 4.3 6.6 3.5 7.3 2.5 7.3 C 1.7 7.3 1.1 6.9 .7 6.2",
    "M 3.5 7.3 L 3.5 .7 L .7 5.3 L 4.5 5.3",
    "M 4 .7 L 1.3 .7 L 1 3.7 C 1.5 3.3 2 3.1 2.5 3.1 C 3.6 3.1 4.3 4 4.3 5.2 C 4.3 6.4 3.5 7.3 2.5 7.3 "
    "C 1.7 7.3 1.1 6.9 .7 6.3",
    "M 3.9 1.2 C 3.5 .9 3.1 .7 2.7 .7 C 1.4 .7 .8 2.4 .8 5.2 E .8 3.3 3.4 4",
    "M .7 .7 L 4.3 .7 L 2 7.3",
    "E 1 .7 3 3 E .8 3.7 3.4 3.6",
    "E .8 .7 3.4 4 M 4.2 2.8 C 4.2 5.6 3.6 7.3 2.3 7.3 C 1.9 7.3 1.5 7.1 1.1 6.8",
};

/// Parses the numbers of a stroke.
class Strokes {
  public:
    explicit Strokes(const char* text) : words_(QString::fromLatin1(text).split(' ')) {}

    QPainterPath path() {
        QPainterPath path;
        while (next_ < words_.size()) append(path, words_[next_++][0].toLatin1());
        return path;
    }

  private:
    void append(QPainterPath& path, char command) {
        if (command == 'M') return path.moveTo(point());
        if (command == 'L') return path.lineTo(point());
        const QPointF first = point();
        const QPointF second = point();
        if (command == 'E') return path.addEllipse({first, QSizeF(second.x(), second.y())});
        path.cubicTo(first, second, point());
    }

    QPointF point() {
        const qreal x = words_[next_++].toDouble();
        return {x, words_[next_++].toDouble()};
    }

    QStringList words_;
    qsizetype next_ = 0;
};

QPainterPath strokesOf(QChar character) {
    if (character.isDigit())
        return Strokes(digitStrokes.at(static_cast<std::size_t>(character.digitValue()))).path();
    if (character == '.') return Strokes("M .95 7.2 L .96 7.2").path();
    if (character == '-') return Strokes("M .8 4.3 L 2.7 4.3").path();
    return Strokes("E .7 .7 1.8 1.8").path();
}

qreal widthOf(const QString& text) {
    qreal width = 0;
    for (const QChar character : text) width += cellWidth(character);
    return width;
}

/// The width of the outline around the glyphs, in pixels.
qreal rimOf(int side) { return std::max(1.0, side / 20.0); }

/// The text with all digits replaced by 8. Texts of the same form have the same layout.
QString formOf(QString text) {
    std::ranges::replace_if(text, [](QChar character) { return character.isDigit(); }, QChar('8'));
    return text;
}

/// Maps the glyph at the position `place` of `text` to its position in the icon. The text is centred and as
/// large as possible.
QTransform placement(const QString& text, qsizetype place, int side) {
    constexpr qreal height = 8;
    const qreal room = side - 2 * rimOf(side);
    const qreal scale = std::min(room / widthOf(text), room * 0.8 / height);
    return QTransform::fromTranslate(side / 2.0, side / 2.0)
        .scale(scale, scale)
        .translate(widthOf(text.first(place)) - widthOf(text) / 2, -height / 2);
}

QImage drawnLetter(const QString& text, int side, qsizetype place) {
    QImage mask(side, side, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(placement(text, place, side));
    painter.strokePath(strokesOf(text[place]),
                       QPen(Qt::black, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return mask;
}

void addCoverage(QImage& sum, const QImage& letter) {
    for (int y = 0; y < sum.height(); ++y) {
        const uchar* const from = letter.constScanLine(y);
        uchar* const to = sum.scanLine(y);
        for (int x = 0; x < sum.width(); ++x) to[x] = std::max(to[x], from[x]);
    }
}

/// The outline's coverage of a pixel: the strongest coverage of a glyph within the outline's width, fading at
/// its edge.
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

/// The glyphs over their outline.
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
    // No more than four characters are legible in 16 pixels. Drop the fraction if there are more.
    if (number.size() > 4 && number.contains('.')) {
        const QString degrees = number.endsWith(degreeSign) ? QString(degreeSign) : QString();
        number = QString::number(qRound(number.chopped(degrees.size()).toDouble())) + degrees;
    }
    return number;
}

const QImage& ReadingIcons::letter(const QString& text, int side, qsizetype place) {
    // Glyphs of texts of another form are not needed again soon.
    constexpr std::size_t mostLetters = 400;
    if (letters_.size() > mostLetters) letters_.clear();
    const QString form = formOf(text);
    const LetterKey key(form, side, place, text[place]);
    const auto known = letters_.find(key);
    if (known != letters_.end()) return known->second;
    return letters_.emplace(key, drawnLetter(text, side, place)).first->second;
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
