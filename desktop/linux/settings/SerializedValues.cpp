#include "desktop/linux/settings/SerializedValues.h"

#include <QRegularExpression>
#include <QString>

namespace kelvinbar {

namespace {

/// The character of an escape sequence in hexadecimal or octal digits; null for others, which stand for none
/// of the characters that matter here. QSettings keeps the lowest 16 bits.
char16_t escapedCharacter(const QRegularExpressionMatch& escape) {
    const QString hexadecimal = escape.captured("hexadecimal").right(4);
    const QString octal = escape.captured("octal").right(6);
    return static_cast<char16_t>(hexadecimal.isEmpty() ? octal.toUInt(nullptr, 8)
                                                       : hexadecimal.toUInt(nullptr, 16));
}

QString withoutEscapes(const QString& text) {
    static const QRegularExpression escapes(R"(\\(?:x(?<hexadecimal>[0-9A-Fa-f]*)|(?<octal>[0-7]+)|.))",
                                            QRegularExpression::DotMatchesEverythingOption);
    QString plain;
    qsizetype end = 0;
    for (auto escape = escapes.globalMatch(text); escape.hasNext();) {
        const QRegularExpressionMatch match = escape.next();
        plain.append(QStringView(text).mid(end, match.capturedStart() - end));
        plain.append(QChar(escapedCharacter(match)));
        end = match.capturedEnd();
    }
    return plain.append(QStringView(text).mid(end));
}

} // namespace

bool holdsSerializedValues(const QByteArray& text) {
    // QSettings skips quotes, blanks and what it cannot decode. A value begins after "=" or ",".
    static const QRegularExpression skipped("[^A-Za-z@(=,]");
    static const QRegularExpression serialized(R"((?<!@)@(?:Variant|DateTime)\()");
    return withoutEscapes(QString::fromLatin1(text)).remove(skipped).contains(serialized);
}

} // namespace kelvinbar
