#pragma once

#include "desktop/linux/tray/StatusNotifierTypes.h"

#include <QImage>
#include <QString>
#include <array>
#include <map>
#include <tuple>

namespace kelvinbar {

/// Icon sizes that hosts request, in pixels, on screens of normal and high density.
inline constexpr std::array iconSides{16, 22, 24, 32, 48};

/// The part of a compact value that fits into an icon: "1200" of "1200rpm", "50°" of "49.80°". Empty if the
/// value does not begin with a number.
QString iconText(const QString& value);

/// Draws readings as square icons, for hosts that show no text. The number is as large as possible, with
/// digits of equal width, in a text colour for the panel and an outline in the opposite one, so that it stays
/// legible on any background. Drawn glyphs are cached, so a number that changes every second only costs
/// copying. Main thread.
class ReadingIcons {
  public:
    explicit ReadingIcons(bool isOnDark) : isOnDark_(isOnDark) {}

    /// `value` is the compact form of a reading, such as "48°" or "1200rpm"; `side` is in pixels. Transparent
    /// if `value` does not begin with a number.
    QImage icon(const QString& value, int side);

    /// The icon in each of `iconSides`.
    StatusNotifierPixmaps pixmaps(const QString& value);

  private:
    /// The text with all digits replaced by 8, the side of the icon, the position in the text, the character.
    using LetterKey = std::tuple<QString, int, qsizetype, QChar>;

    const QImage& letter(const QString& text, int side, qsizetype place);

    bool isOnDark_;
    std::map<LetterKey, QImage> letters_;
};

} // namespace kelvinbar
