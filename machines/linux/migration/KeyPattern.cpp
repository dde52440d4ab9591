#include "machines/linux/migration/KeyPattern.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"

#include <algorithm>

namespace kelvinbar {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::string_view otherLetters = "GHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view digitsAndLetters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::optional<char> hexDigit(std::optional<int> number) {
    const bool isDigit = number && *number >= 0 && *number < static_cast<int>(hexDigits.size());
    return isDigit ? std::optional(hexDigits[static_cast<std::size_t>(*number)]) : std::nullopt;
}

/// Returns the digit for a placeholder, or the character itself. Nothing when the number has no digit.
std::optional<char> resolved(char character, const KeyDigits& digits) {
    switch (character) {
    case '@':
        return hexDigit(digits.chipIndex);
    case '=':
        return hexDigit(digits.labelNumber);
    case '#':
        return hexDigit(digits.channelNumber);
    case '%':
        return hexDigit(digits.channelNumber - 1);
    default:
        return character;
    }
}

std::optional<std::string> withDigits(std::string_view pattern, const KeyDigits& digits) {
    std::string key;
    for (const char character : pattern) {
        const auto digit = resolved(character, digits);
        if (!digit) return std::nullopt;
        key += *digit;
    }
    return key;
}

/// A pattern whose digits are resolved, and the keys that match it.
class Candidates {
  public:
    explicit Candidates(const std::string& pattern) : pattern_(pattern) {
        place_ = pattern.find_first_of("+^~");
        if (place_ == std::string::npos) return;
        isPair_ = pattern.substr(place_).starts_with("++");
        letters_ = isPair_                  ? digitsAndLetters
                   : pattern[place_] == '~' ? otherLetters
                   : pattern[place_] == '^' ? hexDigits.substr(1)
                                            : hexDigits;
    }

    [[nodiscard]] std::size_t size() const {
        return isPair_ ? letters_.size() * letters_.size() : std::max<std::size_t>(letters_.size(), 1);
    }

    [[nodiscard]] std::string at(std::size_t index) const {
        std::string key = pattern_;
        if (isPair_) {
            key[place_] = letters_[index / letters_.size()];
            key[place_ + 1] = letters_[index % letters_.size()];
        } else if (!letters_.empty()) {
            key[place_] = letters_[index];
        }
        return key;
    }

    /// Whether the catalogue has a name for the key. Pairs are for keys that its table does not have.
    [[nodiscard]] bool isNamed(const std::string& key) const {
        return !(isPair_ && SMCKeyDatabase::byKey().contains(key)) &&
               SMCKeyDatabase::hwMonitorDefinition(key);
    }

  private:
    const std::string& pattern_;
    std::size_t place_ = std::string::npos; ///< of the first placeholder
    std::string_view letters_;              ///< that replace a placeholder; empty without one
    bool isPair_ = false;
};

} // namespace

std::optional<std::string> KeySearch::find(std::string_view pattern, const KeyDigits& digits) {
    const auto resolvedPattern = withDigits(pattern, digits);
    if (!resolvedPattern) return std::nullopt;
    const Candidates candidates(*resolvedPattern);
    for (auto& index = firstOpen_[*resolvedPattern]; index < candidates.size(); ++index) {
        std::string key = candidates.at(index);
        if (isFree_(key) && candidates.isNamed(key)) return key;
    }
    return std::nullopt;
}

} // namespace kelvinbar
