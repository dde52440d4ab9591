#include "smc/SMCValueDecoding.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <span>
#include <string>

namespace kelvinbar {

namespace {

using Bytes = std::span<const std::uint8_t>;
using MaybeNumber = std::optional<double>;

std::uint16_t bigEndian16(Bytes bytes) { return static_cast<std::uint16_t>((bytes[0] << 8U) | bytes[1]); }

std::uint32_t bigEndian32(Bytes bytes) {
    return (std::uint32_t{bigEndian16(bytes)} << 16U) | bigEndian16(bytes.subspan(2));
}

double signed16(Bytes bytes) { return static_cast<std::int16_t>(bigEndian16(bytes)); }

double dividedByPowerOfTwo(double number, int bits) { return std::ldexp(number, -bits); }

/// Signed fixed point. The name gives the number of fraction bits: as the hex digit F of "spIF", or as what a
/// sign and the N integer bits of "spNs" leave of 16.
std::optional<int> signedFractionBits(std::string_view type) {
    if (type.size() != 4 || !type.starts_with("sp")) return std::nullopt;
    if (const int bits = hexDigitValue(type[3]); bits >= 0) return bits;
    const int wholeBits = hexDigitValue(type[2]);
    if (asciiLowercased(type[3]) != 's' || wholeBits < 0 || wholeBits > 14) return std::nullopt;
    return 15 - wholeBits;
}

/// Unsigned fixed point. The hex digit F of "fpIF" is the number of fraction bits. "fpef" is an exception:
/// the driver that uses it defines 2.
std::optional<int> unsignedFractionBits(std::string_view type) {
    if (type.size() != 4 || !type.starts_with("fp")) return std::nullopt;
    if (type == "fpef") return 2;
    const int bits = hexDigitValue(type[3]);
    return bits >= 0 ? std::optional(bits) : std::nullopt;
}

/// An IEEE 754 single. The only little-endian type; all others are big-endian.
MaybeNumber finiteFloat(Bytes bytes) {
    std::uint32_t pattern = 0;
    for (std::size_t index = 4; index > 0; --index) pattern = (pattern << 8U) | bytes[index - 1];
    const auto number = std::bit_cast<float>(pattern);
    return std::isfinite(number) ? MaybeNumber(number) : std::nullopt;
}

MaybeNumber wideNumber(std::string_view type, Bytes bytes) {
    if (const auto bits = signedFractionBits(type)) return dividedByPowerOfTwo(signed16(bytes), *bits);
    if (const auto bits = unsignedFractionBits(type)) return dividedByPowerOfTwo(bigEndian16(bytes), *bits);
    if (type == "ui16" || type == "ui1u") return bigEndian16(bytes);
    if (type == "si16" || type == "si1s") return signed16(bytes);
    if (bytes.size() < 4) return std::nullopt;
    if (type == "flt ") return finiteFloat(bytes);
    if (type == "ui32") return bigEndian32(bytes);
    return std::nullopt;
}

/// Decodes `bytes` (at least one) as a number. No value if the type is not numeric, the bytes are too few or
/// a float is infinite or NaN. The unusual spellings occur in real drivers.
MaybeNumber decodedNumber(std::string_view type, Bytes bytes) {
    if (bytes.size() >= 2) {
        if (const MaybeNumber number = wideNumber(type, bytes)) return number;
    }
    if (type == "ui8 " || type == "ui8" || type == "ui1 ") return bytes[0];
    if (type == "si8 " || type == "si8") return static_cast<std::int8_t>(bytes[0]);
    if (type == "flag") return bytes[0] != 0 ? 1 : 0;
    return std::nullopt;
}

std::string numberText(std::string_view type, double number) {
    if (type == "flag") return number > 0 ? "Yes" : "No";
    return plainNumberText(number);
}

bool isPadding(char c) { return c == '\0' || c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

/// The printable ASCII text in `bytes` without padding. Empty if there is none.
std::string printableText(Bytes bytes) {
    std::string text(bytes.begin(), bytes.end());
    const auto first = std::ranges::find_if_not(text, isPadding);
    const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isPadding).base();
    const bool printable = std::all_of(first, last, [](char c) { return c >= ' ' && c <= '~'; });
    return printable ? std::string(first, last) : std::string();
}

std::string textOrHex(std::string_view type, Bytes bytes) {
    const bool isTextType = type == "ch8*" || type == "char" || type == "{fds";
    std::string text = isTextType ? printableText(bytes) : std::string();
    return text.empty() ? hexString(bytes) : text;
}

} // namespace

std::optional<RawReading> dictionaryForKey(std::string_view key, const SMCParamBlock& block) {
    if (!isPrintableSMCKey(key) || !isReadableSize(block.dataSize)) return std::nullopt;
    const Bytes bytes = Bytes(block.bytes).first(block.dataSize);
    RawReading reading;
    reading.key = key;
    reading.type = fourCharString(block.dataType);
    reading.numericValue = decodedNumber(reading.type, bytes);
    reading.value = reading.numericValue ? numberText(reading.type, *reading.numericValue)
                                         : textOrHex(reading.type, bytes);
    reading.raw = hexString(bytes);
    reading.size = block.dataSize;
    return reading;
}

} // namespace kelvinbar
