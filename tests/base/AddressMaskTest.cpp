#include "base/AddressMask.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::address_mask_test {

namespace {

using testing::ElementsAre;

std::vector<std::string> maskedDocument(std::vector<std::string> texts) {
    std::vector<std::string*> pointers;
    pointers.reserve(texts.size());
    for (std::string& text : texts) pointers.push_back(&text);
    maskAddresses(pointers);
    return texts;
}

std::string masked(std::string_view text) { return maskedDocument({std::string(text)}).front(); }

/// Names of interfaces, each with an address of its own.
std::vector<std::string> manyAddresses(std::size_t count) {
    std::vector<std::string> texts;
    for (std::size_t number = 1; number <= count; ++number) {
        texts.push_back("enx" + std::to_string(100'000'000'000 + number));
    }
    return texts;
}

TEST(AddressMask, HidesTheAddressInTheNameOfAnInterface) {
    EXPECT_EQ(masked("Ethernet enx001122334455"), "Ethernet enxxxxxxxxxxx47");
    EXPECT_EQ(masked("wlxa0b1c2d3e4f5-pci-0300/temp1"), "wlxxxxxxxxxxx73-pci-0300/temp1");
    EXPECT_EQ(masked("enxA0B1C2D3E4F5.10"), "enxxxxxxxxxxx73.10");
}

TEST(AddressMask, HidesAnAddressOfPairs) {
    EXPECT_EQ(masked("hid-00:1a:2b:3c:4d:5e-battery/capacity"), "hid-xx:xx:xx:xx:xx:35-battery/capacity");
    EXPECT_EQ(masked("00-1A-2B-3C-4D-5E"), "xx-xx-xx-xx-xx-35");
    EXPECT_EQ(masked("battery_00_1a_2b_3c_4d_5e"), "battery_xx_xx_xx_xx_xx_35");
    EXPECT_EQ(masked("00:11:22:ff:fe:33:44:55"), "xx:xx:xx:xx:xx:xx:xx:85");
    EXPECT_EQ(masked("001122334455"), "xxxxxxxxxx47");
}

TEST(AddressMask, LeavesEverythingElseAlone) {
    for (const std::string_view text : {"",
                                        "k10temp-pci-00c3/temp1",
                                        "0000:01:00.0",
                                        "spd5118-i2c-4-51/temp1",
                                        "2026-03-01T14:05:09Z",
                                        "r8169_0_300:00-mdio-0/temp1",
                                        "NVMe Samsung SSD 980 PRO 1TB",
                                        "00:11:22:33:44",
                                        "enp3s0",
                                        "intel-rapl-0-1/energy",
                                        "hid-0003:1B1C:1C05.0004",
                                        "12 °C",
                                        "hid-0003:1B1C:1C05.0004-battery/capacity",
                                        "hid-battery",
                                        "hid--battery",
                                        "orchid-lamp-battery",
                                        "corsairpsu-hid-3-4/temp1, BAT0-battery",
                                        "hidpp_battery_0/capacity",
                                        "00:11:22:33:44-55",
                                        "feedbeefe"}) {
        EXPECT_EQ(masked(text), text);
    }
}

TEST(AddressMask, HidesTheSerialNumberInTheNameOfABattery) {
    EXPECT_EQ(masked("hid-F0T938400Q7J7QRAD-battery/capacity"), "hid-xxxxxx50-battery/capacity");
    EXPECT_EQ(masked("hid-7-battery-2/status"), "hid-xxxxxx16-battery-2/status");
    EXPECT_EQ(masked("hid-AB 1,2-ö-battery/status"), "hid-xxxxxx53-battery/status");
    EXPECT_EQ(masked("hid_F0T9_battery-hid-3-5/in0"), "hid_xxxxxx35_battery-hid-3-5/in0");
    EXPECT_EQ(masked("steam-controller-FXA9960000-battery"), "steam-controller-xxxxxx24-battery");
    EXPECT_EQ(masked("hid-my-battery-77-battery/status"), "hid-xxxxxx18-battery/status");
    EXPECT_EQ(masked("hid-a\xFF-battery"), "hid-xxxxxx57-battery");
}

TEST(AddressMask, AnAddressEndsBeforeAWordThatBeginsWithDigits) {
    EXPECT_EQ(masked("hid-00-1a-2b-3c-4d-5e-battery"), "hid-xx-xx-xx-xx-xx-35-battery");
    EXPECT_EQ(masked("hid_00_1a_2b_3c_4d_5e_battery"), "hid_xx_xx_xx_xx_xx_35_battery");
    EXPECT_EQ(masked("00-1a-2b-3c-4d-5e-ff"), "xx-xx-xx-xx-xx-xx-53");
}

TEST(AddressMask, DoesNotCutWordsThatEndLikeAnAddress) {
    EXPECT_EQ(masked("serial001122334455"), "serial001122334455");
}

TEST(AddressMask, TheNumberBelongsToTheAddressHoweverItIsWritten) {
    for (const std::string_view before : {"", "enx0011223344aa "}) {
        const auto lastOf = [&](std::string_view address) {
            const std::string text = masked(std::string(before).append(address));
            return text.substr(text.size() - 2);
        };
        for (const std::string_view address : {"001A2B3C4D5E", "enx001a2b3c4d5e", "00:1a:2b:3c:4d:5e",
                                               "00-1A-2B-3C-4D-5E", "00_1a_2b_3c_4d_5e"}) {
            EXPECT_EQ(lastOf(address), "35") << before << address;
        }
    }
}

TEST(AddressMask, TheNumberBelongsToTheSerialNumberHoweverItIsWritten) {
    EXPECT_THAT(maskedDocument({"2 unreadable: hid-40-F8-battery/capacity, hid-F0T8-battery/capacity",
                                "/sys/class/power_supply/hid-f0t8-battery/capacity",
                                "hid_40_f8_battery-hid-3-5/in0"}),
                ElementsAre("2 unreadable: hid-xxxxxx96-battery/capacity, hid-xxxxxx25-battery/capacity",
                            "/sys/class/power_supply/hid-xxxxxx25-battery/capacity",
                            "hid_xxxxxx96_battery-hid-3-5/in0"));
}

// Hidden texts of these tests share a number: 46 and 66 have 01, 29 and 35 have 02, 09 and cc have 99.

TEST(AddressMask, OfTwoWithOneNumberOneHasTheNextFreeOne) {
    EXPECT_EQ(masked("00:11:22:33:44:46"), "xx:xx:xx:xx:xx:01");
    EXPECT_EQ(masked("00:11:22:33:44:66"), "xx:xx:xx:xx:xx:01");
    EXPECT_THAT(maskedDocument({"00:11:22:33:44:46", "00:11:22:33:44:66"}),
                ElementsAre("xx:xx:xx:xx:xx:01", "xx:xx:xx:xx:xx:02"));
    EXPECT_THAT(maskedDocument({"00:11:22:33:44:09", "00:11:22:33:44:cc"}),
                ElementsAre("xx:xx:xx:xx:xx:99", "xx:xx:xx:xx:xx:01"));
    EXPECT_THAT(maskedDocument({"00:1a:2b:3c:4d:5e", "hid-F0T9-battery"}),
                ElementsAre("xx:xx:xx:xx:xx:35", "hid-xxxxxx36-battery"));
}

TEST(AddressMask, TheOrderOfADocumentDoesNotMatter) {
    std::vector<std::string> texts{"00:11:22:33:44:29", "00:11:22:33:44:35", "00:11:22:33:44:46",
                                   "00:11:22:33:44:66"};
    const std::vector<std::string> expected = maskedDocument(texts);
    std::vector<std::string> backwards(texts.rbegin(), texts.rend());
    backwards = maskedDocument(backwards);
    std::ranges::reverse(backwards);
    EXPECT_EQ(backwards, expected);
    EXPECT_EQ(std::set(expected.begin(), expected.end()).size(), texts.size());
}

TEST(AddressMask, OthersInADocumentChangeANumberOnlyIfTheyShareIt) {
    const std::string alone = masked("enx001122334455");
    EXPECT_EQ(maskedDocument({"enx0011223344aa", "enx001122334455", "hid-F0T9-battery"})[1], alone);
    EXPECT_EQ(maskedDocument({"enx001122334455", "enx00112233443f"})[1], masked("enx00112233443f"))
        << "the first by its digits keeps the number";
    EXPECT_NE(maskedDocument({"enx001122334455", "enx00112233443f"})[0], alone);
}

TEST(AddressMask, ThereIsANumberForEveryAddress) {
    const std::vector<std::string> result = maskedDocument(manyAddresses(120));
    EXPECT_EQ(std::set(result.begin(), result.end()).size(), 120U);
    const auto lengthOfNumber = [](const std::string& text) {
        return text.size() - text.find_first_not_of('x', 2);
    };
    EXPECT_EQ(std::ranges::count(result, 2U, lengthOfNumber), 99);
    EXPECT_EQ(std::ranges::count(result, 3U, lengthOfNumber), 21);
    EXPECT_EQ(maskedDocument(result), result);
}

TEST(AddressMask, AMaskStaysAsItIs) {
    for (const std::string_view text :
         {"enxxxxxxxxxxx01", "enxxxxxxxxxx100", "xx:xx:xx:xx:xx:01", "xx-xx-xx-xx-xx-xx-xx-99",
          "xx_xx_xx_xx_x1_00", "hid-xxxxxx02-battery/capacity", "hid-xxxxxx100-battery/capacity",
          "hid-xx:xx:xx:xx:xx:01-battery/capacity", "hid-xx-xx-xx-xx-xx-01-battery/capacity",
          "hid_xx_xx_xx_xx_xx_01_battery-hid-3-5/in0", "hid-xxxxxxxxxx01-battery",
          "steam-controller-xxxxxx01-battery", "xxxxxxxxxx01-02-03-04-05-06"}) {
        EXPECT_EQ(masked(text), text);
    }
}

TEST(AddressMask, WhatOnlyBeginsLikeAMaskIsMasked) {
    EXPECT_EQ(masked("xxxxxxx001122334455"), "xxxxxxxxxxxxxxxxx47");
    EXPECT_EQ(masked("xxxxxxxxxx01aabbccddeeff"), "xxxxxxxxxxxxxxxxxxxxxx69");
    EXPECT_EQ(masked("hid-xxxxxx1122334-battery"), "hid-xxxxxx39-battery");
    EXPECT_EQ(masked("hid-xxxxxx7-battery"), "hid-xxxxxx54-battery");
    EXPECT_EQ(masked("hid-xxxxxx-battery"), "hid-xxxxxx45-battery");
}

TEST(AddressMask, NothingIsMaskedLikeAMaskOfTheDocument) {
    EXPECT_THAT(maskedDocument({"hid-F0T9-battery", "hid-xxxxxx35-battery"}),
                ElementsAre("hid-xxxxxx36-battery", "hid-xxxxxx35-battery"));
    EXPECT_THAT(maskedDocument({"hid-4058-c1-2a-9f-battery", "hid-xx:xx:xx:xx:xx:81-battery",
                                "hid-xx:xx:xx:xx:xx:82-battery"}),
                ElementsAre("hid-xxxxxx83-battery", "hid-xx:xx:xx:xx:xx:81-battery",
                            "hid-xx:xx:xx:xx:xx:82-battery"));
}

/// A text of pieces that could be of an address, a battery's name or a mask.
std::string randomText(std::mt19937& random) {
    constexpr std::array<std::string_view, 20> pieces{"0",
                                                      "1a",
                                                      "FF",
                                                      "00:11:22:33:44:55",
                                                      "0a_1b_2c_3d_4e",
                                                      "001122334455",
                                                      "x",
                                                      "xx",
                                                      "xx:xx",
                                                      "xxxxxx",
                                                      "xxxxxxxxxx",
                                                      "-",
                                                      ":",
                                                      "_",
                                                      "/",
                                                      ", ",
                                                      "hid-",
                                                      "-battery",
                                                      "_battery",
                                                      "steam-controller-"};
    std::string text;
    for (auto count = random() % 12; count > 0; --count) text.append(pieces.at(random() % pieces.size()));
    return text;
}

TEST(AddressMask, MaskingTwiceIsMaskingOnce) {
    std::mt19937 random; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts each time
    for (int attempt = 0; attempt < 2'000; ++attempt) {
        const std::vector<std::string> texts{randomText(random), randomText(random)};
        const std::vector<std::string> once = maskedDocument(texts);
        ASSERT_EQ(maskedDocument(once), once) << texts[0] << '\n' << texts[1];
    }
}

} // namespace

} // namespace kelvinbar::address_mask_test
