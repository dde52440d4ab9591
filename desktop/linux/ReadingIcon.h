#pragma once

#include "desktop/linux/StatusNotifierTypes.h"

#include <QImage>
#include <QString>
#include <array>
#include <map>
#include <tuple>

namespace kelvinbar {

/// The sides, in pixels, that hosts ask icons for, on plain and on dense screens.
inline constexpr std::array iconSides{16, 22, 24, 32, 48};

/// What of a compact value fits into an icon: "1200rpm" is "1200", "49.80°" is "50°"; empty for a word.
QString iconText(const QString& value);

/// Draws readings as square icons, for hosts that show no text: the number as large as fits, its digits of
/// one width, in the colour of text on the desktop's panels with a rim that keeps it legible on the opposite
/// one. Letters are drawn once and kept: a number that changes every second costs no more than copying them.
class ReadingIcons {
  public:
    explicit ReadingIcons(bool isOnDark) : isOnDark_(isOnDark) {}

    /// `value` is the compact form of a reading, such as "48°" or "1200rpm". Transparent for no value.
    QImage icon(const QString& value, int side);

    /// One for each side.
    StatusNotifierPixmaps pixmaps(const QString& value);

  private:
    /// The form of a text, with an eight for each digit; the side of the icon; a place in the text; a
    /// character.
    using LetterKey = std::tuple<QString, int, qsizetype, QChar>;

    const QImage& letter(const QString& text, int side, qsizetype place);

    bool isOnDark_;
    std::map<LetterKey, QImage> letters_;
};

} // namespace kelvinbar
