#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Helpers for UTF-8 text. A "character" is a code point; a byte that belongs to no well-formed sequence
/// counts as one character, so that every function ends on any bytes.
namespace kelvinbar {

/// Whether `text` is well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool isValidUtf8(std::string_view text);

std::size_t characterCount(std::string_view text);

/// The first `count` characters of `text`; all of it when it has fewer.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// `text` without its last character; empty stays empty.
std::string_view withoutLastCharacter(std::string_view text);

/// `text` without the characters of Unicode's White_Space set at both ends (line ends are among them).
std::string_view trimmed(std::string_view text);

/// `text` with A to Z lower-cased. Enough wherever the other side of a comparison is ASCII.
std::string asciiLowercased(std::string_view text);

inline char asciiLowercased(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

inline bool isDecimalDigit(char character) { return character >= '0' && character <= '9'; }

/// The value of a hex digit of either case, or -1.
int hexDigitValue(char character);

inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// `text` with every occurrence of `from` replaced by `to`, in one pass from the left. `from` is not empty.
std::string replacedAll(std::string_view text, std::string_view from, std::string_view to);

} // namespace kelvinbar
