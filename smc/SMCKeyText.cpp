#include "smc/SMCKeyText.h"

#include "base/Text.h"

#include <algorithm>

namespace kelvinbar {

bool isPrintableSMCKey(std::string_view key) {
    return key.size() == 4 && std::ranges::all_of(key, [](char c) { return c >= ' ' && c <= '~'; });
}

std::uint32_t packedSMCKey(std::string_view key) {
    std::uint32_t code = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        code = (code << 8U) | static_cast<unsigned char>(index < key.size() ? key[index] : ' ');
    }
    return code;
}

std::string fourCharString(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<char>((code >> static_cast<unsigned>(shift)) & 0xFFU);
        if (byte == '\0') break;
        text.push_back(byte);
    }
    return isValidUtf8(text) ? text : std::string();
}

std::string hexString(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::size_t limit = 32;
    const auto shown = bytes.first(std::min(bytes.size(), limit));
    std::string text;
    text.reserve(shown.size() * 2);
    for (const std::uint8_t byte : shown) {
        text.push_back(digits[byte >> 4U]);
        text.push_back(digits[byte & 0xFU]);
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> bytesOfHexString(std::string_view text) {
    if (text.size() % 2 != 0) return std::nullopt;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (; !text.empty(); text.remove_prefix(2)) {
        const int high = hexDigitValue(text[0]);
        const int low = hexDigitValue(text[1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return bytes;
}

} // namespace kelvinbar
