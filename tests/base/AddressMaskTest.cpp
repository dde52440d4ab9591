#include "base/AddressMask.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::address_mask_test {

namespace {

std::string masked(std::string_view text) { return AddressMask().masked(text); }

TEST(AddressMask, HidesTheAddressInTheNameOfAnInterface) {
    EXPECT_EQ(masked("Ethernet enx001122334455"), "Ethernet enxxxxxxxxxxx01");
    EXPECT_EQ(masked("wlxa0b1c2d3e4f5-pci-0300/temp1"), "wlxxxxxxxxxxx01-pci-0300/temp1");
    EXPECT_EQ(masked("enxA0B1C2D3E4F5.10"), "enxxxxxxxxxxx01.10");
}

TEST(AddressMask, HidesAnAddressOfPairs) {
    EXPECT_EQ(masked("hid-00:1a:2b:3c:4d:5e-battery/capacity"), "hid-xx:xx:xx:xx:xx:01-battery/capacity");
    EXPECT_EQ(masked("00-1A-2B-3C-4D-5E"), "xx-xx-xx-xx-xx-01");
    EXPECT_EQ(masked("battery_00_1a_2b_3c_4d_5e"), "battery_xx_xx_xx_xx_xx_01");
    EXPECT_EQ(masked("00:11:22:ff:fe:33:44:55"), "xx:xx:xx:xx:xx:xx:xx:01");
    EXPECT_EQ(masked("001122334455"), "xxxxxxxxxx01");
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
    EXPECT_EQ(masked("hid-F0T938400Q7J7QRAD-battery/capacity"), "hid-xxxxxx01-battery/capacity");
    EXPECT_EQ(masked("hid-7-battery-2/status"), "hid-xxxxxx01-battery-2/status");
    EXPECT_EQ(masked("hid-AB 1,2-ö-battery/status"), "hid-xxxxxx01-battery/status");
    EXPECT_EQ(masked("hid_F0T9_battery-hid-3-5/in0"), "hid_xxxxxx01_battery-hid-3-5/in0");
    EXPECT_EQ(masked("steam-controller-FXA9960000-battery"), "steam-controller-xxxxxx01-battery");
    EXPECT_EQ(masked("hid-my-battery-77-battery/status"), "hid-xxxxxx01-battery/status");
    EXPECT_EQ(masked("hid-a\xFF-battery"), "hid-xxxxxx01-battery");
}

TEST(AddressMask, NumbersSerialNumbersWithTheAddresses) {
    AddressMask mask;
    EXPECT_EQ(mask.masked("enx001122334455"), "enxxxxxxxxxxx01");
    EXPECT_EQ(mask.masked("2 unreadable: hid-F0T9-battery/capacity, hid-F0T8-battery/capacity"),
              "2 unreadable: hid-xxxxxx02-battery/capacity, hid-xxxxxx03-battery/capacity");
    EXPECT_EQ(mask.masked("/sys/class/power_supply/hid-f0t9-battery/capacity"),
              "/sys/class/power_supply/hid-xxxxxx02-battery/capacity");
}

TEST(AddressMask, DoesNotCutWordsThatEndLikeAnAddress) {
    EXPECT_EQ(masked("serial001122334455"), "serial001122334455");
}

TEST(AddressMask, TellsAddressesApart) {
    AddressMask mask;
    EXPECT_EQ(mask.masked("enx001122334455"), "enxxxxxxxxxxx01");
    EXPECT_EQ(mask.masked("enx001122334466"), "enxxxxxxxxxxx02");
    EXPECT_EQ(mask.masked("00:11:22:33:44:66 00:11:22:33:44:55"), "xx:xx:xx:xx:xx:02 xx:xx:xx:xx:xx:01");
    for (int number = 3; number < 12; ++number) {
        static_cast<void>(mask.masked("00:00:00:00:00:" + std::to_string(10 + number)));
    }
    EXPECT_EQ(mask.masked("00:00:00:00:01:00"), "xx:xx:xx:xx:xx:12");
}

TEST(AddressMask, ChangesNothingThatIsMasked) {
    AddressMask mask;
    static_cast<void>(mask.masked("enx001122334455"));
    const std::string second = mask.masked("enx001122334466 00:11:22:33:44:66");
    EXPECT_EQ(masked(second), second);
    EXPECT_EQ(masked("hid-xxxxxx02-battery/capacity"), "hid-xxxxxx02-battery/capacity");
}

} // namespace

} // namespace kelvinbar::address_mask_test
