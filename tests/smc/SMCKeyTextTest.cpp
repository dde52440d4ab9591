#include "smc/SMCKeyText.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::smc_key_text_test {

namespace {

TEST(SMCKeyText, FourCharactersFromSpaceToTildeArePrintable) {
    for (const std::string_view key : {"TC0P", "#KEY", "VTT ", "    ", "~~~~", " ~ ~"}) {
        SCOPED_TRACE(key);
        EXPECT_TRUE(isPrintableSMCKey(key));
    }
}

TEST(SMCKeyText, EveryOtherLengthIsUnprintable) {
    for (const std::string_view key : {"", "T", "TC", "TC0", "TC0PP", "TC0PTC0P"}) {
        SCOPED_TRACE(key);
        EXPECT_FALSE(isPrintableSMCKey(key));
    }
}

TEST(SMCKeyText, OneCharacterOutside32To126MakesAKeyUnprintableInEveryPlace) {
    for (int code = 0; code < 256; ++code) {
        for (std::size_t place = 0; place < 4; ++place) {
            std::string key = "TC0P";
            key[place] = static_cast<char>(code);
            SCOPED_TRACE(testing::Message() << "code " << code << " in place " << place);
            EXPECT_EQ(isPrintableSMCKey(key), code >= 32 && code <= 126);
        }
    }
}

TEST(SMCKeyText, CharactersBeyondAsciiAreUnprintableHoweverManyBytesTheyTake) {
    EXPECT_FALSE(isPrintableSMCKey("TC\u00C4"));  // four bytes
    EXPECT_FALSE(isPrintableSMCKey("TC0\u00C4")); // four characters
}

TEST(SMCKeyText, TheFirstCharacterOfAKeyIsPackedIntoTheMostSignificantByte) {
    EXPECT_EQ(packedSMCKey("TC0P"), 0x54433050U);
    EXPECT_EQ(packedSMCKey("#KEY"), 0x234B4559U);
}

TEST(SMCKeyText, ShortTextsArePaddedWithSpaces) {
    EXPECT_EQ(packedSMCKey("TC0"), 0x54433020U);
    EXPECT_EQ(packedSMCKey("T"), 0x54202020U);
    EXPECT_EQ(packedSMCKey(""), 0x20202020U);
}

TEST(SMCKeyText, OnlyTheFirstFourBytesArePacked) { EXPECT_EQ(packedSMCKey("TC0PX"), 0x54433050U); }

TEST(SMCKeyText, BytesAbove127ArePackedUnsigned) { EXPECT_EQ(packedSMCKey("\xFF\x80\xFE\x81"), 0xFF80FE81U); }

TEST(SMCKeyText, AFourCharCodeIsReadFromTheMostSignificantByte) {
    EXPECT_EQ(fourCharString(0x54433050U), "TC0P");
    EXPECT_EQ(fourCharString(0x666C7420U), "flt ");
}

TEST(SMCKeyText, AZeroByteEndsAFourCharCodeEarly) {
    EXPECT_EQ(fourCharString(0x75693800U), "ui8");
    EXPECT_EQ(fourCharString(0x75003820U), "u");
    EXPECT_EQ(fourCharString(0x00693820U), "");
    EXPECT_EQ(fourCharString(0), "");
}

TEST(SMCKeyText, BytesAfterTheZeroByteDoNotCountAsText) { EXPECT_EQ(fourCharString(0x7500FFFEU), "u"); }

TEST(SMCKeyText, AFourCharCodeThatIsNotUtf8IsEmpty) {
    for (const std::uint32_t code : {
             0xFFFE4142U, // invalid lead byte
             0x80414243U, // continuation byte without a lead byte
             0x616263C3U, // incomplete character
             0xC0AF4142U, // overlong
             0xEDA08041U, // a surrogate
             0xF5808080U, // above U+10FFFF
             0xC3004142U, // character cut by the zero byte
         }) {
        SCOPED_TRACE(code);
        EXPECT_EQ(fourCharString(code), "");
    }
}

TEST(SMCKeyText, AFourCharCodeMayHoldCharactersOfSeveralBytes) {
    EXPECT_EQ(fourCharString(0x6162C3A9U), "ab\u00E9");
    EXPECT_EQ(fourCharString(0xF09F9880U), "\U0001F600");
}

TEST(SMCKeyText, PackingAndUnpackingAKeyReturnsTheKey) {
    for (const std::string_view key : {"TC0P", "VTT ", "    ", "~!#$"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(fourCharString(packedSMCKey(key)), key);
    }
}

TEST(SMCKeyText, HexTextHasTwoUpperCaseDigitsAByteAndNothingBetween) {
    constexpr std::array<std::uint8_t, 5> bytes{0x00, 0x0A, 0xAB, 0xF0, 0xFF};
    EXPECT_EQ(hexString(bytes), "000AABF0FF");
}

TEST(SMCKeyText, HexTextOfNoBytesIsEmpty) { EXPECT_EQ(hexString({}), ""); }

TEST(SMCKeyText, HexTextOf40BytesHas64Digits) {
    const std::vector<std::uint8_t> bytes(40, 0xC1);
    std::string expected;
    for (int count = 0; count < 32; ++count) expected += "C1";
    EXPECT_EQ(hexString(bytes), expected);
}

TEST(SMCKeyText, HexTextOf32BytesShowsTheLastByte) {
    std::vector<std::uint8_t> bytes(32, 0);
    bytes.back() = 0x7E;
    EXPECT_TRUE(hexString(bytes).ends_with("007E"));
}

} // namespace
} // namespace kelvinbar::smc_key_text_test
