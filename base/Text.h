#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Helpers for UTF-8 text. A "character" is a code point. Text from hardware can contain anything, so every
/// function accepts any bytes: a byte that is not part of a well-formed sequence counts as one character.
///
/// Functions that return a view return a part of their argument, which must outlive the result. Case
/// functions change ASCII letters only. Pure functions; any thread.
namespace kelvinbar {

/// Whether `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

/// The number of characters, not of bytes: 2 for "°C". Takes time in proportion to the length.
std::size_t characterCount(std::string_view text);

/// The first `count` characters of `text`, or all of it if it has fewer.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// `text` without its last character. An empty text stays empty.
std::string_view withoutLastCharacter(std::string_view text);

/// `text` without white space at both ends: all characters with Unicode's White_Space property, such as line
/// ends and no-break spaces.
std::string_view trimmed(std::string_view text);

/// `text` for a place between other words: a text with letters that run from right to left, such as Hebrew
/// and Arabic, between U+2068 and U+2069, so that the words and numbers around it keep their order. Others as
/// they are.
std::string directionIsolated(std::string_view text);

/// `text` with A to Z in lower case. Sufficient for comparisons with ASCII words.
std::string asciiLowercased(std::string_view text);

inline char asciiLowercased(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// '0' to '9' only. Unlike std::isdigit, defined for every char.
inline bool isDecimalDigit(char character) { return character >= '0' && character <= '9'; }

/// One decimal digit or more, and nothing else.
bool isDecimalDigits(std::string_view text);

/// 'A' to 'Z', 'a' to 'z' and '0' to '9' only.
inline bool isAsciiAlphanumeric(char character) {
    const char lower = asciiLowercased(character);
    return isDecimalDigit(character) || (lower >= 'a' && lower <= 'z');
}

/// The value of a hexadecimal digit in upper or lower case; -1 for any other character.
int hexDigitValue(char character);

inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// `text` with every occurrence of `from` replaced by `to`, from left to right. Replacements are not searched
/// again. `from` must not be empty.
std::string replacedAll(std::string_view text, std::string_view from, std::string_view to);

} // namespace kelvinbar
