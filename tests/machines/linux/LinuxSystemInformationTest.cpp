#include "machines/linux/LinuxSystemInformation.h"

#include "smc/NativeMacSupport.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::linux_system_information_test {

namespace {

using fakes::TemporaryTree;
using testing::ElementsAre;
using namespace std::string_literals;

constexpr std::string_view processorName = "machdep.cpu.brand_string";

class LinuxSystemInformationTest : public testing::Test {
  protected:
    TemporaryTree tree;
    LinuxSystemInformation system{tree.root()};
};

// Texts

TEST_F(LinuxSystemInformationTest, TheProcessorNameIsTheFirstModelNameWithAZeroByteBehind) {
    tree.write("proc/cpuinfo", "processor\t: 0\n"
                               "vendor_id\t: SomeVendor\n"
                               "model\t\t: 97\n"
                               "model name\t: Some Processor: 8 cores @ 3.00GHz\n"
                               "\n"
                               "processor\t: 1\n"
                               "model name\t: Another Processor\n");
    EXPECT_EQ(system.systemBytes(processorName), "Some Processor: 8 cores @ 3.00GHz\0"s);
}

TEST_F(LinuxSystemInformationTest, TheLastLineOfTheProcessorListNeedsNoLineEnd) {
    tree.write("proc/cpuinfo", "processor: 0\nmodel name: Some Processor");
    EXPECT_EQ(system.systemBytes(processorName), "Some Processor\0"s);
}

TEST_F(LinuxSystemInformationTest, AProcessorListWithoutAModelNameGivesNothing) {
    tree.write("proc/cpuinfo",
               "processor\t: 0\nBogoMIPS\t: 108.00\nmodel\t: 4\nModel name\t: x\nno colon here\n\n"
               "model name too\t: x\n");
    EXPECT_EQ(system.systemBytes(processorName), std::nullopt);
}

TEST_F(LinuxSystemInformationTest, AnEmptyProcessorListGivesNothing) {
    tree.write("proc/cpuinfo", "");
    EXPECT_EQ(system.systemBytes(processorName), std::nullopt);
}

TEST_F(LinuxSystemInformationTest, AProcessorListOfSeveralMebibytesIsUnderstood) {
    const std::string filling(std::size_t{3} * 1024 * 1024, 'x');
    tree.write("proc/cpuinfo", "processor\t: 0\nmodel name\t: Some Processor\nflags\t: " + filling + "\n");
    EXPECT_EQ(system.systemBytes(processorName), "Some Processor\0"s);
}

TEST_F(LinuxSystemInformationTest, TheModelIsTheProductName) {
    tree.write("sys/class/dmi/id/product_name", "Some Product 5\n");
    tree.write("proc/device-tree/model", "Some Board\0"s);
    EXPECT_EQ(system.systemBytes("hw.model"), "Some Product 5\0"s);
}

TEST_F(LinuxSystemInformationTest, WithoutAProductNameTheModelIsTheDeviceTreesWithItsZeroByte) {
    tree.write("proc/device-tree/model", "Some Board\0"s);
    EXPECT_EQ(system.systemBytes("hw.model"), "Some Board\0"s);
    tree.write("sys/class/dmi/id/product_name", " \n");
    EXPECT_EQ(system.systemBytes("hw.model"), "Some Board\0"s) << "a blank product name";
}

TEST_F(LinuxSystemInformationTest, OtherEntriesDoNotExist) {
    tree.write("proc/cpuinfo", "model name: Some Processor\n");
    tree.write("sys/class/dmi/id/product_name", "Some Product\n");
    for (const std::string_view name : {"", "hw", "hw.models", "HW.MODEL", "kern.osversion", "machdep.cpu"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(system.systemBytes(name), std::nullopt);
    }
}

// Processors

TEST_F(LinuxSystemInformationTest, TheProcessorsOfTheOnlineListAreCounted) {
    for (const auto& [list, count] : {std::pair{"0\n", 1},
                                      {"0-3\n", 4},
                                      {"0-3,8,10-11\n", 7},
                                      {"0,2,4\n", 3},
                                      {"5-5\n", 1},
                                      {"0-127\n", 128},
                                      {"0-3", 4},
                                      {"  1-2 \n", 2}}) {
        SCOPED_TRACE(list);
        tree.write("sys/devices/system/cpu/online", list);
        EXPECT_EQ(system.activeProcessorCount(), count);
    }
}

TEST_F(LinuxSystemInformationTest, AMalformedOnlineListIsUnknown) {
    for (const std::string_view list :
         {"x\n", "0-\n", "-3\n", "-1\n", "3-1\n", "0,\n", ",0\n", "0,,1\n", "0-3 4\n", "0-1-2\n", "0-3x\n",
          "0x3\n", "0--1\n", "-3-1\n", "0,-1\n", "0;1\n", "1.5\n", "99999999999999999999\n",
          "0-99999999999999999999\n"}) {
        SCOPED_TRACE(list);
        tree.write("sys/devices/system/cpu/online", list);
        EXPECT_EQ(system.activeProcessorCount(), 0);
    }
}

TEST_F(LinuxSystemInformationTest, AnOnlineListOfMoreProcessorsThanCanBeCountedIsUnknown) {
    for (const std::string_view list : {"0-2147483647\n", "0-2147483646,0-5\n"}) {
        SCOPED_TRACE(list);
        tree.write("sys/devices/system/cpu/online", list);
        EXPECT_EQ(system.activeProcessorCount(), 0);
    }
}

TEST_F(LinuxSystemInformationTest, AnEmptyOrMissingOnlineListIsUnknown) {
    EXPECT_EQ(system.activeProcessorCount(), 0);
    for (const std::string_view list : {"", "\n", " \n"}) {
        SCOPED_TRACE(list.size());
        tree.write("sys/devices/system/cpu/online", list);
        EXPECT_EQ(system.activeProcessorCount(), 0);
    }
}

// Memory

TEST_F(LinuxSystemInformationTest, TheTotalMemoryIsGivenInBytes) {
    tree.write("proc/meminfo",
               "MemTotal:       16777216 kB\nMemFree:         1000000 kB\nMemAvailable:    2 kB\n");
    EXPECT_EQ(system.physicalMemory(), std::uint64_t{1} << 34U);
}

TEST_F(LinuxSystemInformationTest, TheTotalMemoryIsFoundOnAnyLine) {
    tree.write("proc/meminfo", "MemFree: 1 kB\nMemTotalX: 2 kB\nMemTotal: 3 kB\nMemTotal: 4 kB\n");
    EXPECT_EQ(system.physicalMemory(), 3072U);
}

TEST_F(LinuxSystemInformationTest, AMemoryFileWithoutAUsableTotalIsUnknown) {
    for (const std::string_view content :
         {"", "\n", "MemFree: 1 kB\n", "MemTotal:\n", "MemTotal: kB\n", "MemTotal: x kB\n", "MemTotal: 16\n",
          "MemTotal: 16 MB\n", "MemTotal: -16 kB\n", "MemTotal: 16 kB free\n", "MemTotal 16 kB\n",
          "MemTotal: 99999999999999999999999 kB\n"}) {
        SCOPED_TRACE(content);
        tree.write("proc/meminfo", content);
        EXPECT_EQ(system.physicalMemory(), 0U);
    }
}

// States

TEST_F(LinuxSystemInformationTest, TheThermalStateIsThatOfTheThermalZones) {
    EXPECT_EQ(system.thermalState(), std::nullopt);
    tree.write("sys/class/thermal/thermal_zone0/temp", "91000\n");
    EXPECT_EQ(system.thermalState(), 0);
    tree.write("sys/class/thermal/thermal_zone0/trip_point_0_type", "hot\n");
    tree.write("sys/class/thermal/thermal_zone0/trip_point_0_temp", "90000\n");
    EXPECT_EQ(system.thermalState(), 2);
}

TEST_F(LinuxSystemInformationTest, OnlyTheLowPowerProfileIsLowPowerMode) {
    for (const auto& [profile, expected] : {std::pair{"low-power\n", true},
                                            {"low-power", true},
                                            {"balanced\n", false},
                                            {"performance\n", false},
                                            {"quiet\n", false},
                                            {"cool\n", false},
                                            {"balanced-performance\n", false},
                                            {"low-power balanced\n", false},
                                            {"Low-Power\n", false},
                                            {"\n", false},
                                            {"", false}}) {
        SCOPED_TRACE(profile);
        tree.write("sys/firmware/acpi/platform_profile", profile);
        EXPECT_EQ(system.isLowPowerModeEnabled(), expected);
    }
}

TEST_F(LinuxSystemInformationTest, FactsAreReadAfreshAtEveryCall) {
    tree.write("sys/devices/system/cpu/online", "0-3\n");
    EXPECT_EQ(system.activeProcessorCount(), 4);
    tree.write("sys/devices/system/cpu/online", "0-1\n");
    EXPECT_EQ(system.activeProcessorCount(), 2);
    tree.write("sys/firmware/acpi/platform_profile", "low-power\n");
    EXPECT_TRUE(system.isLowPowerModeEnabled());
    tree.remove("sys/firmware/acpi/platform_profile");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
}

void expectNothingKnown(const LinuxSystemInformation& system) {
    EXPECT_EQ(system.systemBytes(processorName), std::nullopt);
    EXPECT_EQ(system.systemBytes("hw.model"), std::nullopt);
    EXPECT_EQ(system.activeProcessorCount(), 0);
    EXPECT_EQ(system.physicalMemory(), 0U);
    EXPECT_EQ(system.thermalState(), std::nullopt);
    EXPECT_FALSE(system.isLowPowerModeEnabled());
}

TEST_F(LinuxSystemInformationTest, NothingIsKnownUnderAnEmptyRoot) { expectNothingKnown(system); }

TEST_F(LinuxSystemInformationTest, NothingIsKnownUnderAMissingRoot) {
    expectNothingKnown(LinuxSystemInformation(tree.root() / "missing"));
}

TEST_F(LinuxSystemInformationTest, NothingIsKnownFromDirectoriesInThePlaceOfFiles) {
    for (const std::string_view file :
         {"proc/cpuinfo", "proc/meminfo", "proc/device-tree/model", "sys/class/dmi/id/product_name",
          "sys/devices/system/cpu/online", "sys/class/thermal/thermal_zone0/temp",
          "sys/firmware/acpi/platform_profile"}) {
        tree.makeDirectory(file);
    }
    expectNothingKnown(system);
}

TEST_F(LinuxSystemInformationTest, AFilledTreeGivesTheNativeReadings) {
    tree.write("proc/cpuinfo", "processor\t: 0\nmodel name\t: Some Processor\n");
    tree.write("proc/meminfo", "MemTotal:       16777216 kB\n");
    tree.write("proc/sys/kernel/arch", "x86_64\n");
    tree.write("sys/devices/system/cpu/online", "0-7\n");
    tree.write("sys/class/thermal/thermal_zone0/temp", "45000\n");
    tree.write("sys/firmware/acpi/platform_profile", "low-power\n");
    std::vector<std::string> values;
    for (const SMCReading& reading : NativeMacSupport(system).readings())
        values.push_back(reading.key + " " + reading.value);
    EXPECT_EQ(system.thermalStateName(), "Thermal State");
    EXPECT_THAT(values, ElementsAre("NCPU Some Processor", "NARC x86_64", "NCOR 8", "NRAM 16.0",
                                    "NTHR Nominal", "NLPM Enabled"));
}

TEST_F(LinuxSystemInformationTest, ADeviceTreeModelIsReadWithoutItsZeroByte) {
    tree.write("proc/device-tree/model", "Some Board Rev 1.1\0"s);
    EXPECT_EQ(NativeMacSupport(system).sysctlString("hw.model"), "Some Board Rev 1.1");
}

TEST_F(LinuxSystemInformationTest, FirmwareWithoutALowPowerProfileSavesPowerByAQuietOne) {
    tree.write("sys/firmware/acpi/platform_profile", "quiet\n");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
    tree.write("sys/firmware/acpi/platform_profile_choices", "low-power quiet balanced\n");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
    tree.write("sys/firmware/acpi/platform_profile_choices", "quiet balanced performance\n");
    EXPECT_TRUE(system.isLowPowerModeEnabled());
    tree.write("sys/firmware/acpi/platform_profile", "balanced\n");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
}

TEST_F(LinuxSystemInformationTest, WithoutAProfileTheProcessorsEnergyPreferenceTells) {
    const auto* const preference = "sys/devices/system/cpu/cpufreq/policy0/energy_performance_preference";
    tree.write(preference, "power\n");
    EXPECT_TRUE(system.isLowPowerModeEnabled());
    tree.write(preference, "balance_power\n");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
    tree.write(preference, "power\n");
    tree.write("sys/firmware/acpi/platform_profile", "balanced\n");
    EXPECT_FALSE(system.isLowPowerModeEnabled());
}

} // namespace
} // namespace kelvinbar::linux_system_information_test
