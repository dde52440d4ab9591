#include "machines/linux/naming/NameText.h"

#include "base/Text.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kelvinbar {

namespace {

/// The code point of a well-formed character. U+FFFF for four bytes, because no range below contains one.
std::uint32_t codePoint(std::string_view character) {
    if (character.size() == 1) return static_cast<unsigned char>(character.front());
    if (character.size() > 3) return 0xFFFF;
    const std::uint32_t lead = character.size() == 2 ? 0x1FU : 0x0FU;
    std::uint32_t code = static_cast<unsigned char>(character.front()) & lead;
    for (const char byte : character.substr(1))
        code = (code << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    return code;
}

struct CodeRange {
    std::uint32_t first;
    std::uint32_t last;
};

/// Control characters, and formatting characters that join, break or reorder text.
constexpr std::array invisibleRanges{CodeRange{0x00, 0x1F},     CodeRange{0x7F, 0x9F},
                                     CodeRange{0x200B, 0x200F}, CodeRange{0x2028, 0x202E},
                                     CodeRange{0x2060, 0x206F}, CodeRange{0xFEFF, 0xFEFF}};

bool isInvisible(std::string_view character) {
    const std::uint32_t code = codePoint(character);
    return std::ranges::any_of(invisibleRanges, [code](const CodeRange& range) {
        return range.first <= code && code <= range.last;
    });
}

void appendCharacter(std::string& cleaned, std::string_view character) {
    if (!isValidUtf8(character)) return;
    if (!isInvisible(character) && !trimmed(character).empty()) {
        cleaned.append(character);
    } else if (!cleaned.empty() && cleaned.back() != ' ') {
        cleaned += ' ';
    }
}

std::string withoutFillers(std::string_view model) {
    std::string kept;
    while (!model.empty()) {
        const std::string_view word = model.substr(0, model.find(' '));
        if (!fitsPattern("SSD|NVMe|M.2|PCIe*|HDD|Series|Solid|State|Drive", word)) kept = joined(kept, word);
        model.remove_prefix(std::min(word.size() + 1, model.size()));
    }
    return kept;
}

} // namespace

std::string cleanedText(std::string_view text) {
    std::string cleaned;
    while (!text.empty()) {
        const std::string_view character = firstCharacters(text, 1);
        appendCharacter(cleaned, character);
        text.remove_prefix(character.size());
    }
    return std::string(trimmed(cleaned));
}

std::optional<std::string> lastNumber(std::string_view text) {
    while (!text.empty() && !isDecimalDigit(text.back())) text.remove_suffix(1);
    std::size_t start = text.size();
    while (start > 0 && isDecimalDigit(text[start - 1])) --start;
    text.remove_prefix(start);
    if (text.empty()) return std::nullopt;
    while (text.size() > 1 && text.front() == '0') text.remove_prefix(1);
    return std::string(text);
}

bool beginsWithWords(std::string_view text, std::string_view words) {
    if (asciiLowercased(text.substr(0, words.size())) != asciiLowercased(words)) return false;
    return !words.empty() && (text.size() == words.size() || text[words.size()] == ' ');
}

std::string shortenedModel(std::string_view model, std::size_t most) {
    if (characterCount(model) <= most) return std::string(model);
    std::string shorter = withoutFillers(model);
    while (characterCount(shorter) > most && contains(shorter, " ")) shorter.resize(shorter.rfind(' '));
    return cutText(shorter, most);
}

std::string cutText(std::string_view text, std::size_t most) {
    if (characterCount(text) <= most) return std::string(text);
    if (most == 0) return {};
    return std::string(trimmed(firstCharacters(text, most - 1))).append("…");
}

std::string joined(std::string_view left, std::string_view right) {
    std::string text(left);
    if (!left.empty() && !right.empty()) text += ' ';
    return text.append(right);
}

} // namespace kelvinbar
