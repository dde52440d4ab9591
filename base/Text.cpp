#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kelvinbar {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// The character at the start of a text and its length in bytes. The length is 0 if it is ill-formed.
struct Decoded {
    char32_t codePoint = 0;
    std::size_t length = 0;
};

/// The length in bytes of a sequence that starts with `lead`; 0 if none does.
std::size_t announcedLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

/// `text` must not be empty.
Decoded decodeFront(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = announcedLength(lead);
    if (length == 1) return {lead, 1};
    if (length == 0 || text.size() < length) return {};
    char32_t codePoint = lead & (0x7FU >> length);
    for (const char byte : text.substr(1, length - 1)) {
        if (!isContinuation(byte)) return {};
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    // A longer sequence than necessary could hide a character from checks of its bytes.
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < smallest.at(length) || surrogate || codePoint > 0x10FFFF) return {};
    return {codePoint, length};
}

std::size_t frontLength(std::string_view text) { return std::max<std::size_t>(decodeFront(text).length, 1); }

/// The length in bytes of the last character of `text`, which must not be empty.
std::size_t backLength(std::string_view text) {
    std::size_t length = 1;
    while (length < 4 && length < text.size() && isContinuation(text[text.size() - length])) ++length;
    const std::string_view tail = text.substr(text.size() - length);
    return decodeFront(tail).length == length ? length : 1;
}

/// The characters with Unicode's White_Space property.
bool isWhiteSpace(char32_t codePoint) {
    return (codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x20 || codePoint == 0x85 ||
           codePoint == 0xA0 || codePoint == 0x1680 || (codePoint >= 0x2000 && codePoint <= 0x200A) ||
           codePoint == 0x2028 || codePoint == 0x2029 || codePoint == 0x202F || codePoint == 0x205F ||
           codePoint == 0x3000;
}

/// The blocks of scripts that run from right to left: Hebrew to Arabic Extended-A, their presentation forms,
/// and the two ranges beyond U+FFFF that Unicode sets aside for such scripts.
bool isRightToLeft(char32_t codePoint) {
    return (codePoint >= 0x590 && codePoint <= 0x8FF) || (codePoint >= 0xFB1D && codePoint <= 0xFDFF) ||
           (codePoint >= 0xFE70 && codePoint <= 0xFEFC) || (codePoint >= 0x10800 && codePoint <= 0x10FFF) ||
           (codePoint >= 0x1E800 && codePoint <= 0x1EFFF);
}

bool containsRightToLeft(std::string_view text) {
    while (!text.empty()) {
        if (isRightToLeft(decodeFront(text).codePoint)) return true;
        text.remove_prefix(frontLength(text));
    }
    return false;
}

bool startsWithWhiteSpace(std::string_view text) {
    const Decoded front = decodeFront(text);
    return front.length != 0 && isWhiteSpace(front.codePoint);
}

} // namespace

bool isValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = decodeFront(text).length;
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string directionIsolated(std::string_view text) {
    if (!containsRightToLeft(text)) return std::string(text);
    // NOLINTNEXTLINE(misc-misleading-bidirectional): the second literal ends what the first begins
    return "\u2068" + std::string(text) + "\u2069";
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count) text.remove_prefix(frontLength(text));
    return count;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    std::string_view rest = text;
    for (; count > 0 && !rest.empty(); --count) rest.remove_prefix(frontLength(rest));
    return text.substr(0, text.size() - rest.size());
}

std::string_view withoutLastCharacter(std::string_view text) {
    if (!text.empty()) text.remove_suffix(backLength(text));
    return text;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && startsWithWhiteSpace(text)) text.remove_prefix(frontLength(text));
    while (!text.empty() && startsWithWhiteSpace(text.substr(text.size() - backLength(text)))) {
        text.remove_suffix(backLength(text));
    }
    return text;
}

std::string asciiLowercased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return asciiLowercased(c); });
    return lower;
}

bool isDecimalDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isDecimalDigit);
}

int hexDigitValue(char character) {
    if (isDecimalDigit(character)) return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

std::string replacedAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    for (std::size_t at = text.find(from); at != std::string_view::npos; at = text.find(from)) {
        result.append(text.substr(0, at)).append(to);
        text.remove_prefix(at + from.size());
    }
    return result.append(text);
}

} // namespace kelvinbar
