#include "panel/RoundedFont.h"

#include <QFontDatabase>
#include <algorithm>

namespace kelvinbar {

namespace {

constexpr int noFont = -1;

int fontOf(const QString& file) { return file.isEmpty() ? noFont : QFontDatabase::addApplicationFont(file); }

QString familyOf(int font) {
    return font == noFont ? QString() : QFontDatabase::applicationFontFamilies(font).value(0);
}

/// Where several makers have a family of that name, the toolkit puts the maker's behind it in brackets.
bool isNamed(const QString& installed, const QString& family) {
    return installed.compare(family, Qt::CaseInsensitive) == 0 ||
           installed.startsWith(family + " [", Qt::CaseInsensitive);
}

/// The toolkit has the names of all families since its first font, so asking for them reads no file. Asking
/// for one by one would apply the desktop's substitutions, which name a family that is not installed.
QString firstOfTheBuild() {
    const QString wanted = KELVINBAR_ROUNDED_FONTS;
    return wanted.isEmpty() ? QString() : firstInstalled(wanted.split(','), QFontDatabase::families());
}

} // namespace

QString firstInstalled(const QStringList& wanted, const QStringList& installed) {
    const auto isInstalled = [&installed](const QString& family) {
        return std::any_of(installed.begin(), installed.end(),
                           [&family](const QString& other) { return isNamed(other, family); });
    };
    const auto found = std::find_if(wanted.begin(), wanted.end(), isInstalled);
    return found == wanted.end() ? QString() : *found;
}

RoundedFont::RoundedFont(const QString& file) : fontOfFile_(fontOf(file)), family_(familyOf(fontOfFile_)) {
    if (family_.isEmpty()) family_ = firstOfTheBuild();
}

RoundedFont::~RoundedFont() {
    if (fontOfFile_ != noFont) QFontDatabase::removeApplicationFont(fontOfFile_);
}

} // namespace kelvinbar
