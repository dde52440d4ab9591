#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Whether `key` has exactly four characters, each from U+0020 to U+007E.
bool isPrintableSMCKey(std::string_view key);

/// The code of a key: its bytes padded with spaces, the first byte the most significant.
std::uint32_t packedSMCKey(std::string_view key);

/// The inverse of `packedSMCKey`, cut at the first zero byte. Empty if the bytes are not valid UTF-8.
std::string fourCharString(std::uint32_t code);

/// The first 32 bytes as upper-case hex digits, two per byte.
std::string hexString(std::span<const std::uint8_t> bytes);

/// The bytes of a text of hex digit pairs in either case. No value for any other text.
std::optional<std::vector<std::uint8_t>> bytesOfHexString(std::string_view text);

} // namespace kelvinbar
