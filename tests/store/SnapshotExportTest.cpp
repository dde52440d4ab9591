#include "store/SnapshotExport.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::snapshot_export_test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// 2026-03-01T14:05:09Z
constexpr std::chrono::system_clock::time_point time{seconds{1'772'373'909}};

SMCReading readingOf(std::string key, std::string value, std::string raw) {
    return {.key = std::move(key),
            .name = "Name",
            .category = SMCCategory::cpu,
            .type = "sp78",
            .value = std::move(value),
            .numericValue = std::nullopt,
            .unit = "°C",
            .raw = std::move(raw),
            .status = "OK"};
}

TEST(SnapshotText, WithoutReadingsItIsTheHeader) {
    EXPECT_EQ(snapshotText({}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 0\n");
}

TEST(SnapshotText, EveryReadingIsALineOfFiveFields) {
    SMCReading fan = readingOf("F0Ac", "1200", "04B0");
    fan.name = "Fan 0";
    fan.category = SMCCategory::fans;
    fan.type = "fpe2";
    fan.unit = "RPM";
    SMCReading revision = readingOf("REV ", "2.4", "322E34");
    revision.name = "SMC Revision";
    revision.type = "ch8*";
    revision.unit = "";
    EXPECT_EQ(snapshotText({revision, fan}, time), "Kelvinbar snapshot\n"
                                                   "Generated: 2026-03-01T14:05:09Z\n"
                                                   "Active keys: 2\n"
                                                   "\n"
                                                   "F0Ac\tfpe2\tFan 0\t1200 RPM\tRAW=04B0\n"
                                                   "REV \tch8*\tSMC Revision\t2.4\tRAW=322E34");
}

TEST(SnapshotText, TwoReadingsMakeSixLinesWithFourTabsEach) {
    const std::string text =
        snapshotText({readingOf("TC0P", "40", "2800"), readingOf("TC1C", "41", "")}, time);
    EXPECT_EQ(std::ranges::count(text, '\n'), 5);
    EXPECT_EQ(std::ranges::count(text, '\t'), 8);
}

TEST(SnapshotText, NumbersInKeysCompareByValue) {
    EXPECT_EQ(snapshotText({readingOf("TC10C", "1", "A"), readingOf("TC2C", "2", "B")}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 2\n\n"
              "TC2C\tsp78\tName\t2 °C\tRAW=B\n"
              "TC10C\tsp78\tName\t1 °C\tRAW=A");
}

TEST(SnapshotText, KeysThatCompareEqualKeepTheOrderOfTheReadings) {
    EXPECT_EQ(snapshotText({readingOf("TC0p", "1", "A"), readingOf("TC0P", "2", "B")}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 2\n\n"
              "TC0p\tsp78\tName\t1 °C\tRAW=A\n"
              "TC0P\tsp78\tName\t2 °C\tRAW=B");
}

TEST(SnapshotText, TheCategoryDoesNotCountForTheOrder) {
    SMCReading battery = readingOf("ZZZZ", "1", "A");
    battery.category = SMCCategory::battery;
    SMCReading voltage = readingOf("AAAA", "2", "B");
    voltage.category = SMCCategory::voltages;
    EXPECT_TRUE(snapshotText({battery, voltage}, time)
                    .ends_with("\nAAAA\tsp78\tName\t2 °C\tRAW=B\nZZZZ\tsp78\tName\t1 °C\tRAW=A"));
}

TEST(SnapshotText, AReadingWithoutRawBytesEndsItsLineWithTheLabel) {
    EXPECT_TRUE(
        snapshotText({readingOf("TC0P", "40", "")}, time).ends_with("\n\nTC0P\tsp78\tName\t40 °C\tRAW="));
}

TEST(SnapshotText, FieldsAreWrittenAsTheyAre) {
    SMCReading reading = readingOf("TC0P", " 40 °C ", "2\t8\n");
    reading.name = "a\tb\nc";
    reading.type = "flt ";
    EXPECT_TRUE(snapshotText({reading}, time).ends_with("\nTC0P\tflt \ta\tb\nc\t40 °C\tRAW=2\t8\n"));
}

TEST(SnapshotText, TheTimeHasNoFractionOfASecond) {
    EXPECT_EQ(snapshotText({}, time + milliseconds(999)), snapshotText({}, time));
    EXPECT_NE(snapshotText({}, time + milliseconds(1000)), snapshotText({}, time));
}

// Hardware addresses

SMCReading kernelReading(std::string key, std::string type, std::string name) {
    SMCReading reading = readingOf(std::move(key), "40", "001122334455");
    reading.type = std::move(type);
    reading.name = std::move(name);
    return reading;
}

TEST(SnapshotText, HardwareAddressesAreMasked) {
    const auto card =
        kernelReading("enx001122334455-pci-0100/temp1", "enx001122334455", "Ethernet enx001122334455");
    const auto mouse =
        kernelReading("hid-00:11:22:33:44:66-battery/capacity", "peripheral", "Device Battery");
    const std::string text = snapshotText({card, mouse}, time);
    EXPECT_TRUE(text.ends_with("\nenxxxxxxxxxxx47-pci-0100/temp1\tenxxxxxxxxxxx47\tEthernet enxxxxxxxxxxx47"
                               "\t40 °C\tRAW=001122334455"
                               "\nhid-xx:xx:xx:xx:xx:01-battery/capacity\tperipheral\tDevice Battery"
                               "\t40 °C\tRAW=001122334455"))
        << text;
}

TEST(SnapshotText, LinesAreInTheOrderOfTheKeysThatAreShown) {
    const std::string text =
        snapshotText({kernelReading("aabbccddeeff/temp1", "chip", "First without a mask"),
                      kernelReading("nvme-pci-0100/temp1", "nvme", "Drive")},
                     time);
    EXPECT_LT(text.find("\nnvme-pci-0100/temp1"), text.find("\nxxxxxxxxxx74/temp1")) << text;
}

TEST(SnapshotText, SerialNumbersOfBatteriesAreMasked) {
    const auto reading = kernelReading("hid-F0T9-battery/capacity", "peripheral", "Device Battery");
    const std::string text = snapshotText({reading}, time);
    EXPECT_NE(text.find("\nhid-xxxxxx35-battery/capacity\tperipheral\tDevice Battery\t"), std::string::npos);
}

TEST(SnapshotText, KeysOfAControllerAreNotTouched) {
    const auto reading = kernelReading("TC0P", "001122334455", "001122334455");
    EXPECT_TRUE(snapshotText({reading}, time)
                    .ends_with("\nTC0P\t001122334455\t001122334455\t40 °C\tRAW=001122334455"));
}

TEST(SnapshotText, ReadingsThatAreComparedAreMaskedLikewise) {
    std::vector<SMCReading> readings{
        kernelReading("enx001122334455-pci-0100/temp1", "enx001122334455", "Ethernet"),
        kernelReading("enx001122334466-pci-0200/temp1", "enx001122334466", "Ethernet 2")};
    const std::string text = snapshotText(readings, time);
    maskAddresses(readings);
    EXPECT_EQ(readings[1].key, "enxxxxxxxxxxx01-pci-0200/temp1");
    EXPECT_EQ(snapshotText(readings, time), text);
}

TEST(SnapshotText, ADeviceKeepsItsMaskWhenAnotherIsRemoved) {
    const auto first = kernelReading("enx0011223344aa-pci-0100/temp1", "chip", "Ethernet");
    const auto second = kernelReading("enx001122334455-pci-0200/temp1", "chip", "Ethernet 2");
    const std::string line = "\nenxxxxxxxxxxx47-pci-0200/temp1\t";
    EXPECT_NE(snapshotText({first, second}, time).find(line), std::string::npos);
    EXPECT_NE(snapshotText({second}, time).find(line), std::string::npos);
}

} // namespace
} // namespace kelvinbar::snapshot_export_test
