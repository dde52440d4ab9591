#include "panel/DigitsText.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

struct Run {
    double x;
    QString text;
};

struct Line {
    std::vector<Run> runs;
    double width = 0;
};

double digitWidth(const QFontMetricsF& metrics) {
    double width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        width = std::max(width, metrics.horizontalAdvance(QChar(digit)));
    }
    return width;
}

bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

/// Centres each digit in its cell; draws the text between digits as it is.
Line laidOutLine(const QString& text, const QFontMetricsF& metrics) {
    const double place = digitWidth(metrics);
    Line line;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start + 1;
        const bool startsWithDigit = isDigit(text[start]);
        while (!startsWithDigit && end < text.size() && !isDigit(text[end])) ++end;
        const QString run = text.mid(start, end - start);
        const double advance = metrics.horizontalAdvance(run);
        line.runs.push_back({line.width + (startsWithDigit ? (place - advance) / 2 : 0), run});
        line.width += startsWithDigit ? place : advance;
        start = end;
    }
    return line;
}

} // namespace

void DigitsText::setText(const QString& text) {
    if (assign(text_, text, &DigitsText::textChanged)) measure();
}

void DigitsText::setFont(const QFont& font) {
    if (assign(font_, font, &DigitsText::fontChanged)) measure();
}

void DigitsText::measure() {
    const QFontMetricsF metrics(font_);
    setImplicitSize(std::ceil(laidOutLine(text_, metrics).width), std::ceil(metrics.height()));
}

std::function<void(QPainter&)> DigitsText::painting() const {
    const QFontMetricsF metrics(font_);
    const double baseline = (height() - metrics.height()) / 2 + metrics.ascent();
    Line line = laidOutLine(text_, metrics);
    if (line.width > width()) line = laidOutLine(metrics.elidedText(text_, Qt::ElideRight, width()), metrics);
    const double left = isCentered_ ? (width() - line.width) / 2 : 0;
    return [line = std::move(line), left, baseline, font = font_, color = color_](QPainter& painter) {
        painter.setFont(font);
        painter.setPen(color);
        for (const Run& run : line.runs) painter.drawText(QPointF(left + run.x, baseline), run.text);
    };
}

} // namespace kelvinbar
