#include "base/NaturalOrder.h"

#include "base/Text.h"

#include <algorithm>
#include <compare>

namespace kelvinbar {

namespace {

/// Removes the run of digits at the start of `text` and returns it without leading zeros.
std::string_view takeDigits(std::string_view& text) {
    std::size_t length = 0;
    while (length < text.size() && isDecimalDigit(text[length])) ++length;
    std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

std::strong_ordering compareByValue(std::string_view leftDigits, std::string_view rightDigits) {
    if (const auto order = leftDigits.size() <=> rightDigits.size(); std::is_neq(order)) return order;
    return leftDigits <=> rightDigits;
}

bool isWithin(char32_t character, char32_t first, char32_t last) {
    return character >= first && character <= last;
}

/// The lower-case form of Latin letters beyond ASCII and of Greek and Cyrillic letters. Other characters are
/// returned unchanged.
char32_t lowercased(char32_t letter) {
    const bool isEven = letter % 2 == 0;
    if (isWithin(letter, U'À', U'Þ') && letter != U'×') return letter + 32;
    if (isWithin(letter, U'Ā', U'Ķ') || isWithin(letter, U'Ŋ', U'Ŷ')) return isEven ? letter + 1 : letter;
    if (isWithin(letter, U'Ĺ', U'Ň') || isWithin(letter, U'Ź', U'Ž')) return isEven ? letter : letter + 1;
    if (isWithin(letter, U'\u0391', U'\u03A9') || isWithin(letter, U'\u0410', U'\u042F')) return letter + 32;
    return isWithin(letter, U'\u0400', U'\u040F') ? letter + 80 : letter;
}

/// The code point of one character. A byte that is not valid UTF-8 has a number above all code points.
char32_t codePoint(std::string_view character) {
    constexpr char32_t afterLast = 0x110000;
    const auto bits = [&](std::size_t index, unsigned mask) {
        return static_cast<char32_t>(static_cast<unsigned char>(character[index]) & mask);
    };
    if (character.size() == 1) return bits(0, 0x80) == 0 ? bits(0, 0x7F) : afterLast + bits(0, 0xFF);
    char32_t result = bits(0, 0xFFU >> (character.size() + 1));
    for (std::size_t index = 1; index < character.size(); ++index)
        result = (result << 6U) | bits(index, 0x3F);
    return result;
}

char32_t takeFoldedCharacter(std::string_view& text) {
    // Fast path: nearly all names are ASCII.
    const bool isAscii = static_cast<unsigned char>(text.front()) < 0x80;
    const std::string_view character = isAscii ? text.substr(0, 1) : firstCharacters(text, 1);
    text.remove_prefix(character.size());
    if (isAscii) return static_cast<unsigned char>(asciiLowercased(character.front()));
    return lowercased(codePoint(character));
}

/// Removes the common start of both texts, which is long for the keys of one chip. Cuts only after an ASCII
/// character other than a digit, so that no number and no character is split.
void dropCommonStart(std::string_view& left, std::string_view& right) {
    const auto [end, ignored] = std::ranges::mismatch(left, right);
    auto length = static_cast<std::size_t>(end - left.begin());
    const auto isWhole = [](char last) {
        return static_cast<unsigned char>(last) < 0x80 && !isDecimalDigit(last);
    };
    while (length > 0 && !isWhole(left[length - 1])) --length;
    left.remove_prefix(length);
    right.remove_prefix(length);
}

} // namespace

bool comesBeforeNaturally(std::string_view left, std::string_view right) {
    dropCommonStart(left, right);
    while (!left.empty() && !right.empty()) {
        std::strong_ordering order = std::strong_ordering::equal;
        if (isDecimalDigit(left.front()) && isDecimalDigit(right.front())) {
            const std::string_view leftDigits = takeDigits(left);
            order = compareByValue(leftDigits, takeDigits(right));
        } else {
            const char32_t leftCharacter = takeFoldedCharacter(left);
            order = leftCharacter <=> takeFoldedCharacter(right);
        }
        if (std::is_neq(order)) return std::is_lt(order);
    }
    return left.empty() && !right.empty();
}

} // namespace kelvinbar
