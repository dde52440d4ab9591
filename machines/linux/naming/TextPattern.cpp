#include "machines/linux/naming/TextPattern.h"

#include "base/Text.h"

namespace kelvinbar {

namespace {

/// Matches one alternative. Tries every length for each "*", which is fast enough for names this short.
bool fitsAlternative(std::string_view pattern, std::string_view text) {
    if (pattern.empty()) return text.empty();
    if (pattern.front() == '*') {
        for (std::size_t skipped = 0; skipped <= text.size(); ++skipped) {
            if (fitsAlternative(pattern.substr(1), text.substr(skipped))) return true;
        }
        return false;
    }
    if (text.empty()) return false;
    if (pattern.front() == '?') {
        return fitsAlternative(pattern.substr(1), text.substr(firstCharacters(text, 1).size()));
    }
    const bool isSame = asciiLowercased(pattern.front()) == asciiLowercased(text.front());
    return isSame && fitsAlternative(pattern.substr(1), text.substr(1));
}

} // namespace

bool fitsPattern(std::string_view pattern, std::string_view text) {
    return fitsAnyAlternative(
        pattern, [text](std::string_view alternative) { return fitsAlternative(alternative, text); });
}

} // namespace kelvinbar
