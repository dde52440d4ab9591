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

/// Free keys that have a name in the catalogue.
class FreeKeys {
  public:
    explicit FreeKeys(const std::function<bool(const std::string&)>& isFree) : isFree_(isFree) {}

    [[nodiscard]] bool contains(const std::string& key) const {
        return isFree_(key) && SMCKeyDatabase::hwMonitorDefinition(key);
    }

    /// The first free key with one of `candidates` at `place`.
    [[nodiscard]] std::optional<std::string> first(std::string key, std::size_t place,
                                                   std::string_view candidates) const {
        const auto* const found = std::ranges::find_if(candidates, [&](char candidate) {
            key[place] = candidate;
            return contains(key);
        });
        return found == candidates.end() ? std::nullopt : std::optional(std::move(key));
    }

    /// The first free key with a pair of characters at `place`, unless the catalogue's table has it.
    [[nodiscard]] std::optional<std::string> firstPair(std::string key, std::size_t place) const {
        for (const char first : digitsAndLetters) {
            for (const char second : digitsAndLetters) {
                key[place] = first;
                key[place + 1] = second;
                if (!SMCKeyDatabase::byKey().contains(key) && contains(key)) return key;
            }
        }
        return std::nullopt;
    }

  private:
    const std::function<bool(const std::string&)>& isFree_;
};

} // namespace

std::optional<std::string> keyByPattern(std::string_view pattern, const KeyDigits& digits,
                                        const std::function<bool(const std::string&)>& isFree) {
    auto key = withDigits(pattern, digits);
    if (!key) return std::nullopt;
    const FreeKeys freeKeys(isFree);
    if (const std::size_t pair = key->find("++"); pair != std::string::npos) {
        return freeKeys.firstPair(*std::move(key), pair);
    }
    if (const std::size_t place = key->find_first_of("+^"); place != std::string::npos) {
        const std::size_t first = (*key)[place] == '^' ? 1 : 0;
        return freeKeys.first(*std::move(key), place, hexDigits.substr(first));
    }
    if (const std::size_t place = key->find('~'); place != std::string::npos) {
        return freeKeys.first(*std::move(key), place, otherLetters);
    }
    return freeKeys.contains(*key) ? key : std::nullopt;
}

} // namespace kelvinbar
