#include "machines/linux/applesmc/AppleSMCDetection.h"

#include "smc/SMCKeyText.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/linux/applesmc/FakeAppleSMC.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::apple_smc_detection_test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

class DetectedAppleSMCTest : public testing::Test {
  protected:
    void plugIn() {
        hasController = true;
        controller.add("TC0P", "sp78", {0x28, 0x80});
        controller.add("FNum", "ui8", {2});
    }

    std::vector<std::string> listed() {
        std::vector<std::string> names;
        const std::size_t count = keys.keyCount();
        for (std::uint32_t index = 0; index < count; ++index) {
            names.push_back(fourCharString(keys.keyAtIndex(index).value_or(0)));
        }
        EXPECT_EQ(keys.keyAtIndex(static_cast<std::uint32_t>(count)), std::nullopt);
        return names;
    }

    fakes::FakeAppleSMC controller;
    bool hasController = false;
    int searchCount = 0;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    DetectedAppleSMC keys{[this]() -> std::unique_ptr<AppleSMCRegisters> {
                              ++searchCount;
                              if (!hasController) return nullptr;
                              return std::make_unique<fakes::FakeAppleSMCRegisters>(controller);
                          },
                          clock};
};

TEST_F(DetectedAppleSMCTest, ShowsTheControllersKeysTypesAndBytes) {
    plugIn();
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(), ElementsAre("TC0P", "FNum"));
    const auto info = keys.keyInfo(packedSMCKey("TC0P"));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->dataSize, 2U);
    EXPECT_EQ(info->dataType, packedSMCKey("sp78"));
    SMCBytes bytes{};
    EXPECT_EQ(keys.readBytes(packedSMCKey("TC0P"), bytes), smcresult::success);
    EXPECT_EQ(bytes, (SMCBytes{0x28, 0x80}));
}

TEST_F(DetectedAppleSMCTest, HasNothingWithoutAController) {
    EXPECT_FALSE(keys.isPresent());
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0P")), std::nullopt);
    SMCBytes bytes{};
    EXPECT_EQ(keys.readBytes(packedSMCKey("TC0P"), bytes), smcresult::keyNotFound);
    EXPECT_EQ(bytes, SMCBytes{});
}

TEST_F(DetectedAppleSMCTest, AMachineWithoutAControllerSearchesForOneEverySixtySeconds) {
    EXPECT_EQ(DetectedAppleSMC::searchInterval, 60s);
    for (int second = 0; second < 180; ++second) {
        EXPECT_FALSE(keys.isPresent());
        EXPECT_EQ(keys.keyCount(), 0U);
        clock->advance(1s);
    }
    EXPECT_EQ(searchCount, 3);
}

TEST_F(DetectedAppleSMCTest, AControllerIsFoundAtMostAMinuteAfterItsDriverWasLoaded) {
    EXPECT_FALSE(keys.isPresent());
    plugIn();
    clock->advance(60s - 1ns);
    EXPECT_FALSE(keys.isPresent());
    clock->advance(1ns);
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(), ElementsAre("TC0P", "FNum"));
}

TEST_F(DetectedAppleSMCTest, AControllerThatWasFoundIsNotSearchedForAgain) {
    plugIn();
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_TRUE(keys.isPresent());
        EXPECT_EQ(keys.keyCount(), 2U);
        clock->advance(5min);
    }
    EXPECT_EQ(searchCount, 1);
}

TEST_F(DetectedAppleSMCTest, AControllerThatListsNoKeysHasGoneAndIsFoundAgainWhenItReturns) {
    plugIn();
    EXPECT_THAT(listed(), ElementsAre("TC0P", "FNum"));
    controller.announcedCount = 0;
    hasController = false;
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_FALSE(keys.isPresent());
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0P")), std::nullopt);
    clock->advance(60s);
    EXPECT_FALSE(keys.isPresent());
    controller.announcedCount.reset();
    hasController = true;
    clock->advance(60s);
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(), ElementsAre("TC0P", "FNum"));
}

// The driver's files

class OpenAppleSMC : public testing::Test {
  protected:
    /// Creates the driver's files, on the chip itself or on its device.
    void addDriver(std::string_view folder) {
        const fs::path place = chip / folder;
        tree.write(place / "name", "applesmc\n");
        tree.write(place / "key_count", "1\n");
        tree.write(place / "key_at_index", "0\n");
        tree.write(place / "key_at_index_name", "TC0P\n");
        tree.write(place / "key_at_index_type", "sp78\n");
        tree.write(place / "key_at_index_data_length", "2\n");
        tree.write(place / "key_at_index_data", "\x28\x80");
    }

    std::unique_ptr<AppleSMCRegisters> opened() { return openAppleSMC(tree.root(), log.log); }

    fakes::TemporaryTree tree;
    fs::path chip = "sys/class/hwmon/hwmon5";
    fakes::RecordingLog log;
};

TEST_F(OpenAppleSMC, FindsTheFilesOnTheChipOrOnItsDevice) {
    for (const std::string_view folder : {"", "device"}) {
        SCOPED_TRACE(folder);
        tree.remove("sys");
        addDriver(folder);
        const auto registers = opened();
        ASSERT_NE(registers, nullptr);
        EXPECT_EQ(registers->keyCount(), 1U);
        EXPECT_EQ(registers->keyName(), "TC0P");
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OpenAppleSMC, DoesNotTakeFilesOfTheSameNameOnAnotherChip) {
    addDriver("device");
    tree.write(chip / "device/name", "another\n");
    EXPECT_EQ(opened(), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OpenAppleSMC, LogsOnceThatKeysCannotBeChosen) {
    addDriver("device");
    tree.remove(chip / "device/key_at_index");
    tree.makeDirectory(chip / "device/key_at_index"); // cannot be written, not even by root
    for (int search = 0; search < 3; ++search) EXPECT_EQ(opened(), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("key_at_index")));
}

TEST_F(OpenAppleSMC, LogsToAUserWhoMayNotChooseKeys) {
    if (::geteuid() == 0) GTEST_SKIP() << "the administrator may write everything";
    addDriver("device");
    fs::permissions(tree.root() / chip / "device/key_at_index", fs::perms::owner_read);
    EXPECT_EQ(opened(), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("key_at_index")));
}

TEST_F(OpenAppleSMC, LogsNothingForADriverThatShowsNoKeysAndForNone) {
    tree.write(chip / "device/name", "applesmc\n");
    EXPECT_EQ(opened(), nullptr);
    tree.remove("sys");
    EXPECT_EQ(opened(), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace kelvinbar::apple_smc_detection_test
