#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Whether `key` is exactly four characters from U+0020 to U+007E.
bool isPrintableSMCKey(std::string_view key);

/// The code of a key: its bytes, the first in the most significant place, padded with blanks.
std::uint32_t packedSMCKey(std::string_view key);

/// The four bytes of `code`, most significant first, as text up to the first zero byte; empty when they are
/// not well-formed UTF-8.
std::string fourCharString(std::uint32_t code);

/// Two upper-case hex digits a byte, for the first 32 bytes.
std::string hexString(std::span<const std::uint8_t> bytes);

/// The bytes that `text` holds as pairs of hex digits of either case; nothing when it is anything else.
std::optional<std::vector<std::uint8_t>> bytesOfHexString(std::string_view text);

} // namespace kelvinbar
