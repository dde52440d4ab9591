#include "base/AddressMask.h"

#include "base/Text.h"

#include <algorithm>

namespace kelvinbar {

namespace {

constexpr std::size_t fewestDigits = 12;
constexpr std::size_t fewestPairs = 6;

bool isHexDigit(char character) { return hexDigitValue(character) >= 0; }

bool isSeparator(char character) { return character == ':' || character == '-' || character == '_'; }

std::size_t digitsAtStart(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isHexDigit) - text.begin());
}

/// The length of an address of pairs at the start of `text`; 0 without one.
std::size_t lengthOfPairs(std::string_view text) {
    if (digitsAtStart(text) != 2 || text.size() < 3 || !isSeparator(text[2])) return 0;
    const char separator = text[2];
    std::size_t pairs = 1;
    while (text.substr(3 * pairs - 1).starts_with(separator) && digitsAtStart(text.substr(3 * pairs)) == 2) {
        ++pairs;
    }
    return pairs < fewestPairs ? 0 : 3 * pairs - 1;
}

/// The length of an address at the start of `text`; 0 without one.
std::size_t addressLength(std::string_view text) {
    const std::size_t digits = digitsAtStart(text);
    return digits >= fewestDigits ? digits : lengthOfPairs(text);
}

/// Whether an address may follow `character`.
bool mayPrecede(char character) {
    return !isAsciiAlphanumeric(character) || asciiLowercased(character) == 'x';
}

std::string digitsOf(std::string_view address) {
    std::string digits = asciiLowercased(address);
    std::erase_if(digits, isSeparator);
    return digits;
}

} // namespace

std::string AddressMask::masked(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const bool mayBegin = result.empty() || mayPrecede(result.back());
        const std::size_t length = mayBegin ? addressLength(text) : 0;
        if (length > 0) {
            result.append(standIn(text.substr(0, length)));
        } else {
            result.push_back(text.front());
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string AddressMask::standIn(std::string_view address) {
    const std::size_t number = numbers_.try_emplace(digitsOf(address), numbers_.size() + 1).first->second;
    std::string text(address);
    std::ranges::replace_if(text, isHexDigit, 'x');
    std::string digits(number < 10 ? 1 : 0, '0'); // so that masked addresses keep their order
    digits += std::to_string(number);
    for (std::size_t place = text.size(); place > 0 && !digits.empty(); --place) {
        if (text[place - 1] != 'x') continue;
        text[place - 1] = digits.back();
        digits.pop_back();
    }
    return text;
}

} // namespace kelvinbar
