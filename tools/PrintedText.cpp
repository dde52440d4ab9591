#include "tools/PrintedText.h"

#include "base/Text.h"
#include "store/ValueNormalization.h"

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

std::string numberText(double number, std::string_view unit) {
    std::string text = normalizeValue("", "", number, unit).value;
    return text == "-0" ? "0" : text;
}

std::string changeText(double change, std::string_view unit) {
    const std::string amount = numberText(std::fabs(change), unit);
    return amount == "0" ? amount : (change < 0 ? "-" : "+") + amount;
}

void dropSignsOfZero(std::vector<SMCReading>& readings) {
    for (SMCReading& reading : readings) {
        if (reading.numericValue && reading.value == "-0") reading.value = "0";
    }
}

std::string padded(std::string_view text, std::size_t width) { return std::string(text) + gap(text, width); }

std::string rightAligned(std::string_view text, std::size_t width) { return gap(text, width).append(text); }

} // namespace kelvinbar
