#include "tools/PrintedText.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>

namespace kelvinbar {

namespace {

bool isControlCharacter(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    // U+0080 to U+009F, which terminals may take for escape sequences.
    return character.size() == 2 && first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

std::string gap(std::string_view text, std::size_t width) {
    std::string spaces;
    spaces.resize(width - std::min(width, characterCount(text)), ' ');
    return spaces;
}

} // namespace

std::string printableText(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    while (!text.empty()) {
        const std::string_view character = firstCharacters(text, 1);
        const bool isPrintable = isValidUtf8(character) && !isControlCharacter(character);
        printable.append(isPrintable ? character : "\uFFFD");
        text.remove_prefix(character.size());
    }
    return printable;
}

std::string shortestText(double number) {
    if (!std::isfinite(number)) return {};
    std::string text = nlohmann::json(number).dump();
    if (text.ends_with(".0")) text.resize(text.size() - 2);
    return text == "-0" ? "0" : text;
}

std::string padded(std::string_view text, std::size_t width) { return std::string(text) + gap(text, width); }

std::string rightAligned(std::string_view text, std::size_t width) { return gap(text, width).append(text); }

} // namespace kelvinbar
