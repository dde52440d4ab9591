#include "machines/linux/doctor/DriverFindings.h"

#include "base/Text.h"
#include "sensors/ReadWatch.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/machines/linux/SystemCalls.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::driver_findings_test {

namespace {

/// A machine that has what a test adds to it.
class DriverFindingsTest : public testing::Test {
  protected:
    void addProcessor(std::string_view vendor, std::string_view flags = "fpu sse2") {
        machine.tree().write("proc/cpuinfo", "processor\t: 0\nvendor_id\t: " + std::string(vendor) +
                                                 "\nflags\t\t: " + std::string(flags) + "\n");
    }

    void addChip(std::string_view name, std::string_view folder = "platform/some.0/hwmon/hwmon9") {
        machine.add("chip devices/" + std::string(folder) + "\nname " + std::string(name) + "\n");
    }

    void addModule(const std::string& module) { machine.tree().makeDirectory("sys/module/" + module); }

    void addBoard(std::string_view vendor, std::string_view chassis, std::string_view systemVendor = "") {
        machine.tree().write("sys/class/dmi/id/board_vendor", std::string(vendor) + "\n");
        machine.tree().write("sys/class/dmi/id/chassis_type", std::string(chassis) + "\n");
        machine.tree().write("sys/class/dmi/id/sys_vendor", std::string(systemVendor) + "\n");
    }

    void addDrive(std::string_view name, std::string_view vendor) {
        machine.tree().write(std::filesystem::path("sys/block") / name / "device/vendor",
                             std::string(vendor) + "\n");
    }

    /// A PCI device in the first slot.
    void addCard(std::string_view vendor, std::string_view classCode, const std::string& driver) {
        const std::filesystem::path card = "sys/bus/pci/devices/0000:01:00.0";
        machine.tree().write(card / "vendor", std::string(vendor) + "\n");
        machine.tree().write(card / "class", std::string(classCode) + "\n");
        if (driver.empty()) return;
        std::filesystem::create_symlink("../../../bus/pci/drivers/" + driver,
                                        machine.root() / card / "driver");
    }

    /// The finding on a subject; no value without one.
    [[nodiscard]] std::optional<Finding> finding(std::string_view subject) const {
        const auto findings = driverFindings(machine.root());
        const auto found = std::ranges::find(findings, subject, &Finding::subject);
        return found == findings.end() ? std::nullopt : std::optional(*found);
    }

    /// Expects a driver to be missing, and its command.
    void expectMissing(std::string_view subject, const std::string& module) const {
        const auto missing = finding(subject);
        ASSERT_TRUE(missing);
        EXPECT_EQ(missing->state, FindingState::problem);
        EXPECT_EQ(missing->found, "the driver " + module + " is not loaded");
        EXPECT_TRUE(contains(missing->advice, "\"sudo modprobe " + module + "\"")) << missing->advice;
    }

    void expectReadThrough(std::string_view subject, const std::string& chip) const {
        const auto read = finding(subject);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->state, FindingState::good);
        EXPECT_EQ(read->found, "read through " + chip);
        EXPECT_EQ(read->advice, "");
    }

    fakes::RecordedTree machine;
};

TEST_F(DriverFindingsTest, ThereAreNoneOnAMachineOfWhichNothingIsKnown) {
    EXPECT_TRUE(driverFindings(machine.root()).empty());
}

// Processors

TEST_F(DriverFindingsTest, AProcessorsDriverFollowsFromItsVendor) {
    addProcessor("GenuineIntel");
    expectMissing("processor", "coretemp");
    addProcessor("AuthenticAMD");
    expectMissing("processor", "k10temp");
    addProcessor("CentaurHauls");
    expectMissing("processor", "via-cputemp");
    addProcessor("UnknownVendor");
    EXPECT_FALSE(finding("processor"));
}

TEST_F(DriverFindingsTest, AProcessorIsReadThroughItsChip) {
    addProcessor("AuthenticAMD");
    addChip("coretemp");
    expectMissing("processor", "k10temp"); // the chip of another vendor
    addChip("zenpower", "platform/zenpower.0/hwmon/hwmon1");
    expectReadThrough("processor", "zenpower");
}

TEST_F(DriverFindingsTest, AProcessorThatItsDriverDoesNotKnowNeedsNoCommand) {
    addProcessor("GenuineIntel");
    addModule("coretemp");
    const auto processor = finding("processor");
    ASSERT_TRUE(processor);
    EXPECT_EQ(processor->state, FindingState::note);
    EXPECT_EQ(processor->advice, "");
}

TEST_F(DriverFindingsTest, AVirtualMachineNeedsNoDrivers) {
    addProcessor("GenuineIntel", "fpu hypervisor sse2");
    addBoard("ASUSTeK COMPUTER INC.", "3");
    addDrive("sda", "ATA");
    const auto findings = driverFindings(machine.root());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].found, "virtual; the sensors belong to its host");
    EXPECT_EQ(findings[0].state, FindingState::note);
}

// Mainboards

TEST_F(DriverFindingsTest, ADesktopWithoutAMonitoringChipProbablyMissesItsDriver) {
    addBoard("ASUSTeK COMPUTER INC.", "3");
    expectMissing("mainboard", "nct6775");
    EXPECT_TRUE(contains(finding("mainboard")->advice, "sensors-detect"));
    addBoard("Gigabyte Technology Co., Ltd.", "7");
    expectMissing("mainboard", "it87");
}

TEST_F(DriverFindingsTest, ANotebookNeedsNoMonitoringChip) {
    addBoard("LENOVO", "10");
    EXPECT_FALSE(finding("mainboard"));
}

TEST_F(DriverFindingsTest, AMainboardIsReadThroughAnyMonitoringChip) {
    addBoard("ASRock", "3");
    addChip("k10temp", "platform/k10temp.0/hwmon/hwmon0");
    expectMissing("mainboard", "nct6775");
    addChip("f71882fg");
    expectReadThrough("mainboard", "f71882fg");
}

TEST_F(DriverFindingsTest, AMainboardWithAnotherChipThanItsDriverKnowsNeedsAnotherDriver) {
    addBoard("ASRock", "3");
    addModule("nct6775");
    const auto mainboard = finding("mainboard");
    ASSERT_TRUE(mainboard);
    EXPECT_EQ(mainboard->state, FindingState::note);
    EXPECT_FALSE(contains(mainboard->advice, "modprobe"));
    EXPECT_TRUE(contains(mainboard->advice, "sensors-detect"));
}

TEST_F(DriverFindingsTest, AnAppleComputerNeedsTheDriverOfItsController) {
    addBoard("Apple Inc.", "3", "Apple Inc.");
    expectMissing("Apple's controller", "applesmc");
    EXPECT_FALSE(finding("mainboard"));
    addChip("applesmc");
    EXPECT_FALSE(finding("Apple's controller"));
}

// Drives

TEST_F(DriverFindingsTest, SataDrivesNeedADriver) {
    addDrive("sda", "ATA");
    expectMissing("SATA drives", "drivetemp");
    addChip("drivetemp");
    expectReadThrough("SATA drives", "drivetemp");
}

TEST_F(DriverFindingsTest, OtherDrivesNeedNone) {
    addDrive("sda", "SanDisk"); // on USB
    addDrive("nvme0n1", "ATA");
    EXPECT_FALSE(finding("SATA drives"));
}

TEST_F(DriverFindingsTest, DrivesThatTellNothingNeedNoCommand) {
    addDrive("sda", "ATA");
    addModule("drivetemp");
    EXPECT_EQ(finding("SATA drives")->state, FindingState::note);
}

// Energy counters

TEST_F(DriverFindingsTest, ProcessorsWithEnergyCountersMayLackTheirDriver) {
    for (const char* const vendor : {"GenuineIntel", "AuthenticAMD"}) {
        addProcessor(vendor);
        const auto counters = finding("energy counters");
        ASSERT_TRUE(counters);
        EXPECT_EQ(counters->advice, "Load it with \"sudo modprobe intel_rapl_msr\"");
    }
    machine.tree().makeDirectory("sys/class/powercap/intel-rapl");
    EXPECT_FALSE(finding("energy counters"));
}

// NVIDIA

TEST_F(DriverFindingsTest, AnNvidiaCardWithItsOwnDriverPublishesNothing) {
    addCard("0x10de", "0x030000", "nvidia");
    const auto card = finding("NVIDIA graphics card");
    ASSERT_TRUE(card);
    EXPECT_EQ(card->state, FindingState::problem);
    EXPECT_EQ(card->found, "its own driver publishes no sensor to the kernel");
    EXPECT_TRUE(contains(card->advice, "nouveau"));
}

TEST_F(DriverFindingsTest, AnNvidiaCardIsAlsoFoundInAVirtualMachine) {
    addProcessor("GenuineIntel", "hypervisor");
    addCard("0x10de", "0x030200", "nvidia");
    EXPECT_TRUE(finding("NVIDIA graphics card"));
}

TEST_F(DriverFindingsTest, AnNvidiaCardWithASensorOrWithoutADriverIsNoProblem) {
    addCard("0x10de", "0x030000", "");
    EXPECT_EQ(finding("NVIDIA graphics card")->state, FindingState::note);
    machine.tree().makeDirectory("sys/bus/pci/devices/0000:01:00.0/hwmon/hwmon3");
    EXPECT_FALSE(finding("NVIDIA graphics card"));
}

TEST_F(DriverFindingsTest, OtherCardsAndOtherDevicesOfNvidiaDoNotCount) {
    addCard("0x10de", "0x040300", "snd_hda_intel");
    EXPECT_FALSE(finding("NVIDIA graphics card"));
    machine.tree().write("sys/bus/pci/devices/0000:01:00.0/class", "0x030000\n");
    machine.tree().write("sys/bus/pci/devices/0000:01:00.0/vendor", "0x1002\n");
    EXPECT_FALSE(finding("NVIDIA graphics card"));
}

// Files that do not answer

class StalledDriverFindingsTest : public DriverFindingsTest,
                                  public testing::WithParamInterface<const char*> {};

TEST_P(StalledDriverFindingsTest, AbandonThePassAndAreLeftOutOfTheNext) {
    addChip("k10temp");
    addProcessor("AuthenticAMD");
    addBoard("ASRock", "3", "ASRock");
    addDrive("sda", "ATA");
    addCard("0x10de", "0x030000", "nvidia");
    fakes::RecordingLog log;
    const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
    const auto watch = std::make_shared<ReadWatch>(clock, log.log, std::chrono::seconds(2));
    const auto look = [&](WatchedPass& pass) {
        const WatchedPass::Scope scope(pass);
        static_cast<void>(driverFindings(machine.root()));
    };
    WatchedPass stuck(watch);
    std::thread reader;
    {
        const fakes::StalledFile file(machine.root() / GetParam());
        reader = std::thread([&] { look(stuck); });
        file.waitForVictim();
        clock->advance(watch->limit());
        watch->setAsideSilentDevices();
        EXPECT_TRUE(stuck.isAbandoned());
        WatchedPass next(watch);
        look(next);
        EXPECT_EQ(next.silentDevices().size(), 1U);
    }
    reader.join();
}

INSTANTIATE_TEST_SUITE_P(All, StalledDriverFindingsTest,
                         testing::Values("sys/class/hwmon/hwmon9/name", "proc/cpuinfo",
                                         "sys/class/dmi/id/chassis_type", "sys/class/dmi/id/board_vendor",
                                         "sys/block/sda/device/vendor",
                                         "sys/bus/pci/devices/0000:01:00.0/class"),
                         [](const auto& file) {
                             std::string name = file.param;
                             std::ranges::replace_if(
                                 name, [](char each) { return !isAsciiAlphanumeric(each); }, '_');
                             return name;
                         });

} // namespace

} // namespace kelvinbar::driver_findings_test
