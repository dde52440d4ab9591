#pragma once

#include <QString>
#include <QStringList>

namespace kelvinbar {

/// The font for headings and values: one with round ends of strokes. Digits need not be tabular, since
/// DigitsText aligns them. Main thread.
class RoundedFont {
  public:
    /// The font in `file`, as long as this object lives. An empty name, or a file without a font, means the
    /// first of the families that the build names, most wanted first, and that are installed.
    explicit RoundedFont(const QString& file);
    RoundedFont(const RoundedFont&) = delete;
    RoundedFont& operator=(const RoundedFont&) = delete;
    ~RoundedFont();

    /// Empty if there is no such font.
    [[nodiscard]] const QString& family() const { return family_; }

  private:
    int fontOfFile_; ///< its number in the toolkit; -1 for none
    QString family_;
};

/// The first of the wanted families that is among those installed, in any case; empty without one.
QString firstInstalled(const QStringList& wanted, const QStringList& installed);

} // namespace kelvinbar
