#include "smc/SMCValueDecoding.h"

#include "base/Text.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::smc_value_decoding_test {

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::string_view_literals;

/// The code of a type of up to four bytes, padded with zero bytes.
std::uint32_t typeCode(std::string_view type) {
    std::string padded(type);
    padded.resize(4, '\0');
    return packedSMCKey(padded);
}

SMCParamBlock blockOf(std::string_view type, const Bytes& bytes) {
    SMCParamBlock block;
    block.key = packedSMCKey("TC0P");
    block.dataType = typeCode(type);
    block.dataSize = static_cast<std::uint32_t>(bytes.size());
    std::ranges::copy_n(bytes.begin(),
                        static_cast<std::ptrdiff_t>(std::min(bytes.size(), block.bytes.size())),
                        block.bytes.begin());
    return block;
}

/// The decoded reading. An empty one, which no value decodes to, if decoding fails.
RawReading decoded(std::string_view type, const Bytes& bytes) {
    const auto reading = dictionaryForKey("TC0P", blockOf(type, bytes));
    EXPECT_TRUE(reading.has_value());
    return reading.value_or(RawReading());
}

void expectNumber(std::string_view type, const Bytes& bytes, double number, std::string_view value) {
    SCOPED_TRACE(testing::Message() << type << " " << hexString(bytes));
    const RawReading reading = decoded(type, bytes);
    EXPECT_EQ(reading.numericValue, number);
    EXPECT_EQ(reading.value, value);
    EXPECT_EQ(reading.type, type);
    EXPECT_EQ(reading.raw, hexString(bytes));
}

void expectText(std::string_view type, const Bytes& bytes, std::string_view value) {
    SCOPED_TRACE(testing::Message() << type << " " << hexString(bytes));
    const RawReading reading = decoded(type, bytes);
    EXPECT_EQ(reading.numericValue, std::nullopt);
    EXPECT_EQ(reading.value, value);
    EXPECT_EQ(reading.raw, hexString(bytes));
}

void expectHex(std::string_view type, const Bytes& bytes) { expectText(type, bytes, hexString(bytes)); }

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

/// The value of a hex digit. Independent of the code under test.
std::optional<int> hexDigit(char character) {
    const auto at = "0123456789abcdef"sv.find(
        static_cast<char>(character >= 'A' && character <= 'F' ? character + ('a' - 'A') : character));
    return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<int>(at));
}

std::string printableCharacters() {
    std::string characters(95, ' ');
    std::iota(characters.begin(), characters.end(), ' ');
    return characters;
}

/// Expects that the bytes 80 01, the integer `whole`, decode to `whole` * 2^-`bits` as `type`, or to hex if
/// there is no value for `bits`.
void expectFraction(std::string_view type, int whole, std::optional<int> bits) {
    const RawReading reading = decoded(type, {0x80, 0x01});
    EXPECT_EQ(reading.numericValue, bits ? std::optional(std::ldexp(whole, -*bits)) : std::nullopt);
    EXPECT_EQ(reading.value == "8001", !bits.has_value());
}

// The reading

TEST(SMCValueDecoding, ANumberHasItsTextAndItsBytes) {
    RawReading expected;
    expected.key = "VTT ";
    expected.type = "flt ";
    expected.value = "40";
    expected.numericValue = 40;
    expected.raw = "00002042";
    expected.size = 4;
    EXPECT_EQ(dictionaryForKey("VTT ", blockOf("flt ", {0x00, 0x00, 0x20, 0x42})), expected);
}

TEST(SMCValueDecoding, AValueOfAnotherTypeHasNoNumber) {
    RawReading expected;
    expected.key = "REV ";
    expected.type = "{rev";
    expected.value = "012F0A";
    expected.raw = "012F0A";
    expected.size = 3;
    EXPECT_EQ(dictionaryForKey("REV ", blockOf("{rev", {0x01, 0x2F, 0x0A})), expected);
}

TEST(SMCValueDecoding, AKeyThatIsNotPrintableHasNoReading) {
    const SMCParamBlock block = blockOf("ui8 ", {1});
    for (const std::string_view key : {""sv, "ab"sv, "TC0"sv, "TC0PP"sv, "TC\x1FP"sv, "TC0\x7F"sv,
                                       "TC\u00C4"sv, "TC0\u00C4"sv, "TC\0P"sv}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(dictionaryForKey(key, block), std::nullopt);
    }
}

TEST(SMCValueDecoding, ASizeOfZeroOrAbove32HasNoReading) {
    SMCParamBlock block = blockOf("ui8 ", {1});
    for (const std::uint32_t size : {0U, 33U, 64U, 0x80000001U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(size);
        block.dataSize = size;
        EXPECT_EQ(dictionaryForKey("TC0P", block), std::nullopt);
    }
}

TEST(SMCValueDecoding, AllSizesFrom1To32AreShownInFull) {
    for (std::size_t size = 1; size <= 32; ++size) {
        SCOPED_TRACE(size);
        const RawReading result = decoded("hex_", Bytes(size, 0xEF));
        EXPECT_EQ(result.raw.size(), 2 * size);
        EXPECT_EQ(result.size, size);
    }
}

TEST(SMCValueDecoding, BytesBeyondTheSizeAreIgnored) {
    SMCParamBlock block = blockOf("ch8*", bytesOf("ABCD"));
    block.dataSize = 2;
    const auto reading = dictionaryForKey("TC0P", block);
    ASSERT_TRUE(reading.has_value());
    EXPECT_EQ(reading->value, "AB");
    EXPECT_EQ(reading->raw, "4142");
    EXPECT_EQ(reading->size, 2U);
}

TEST(SMCValueDecoding, TheKeyIsTheArgumentNotTheBlocks) {
    SMCParamBlock block = blockOf("ui8 ", {1});
    block.key = packedSMCKey("XXXX");
    EXPECT_EQ(dictionaryForKey("TC0P", block).value_or(RawReading()).key, "TC0P");
}

// Types as text

TEST(SMCValueDecoding, TheTypeKeepsItsTrailingSpacesAndEndsAtAZeroByte) {
    EXPECT_EQ(decoded("flt ", {1}).type, "flt ");
    EXPECT_EQ(decoded("ui8\0"sv, {1}).type, "ui8");
    EXPECT_EQ(decoded("ui\0008"sv, {1}).type, "ui");
    EXPECT_EQ(decoded("\0ui8"sv, {1}).type, "");
    EXPECT_EQ(decoded("", {1}).type, "");
}

TEST(SMCValueDecoding, ATypeThatIsNotUtf8IsEmptyAndItsValueHex) {
    for (const std::string_view type : {"\xFF\xFE"
                                        "8 ",
                                        "ui8\xC3", "sp7\x80",
                                        "\xC0\xAF"
                                        "ab"}) {
        SCOPED_TRACE(hexString(bytesOf(type)));
        const RawReading result = decoded(type, {0x12, 0x34});
        EXPECT_EQ(result.type, "");
        EXPECT_EQ(result.value, "1234");
        EXPECT_EQ(result.numericValue, std::nullopt);
    }
}

// Signed fixed point

TEST(SMCValueDecoding, SignedFixedPointIsDividedByItsFractionBits) {
    expectNumber("sp78", {0x28, 0x80}, 40.5, "40.50");
    expectNumber("sp78", {0xFF, 0x00}, -1, "-1");
    expectNumber("sp78", {0x7F, 0xFF}, 32767.0 / 256, "128");
    expectNumber("sp78", {0x80, 0x00}, -128, "-128");
    expectNumber("sp1e", {0x40, 0x00}, 1, "1");
    expectNumber("sp1e", {0xC0, 0x00}, -1, "-1");
    expectNumber("sp3c", {0x10, 0x00}, 1, "1");
    expectNumber("sp4b", {0x08, 0x00}, 1, "1");
    expectNumber("sp5a", {0x04, 0x00}, 1, "1");
    expectNumber("sp69", {0x02, 0x00}, 1, "1");
    expectNumber("sp87", {0x00, 0x80}, 1, "1");
    expectNumber("sp96", {0x00, 0x40}, 1, "1");
    expectNumber("spb4", {0x00, 0x10}, 1, "1");
    expectNumber("spf0", {0x00, 0x01}, 1, "1");
    expectNumber("spA5", {0x00, 0x20}, 1, "1");
    expectNumber("sp1E", {0x40, 0x00}, 1, "1");
}

TEST(SMCValueDecoding, SignedFixedPointWithASignHasTheRestOfFifteenBitsAsFraction) {
    expectNumber("sp4s", {0x08, 0x00}, 1, "1");
    expectNumber("sp4S", {0xF8, 0x00}, -1, "-1");
    expectNumber("sp0s", {0x40, 0x00}, 0.5, "0.50");
    expectNumber("spes", {0x00, 0x01}, 0.5, "0.50");
    expectNumber("spES", {0x00, 0x03}, 1.5, "1.50");
}

TEST(SMCValueDecoding, ASignFormWithFifteenWholeBitsIsNoNumber) {
    expectHex("spfs", {0x00, 0x01});
    expectHex("spFS", {0x00, 0x01});
}

TEST(SMCValueDecoding, EveryTypeThatBeginsWithSpIsDecodedByItsThirdAndFourthCharacter) {
    for (const char third : printableCharacters()) {
        for (const char fourth : printableCharacters()) {
            std::optional<int> fractionBits = hexDigit(fourth);
            const auto wholeBits = hexDigit(third);
            if ((fourth == 's' || fourth == 'S') && wholeBits && *wholeBits <= 14)
                fractionBits = 15 - *wholeBits;
            const std::string type = std::string("sp") + third + fourth;
            SCOPED_TRACE(type);
            expectFraction(type, -32767, fractionBits);
        }
    }
}

TEST(SMCValueDecoding, NearMissesOfSignedFixedPointAreHex) {
    for (const std::string_view type :
         {"sp7g"sv, "sp7 "sv, "spgs"sv, "sp s"sv, "sp7_"sv, "sp78"sv.substr(0, 3), "sp"sv, "SP78"sv, "Sp78"sv,
          "sP78"sv, "ps78"sv, "sp\u00E9"sv}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x28, 0x80});
    }
}

// Unsigned fixed point

TEST(SMCValueDecoding, UnsignedFixedPointIsDividedByItsFractionBits) {
    expectNumber("fpe2", {0x07, 0xD0}, 500, "500");
    expectNumber("fpe2", {0xFF, 0xFF}, 16383.75, "16383.75");
    expectNumber("fp88", {0x01, 0x80}, 1.5, "1.50");
    expectNumber("fp88", {0xFF, 0x00}, 255, "255");
    expectNumber("fp1f", {0x80, 0x00}, 1, "1");
    expectNumber("fp4C", {0x10, 0x00}, 1, "1");
    expectNumber("fpF0", {0xFF, 0xFF}, 65535, "65535");
}

TEST(SMCValueDecoding, TypeFpefHasTwoFractionBits) {
    expectNumber("fpef", {0x07, 0xD0}, 500, "500");
    expectNumber("fpef", {0x00, 0x01}, 0.25, "0.25");
}

TEST(SMCValueDecoding, EveryTypeThatBeginsWithFpIsDecodedByItsFourthCharacter) {
    for (const char third : printableCharacters()) {
        for (const char fourth : printableCharacters()) {
            const std::string type = std::string("fp") + third + fourth;
            const std::optional<int> fractionBits = type == "fpef" ? 2 : hexDigit(fourth);
            SCOPED_TRACE(type);
            expectFraction(type, 32769, fractionBits);
        }
    }
}

TEST(SMCValueDecoding, NearMissesOfUnsignedFixedPointAreHex) {
    for (const std::string_view type : {"fp7g", "fpe ", "fp4s", "fpe", "fp", "FPE2", "fPe2", "pfe2"}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x07, 0xD0});
    }
}

// Float

TEST(SMCValueDecoding, AFloatIsReadLeastSignificantByteFirst) {
    expectNumber("flt ", {0x00, 0x00, 0x20, 0x42}, 40, "40");
    expectNumber("flt ", {0x00, 0x00, 0x48, 0x41}, 12.5, "12.50");
    expectNumber("flt ", {0x00, 0x00, 0x80, 0xBF}, -1, "-1");
    expectNumber("flt ", {0x00, 0x00, 0x00, 0x80}, -0.0, "-0");
    expectNumber("flt ", {0x01, 0x00, 0x00, 0x00}, std::ldexp(1.0, -149), "0");
    expectNumber("flt ", {0xFF, 0xFF, 0x7F, 0x7F}, static_cast<double>(3.40282346638528859812e38F),
                 "340282346638528859811704183484516925440");
}

TEST(SMCValueDecoding, AFloatIsWidenedToADoubleWithoutRounding) {
    expectNumber("flt ", {0xCD, 0xCC, 0xCC, 0x3D}, static_cast<double>(0.1F), "0.10");
}

TEST(SMCValueDecoding, AFloatThatIsNotFiniteIsHexWithoutANumber) {
    expectText("flt ", {0x00, 0x00, 0x80, 0x7F}, "0000807F");
    expectHex("flt ", {0x00, 0x00, 0x80, 0xFF});
    expectHex("flt ", {0x00, 0x00, 0xC0, 0x7F});
    expectHex("flt ", {0x01, 0x00, 0x80, 0x7F});
    expectHex("flt ", {0xFF, 0xFF, 0xFF, 0xFF});
}

TEST(SMCValueDecoding, NearMissesOfAFloatAreHex) {
    for (const std::string_view type : {"flt", "FLT ", "flt_", " flt", "fltx", "flt2"}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x00, 0x00, 0x20, 0x42});
    }
}

// Whole numbers and flags

TEST(SMCValueDecoding, WholeNumbersAreReadMostSignificantByteFirst) {
    expectNumber("ui8 ", {0xFF}, 255, "255");
    expectNumber("ui16", {0x12, 0x34}, 0x1234, "4660");
    expectNumber("ui16", {0xFF, 0xFF}, 65535, "65535");
    expectNumber("ui32", {0x00, 0x01, 0x02, 0x03}, 0x00010203, "66051");
    expectNumber("ui32", {0xFF, 0xFF, 0xFF, 0xFF}, 4294967295.0, "4294967295");
    expectNumber("si8 ", {0x80}, -128, "-128");
    expectNumber("si8 ", {0x7F}, 127, "127");
    expectNumber("si16", {0x80, 0x00}, -32768, "-32768");
    expectNumber("si16", {0xFF, 0xFE}, -2, "-2");
    expectNumber("si16", {0x7F, 0xFF}, 32767, "32767");
}

TEST(SMCValueDecoding, OddSpellingsOfWholeNumbersAreAccepted) {
    expectNumber("ui8", {0xFE}, 254, "254");
    expectNumber("ui1 ", {0xFE}, 254, "254");
    expectNumber("ui1u", {0xFF, 0xFE}, 65534, "65534");
    expectNumber("si8", {0xFE}, -2, "-2");
    expectNumber("si1s", {0xFF, 0xFE}, -2, "-2");
}

TEST(SMCValueDecoding, NearMissesOfWholeNumbersAreHex) {
    for (const std::string_view type : {"ui1", "ui1s", "si1u", "si1 ", "ui", "ui64", "si32", "UI8 ", "Si8 ",
                                        "ui8_", "u16", "si8x", " ui8", "ui3"}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x01, 0x02, 0x03, 0x04});
    }
}

TEST(SMCValueDecoding, AFlagIsYesForEveryByteButZero) {
    expectNumber("flag", {0x00}, 0, "No");
    expectNumber("flag", {0x01}, 1, "Yes");
    expectNumber("flag", {0x02}, 1, "Yes");
    expectNumber("flag", {0x80}, 1, "Yes");
    expectNumber("flag", {0xFF}, 1, "Yes");
    expectNumber("flag", {0x00, 0x01}, 0, "No");
    expectHex("Flag", {0x01});
    expectHex("fla", {0x01});
}

TEST(SMCValueDecoding, ExtraBytesBehindANumberAreIgnored) {
    expectNumber("sp78", {0x28, 0x80, 0xFF, 0xFF}, 40.5, "40.50");
    expectNumber("fpe2", {0x07, 0xD0, 0xFF}, 500, "500");
    expectNumber("flt ", {0x00, 0x00, 0x20, 0x42, 0xFF, 0xFF, 0xFF, 0xFF}, 40, "40");
    expectNumber("ui8 ", {0x05, 0xFF}, 5, "5");
    expectNumber("ui16", {0x00, 0x05, 0xFF}, 5, "5");
    expectNumber("ui32", {0x00, 0x00, 0x00, 0x05, 0xFF}, 5, "5");
    expectNumber("si8 ", {0xFF, 0x00}, -1, "-1");
    expectNumber("si16", {0xFF, 0xFF, 0x00}, -1, "-1");
}

TEST(SMCValueDecoding, TypesWithTooFewBytesAreHex) {
    for (const std::string_view type :
         {"sp78", "sp4s", "fpe2", "fpef", "flt ", "ui16", "ui1u", "ui32", "si16", "si1s"}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x41});
    }
    for (const std::string_view type : {"flt ", "ui32"}) {
        SCOPED_TRACE(type);
        expectHex(type, {0x41, 0x42});
        expectHex(type, {0x41, 0x42, 0x43});
    }
}

// Number text

TEST(SMCValueDecoding, ANumberNearAWholeOneIsShownWithoutDecimals) {
    expectNumber("flt ", {0x62, 0x10, 0x40, 0x41}, static_cast<double>(12.004F), "12");
    expectNumber("flt ", {0x00, 0x00, 0x48, 0x41}, 12.5, "12.50");
    expectNumber("flt ", {0x9E, 0xEF, 0x3F, 0x41}, static_cast<double>(11.996F), "12");
    expectNumber("fp88", {0x00, 0x01}, 1.0 / 256, "0");
    expectNumber("fp88", {0x00, 0x02}, 2.0 / 256, "0.01");
    expectNumber("fp88", {0x00, 0xFF}, 255.0 / 256, "1");
    expectNumber("fp88", {0x00, 0xFE}, 254.0 / 256, "0.99");
    expectNumber("fp1f", {0x00, 163}, 163.0 / 32768, "0");
    expectNumber("fp1f", {0x00, 164}, 164.0 / 32768, "0.01");
    expectNumber("sp78", {0xFF, 0xFF}, -1.0 / 256, "-0");
    expectNumber("sp78", {0xFF, 0xFE}, -2.0 / 256, "-0.01");
    expectNumber("sp78", {0xFF, 0x80}, -0.5, "-0.50");
    expectNumber("sp78", {0x02, 0x80}, 2.5, "2.50");
    expectNumber("sp78", {0x00, 0x00}, 0, "0");
}

TEST(SMCValueDecoding, TwoDecimalsAreRoundedCorrectlyTiesToEven) {
    expectNumber("fpe3", {0x00, 0x01}, 0.125, "0.12");
    expectNumber("fpe3", {0x00, 0x03}, 0.375, "0.38");
    expectNumber("sp78", {0x2A, 0xAB}, 42.66796875, "42.67");
}

// Text

TEST(SMCValueDecoding, TextTypesAreShownAsText) {
    for (const std::string_view type : {"ch8*", "char", "{fds"}) {
        SCOPED_TRACE(type);
        expectText(type, {0x41, 0x42, 0x00, 0x00}, "AB");
        expectText(type, bytesOf("Fan ~ !"), "Fan ~ !");
        expectText(type, bytesOf("A"), "A");
    }
}

TEST(SMCValueDecoding, OtherTypesAreNeverShownAsText) {
    for (const std::string_view type :
         {"ch8 ", "ch8", "CH8*", "Char", "cha", "{fd", "{FDS", "{rev", "hex_", ""}) {
        SCOPED_TRACE(type);
        expectHex(type, bytesOf("ABCD"));
    }
}

TEST(SMCValueDecoding, ZeroBytesSpacesTabsAndLineEndsAreTrimmedAtBothEndsOfAText) {
    expectText("ch8*", bytesOf(" \n\r\t\0AB C\t \r\n\0"sv), "AB C");
    for (const char padding : {'\0', ' ', '\n', '\r', '\t'}) {
        SCOPED_TRACE(static_cast<int>(padding));
        expectText("ch8*", bytesOf(std::string{padding, 'A', 'B', padding}), "AB");
    }
}

TEST(SMCValueDecoding, TextOfPaddingAloneIsHex) {
    expectText("ch8*", {0x00, 0x00, 0x00, 0x00}, "00000000");
    expectHex("ch8*", bytesOf(" \n\r\t"));
    expectHex("{fds", {0x20});
}

TEST(SMCValueDecoding, TextWithACharacterThatIsNotPrintableAsciiIsHex) {
    expectHex("ch8*", bytesOf("A\0B"sv));
    expectHex("ch8*", bytesOf("A\tB"));
    expectHex("ch8*", bytesOf("A\nB"));
    expectHex("ch8*", bytesOf("A\x1F"));
    expectHex("ch8*", bytesOf("A\x7F"));
    expectHex("ch8*", bytesOf("A\x0B"));
    expectHex("ch8*", bytesOf("\x0C"
                              "A"));
    expectHex("ch8*", bytesOf("A\xE9"));
    expectHex("ch8*", bytesOf("\u00C4"));
    expectHex("ch8*", bytesOf("\u00A0A"));
    expectHex("ch8*", {0xFF});
}

TEST(SMCValueDecoding, TextMayFillAll32Bytes) {
    const std::string text = "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345";
    expectText("ch8*", bytesOf(text), text);
}

} // namespace
} // namespace kelvinbar::smc_value_decoding_test
