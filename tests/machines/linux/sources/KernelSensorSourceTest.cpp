#include "machines/linux/sources/LinuxKeys.h"

#include "smc/SMCKeyText.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/linux/applesmc/FakeAppleSMC.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LinuxKeysTest : public testing::Test {
  protected:
    void addController() {
        hasController = true;
        controller.add("TC0P", "sp78", {0x28, 0x80});
        controller.add("FNum", "ui8", {2});
    }

    /// A chip with one temperature of 45 °C, and the file of that.
    fs::path addChip(int number, std::string_view name, std::string_view label, std::string_view device) {
        const fs::path folder =
            fs::path("sys/class/hwmon") / std::string("hwmon").append(std::to_string(number));
        tree.write(folder / "name", std::string(name).append("\n"));
        tree.write(folder / "device/uevent", std::string("DEVICE=").append(device).append("\n"));
        tree.write(folder / "temp1_label", std::string(label).append("\n"));
        return tree.write(folder / "temp1_input", "45000\n");
    }

    fs::path addPackage() { return addChip(0, "coretemp", "Package id 0", "coretemp.0"); }

    fs::path addDrive() { return addChip(1, "nvme", "Composite", "0000:01:00.0"); }

    /// The driver's chip of a controller whose keys can be listed or not.
    void addDriver(std::string_view folder) {
        const fs::path place = "sys/class/hwmon/hwmon5" / fs::path(folder);
        tree.write(place / "name", "applesmc\n");
        tree.write(place / "temp1_label", "TC0P\n");
        tree.write(place / "temp1_input", "40500\n");
        tree.write(place / "key_count", "1\n");
        tree.write(place / "key_at_index", "0\n");
        tree.write(place / "key_at_index_name", "TC0P\n");
        tree.write(place / "key_at_index_type", "sp78\n");
        tree.write(place / "key_at_index_data_length", "2\n");
        tree.write(place / "key_at_index_data", "\x28\x80");
    }

    /// The keys by index, as many as were counted.
    std::vector<std::string> listed(LinuxKeys& source) {
        std::vector<std::string> names;
        const std::size_t count = source.keyCount();
        for (std::uint32_t index = 0; index < count; ++index) {
            const auto code = source.keyAtIndex(index);
            names.push_back(code ? fourCharString(*code) : "(none)");
        }
        EXPECT_EQ(source.keyAtIndex(static_cast<std::uint32_t>(count)), std::nullopt);
        return names;
    }

    static std::optional<SMCBytes> read(LinuxKeys& source, std::string_view key) {
        SMCBytes bytes{};
        const bool isRead = source.readBytes(packedSMCKey(key), bytes) == smcresult::success;
        return isRead ? std::optional(bytes) : std::nullopt;
    }

    static bool isKnown(LinuxKeys& source, std::string_view key) {
        return source.keyInfo(packedSMCKey(key)).has_value();
    }

    /// Keys whose controller is the driver's in the tree.
    LinuxKeys keysOfTree() {
        return {inventory, [this] { return openAppleSMC(*inventory); }};
    }

    static constexpr SMCBytes degrees45{0x00, 0x00, 0x34, 0x42}; ///< 45 as a little-endian float

    fakes::TemporaryTree tree;
    fakes::FakeAppleSMC controller;
    bool hasController = false;
    int openCount = 0;
    std::vector<std::string> messages;
    std::shared_ptr<SensorInventory> inventory = std::make_shared<SensorInventory>(
        tree.root(), std::make_shared<fakes::FakeMonotonicClock>(),
        [this](const std::string& message) { messages.push_back(message); });
    LinuxKeys keys{inventory, [this]() -> std::unique_ptr<AppleSMCRegisters> {
                       ++openCount;
                       if (!hasController) return nullptr;
                       return std::make_unique<fakes::FakeAppleSMCRegisters>(controller);
                   }};
};

// Both sources

TEST_F(LinuxKeysTest, TheControllersKeysComeFirstAndTheSensorsFollowInAscendingOrder) {
    addController();
    addDrive();
    addPackage();
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum", "TC0T", "TN0P"));
}

TEST_F(LinuxKeysTest, EitherSourceWillDo) {
    EXPECT_FALSE(keys.isPresent());
    EXPECT_THAT(listed(keys), IsEmpty());
    addPackage();
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(keys), ElementsAre("TC0T"));
    tree.remove("sys");
    addController();
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum"));
}

TEST_F(LinuxKeysTest, InformationAndBytesComeFromTheSourceThatHasTheKey) {
    addController();
    addPackage();
    keys.keyCount();
    ASSERT_TRUE(isKnown(keys, "TC0P"));
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0P"))->dataSize, 2U);
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0P"))->dataType, packedSMCKey("sp78"));
    EXPECT_EQ(read(keys, "TC0P"), (SMCBytes{0x28, 0x80}));
    ASSERT_TRUE(isKnown(keys, "TC0T"));
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0T"))->dataSize, 4U);
    EXPECT_EQ(keys.keyInfo(packedSMCKey("TC0T"))->dataType, packedSMCKey("flt "));
    EXPECT_EQ(read(keys, "TC0T"), degrees45);
}

TEST_F(LinuxKeysTest, KeysOfNeitherSourceAreNotFound) {
    SMCBytes bytes{};
    addPackage();
    keys.keyCount();
    EXPECT_FALSE(isKnown(keys, "TC9P"));
    EXPECT_EQ(keys.readBytes(packedSMCKey("TC9P"), bytes), smcresult::keyNotFound);
    addController();
    keys.keyCount();
    EXPECT_FALSE(isKnown(keys, "TC9P"));
    EXPECT_EQ(keys.readBytes(packedSMCKey("TC9P"), bytes), smcresult::keyNotFound);
}

TEST_F(LinuxKeysTest, KeysCanBeReadInAnyOrder) {
    addPackage();
    addDrive();
    addChip(2, "coretemp", "Core 0", "coretemp.0");
    EXPECT_THAT(listed(keys), ElementsAre("TC0C", "TC0T", "TN0P"));
    for (const std::string_view key : {"TN0P", "TC0C", "TC0T", "TC0T", "TC0C", "TN0P", "TN0P"}) {
        SCOPED_TRACE(key);
        EXPECT_TRUE(isKnown(keys, key));
        EXPECT_EQ(read(keys, key), degrees45);
        EXPECT_FALSE(isKnown(keys, "TC9P"));
    }
}

TEST_F(LinuxKeysTest, WhatTheControllerTellsIsNotToldOnceMoreByASensor) {
    addController();
    controller.add("TW0P", "sp78", {0x29, 0x00});
    addChip(0, "iwlwifi_1", "temp1", "0000:02:00.0");
    addDrive();
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum", "TW0P", "TN0P"));
    EXPECT_EQ(read(keys, "TW0P"), (SMCBytes{0x29, 0x00}));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(LinuxKeysTest, ASensorGetsAnotherKeyThanTheOneThatTheControllerHas) {
    addController();
    controller.add("TC0T", "sp78", {0x30, 0x00});
    addPackage();
    const auto names = listed(keys);
    ASSERT_EQ(names.size(), 4U);
    EXPECT_EQ(std::ranges::count(names, "TC0T"), 1);
    EXPECT_EQ(read(keys, "TC0T"), (SMCBytes{0x30, 0x00}));
    EXPECT_EQ(read(keys, names[3]), degrees45);
}

TEST_F(LinuxKeysTest, TheDriversOwnChannelsAreLeftOutBesideTheController) {
    addController();
    addDriver("device");
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum"));
}

// Devices that come and go

TEST_F(LinuxKeysTest, ADeviceThatAppearsIsFoundWhenTheKeysAreCountedNext) {
    addPackage();
    EXPECT_EQ(keys.keyCount(), 1U);
    addDrive();
    EXPECT_FALSE(isKnown(keys, "TN0P"));
    EXPECT_EQ(keys.keyAtIndex(1), std::nullopt);
    EXPECT_EQ(keys.keyCount(), 2U);
    EXPECT_EQ(read(keys, "TN0P"), degrees45);
}

TEST_F(LinuxKeysTest, AKeyWhoseDeviceHasGoneIsRefusedAtOnceAndUnknownAfterTheNextCount) {
    addPackage();
    addDrive();
    EXPECT_THAT(listed(keys), ElementsAre("TC0T", "TN0P"));
    tree.write("sys/class/hwmon/hwmon1/temp1_input", "");
    SMCBytes bytes{};
    EXPECT_NE(keys.readBytes(packedSMCKey("TN0P"), bytes), smcresult::success);
    EXPECT_EQ(bytes, SMCBytes{});
    EXPECT_EQ(read(keys, "TC0T"), degrees45);
    tree.remove("sys/class/hwmon/hwmon1");
    EXPECT_THAT(listed(keys), ElementsAre("TC0T"));
    EXPECT_FALSE(isKnown(keys, "TN0P"));
    EXPECT_EQ(keys.readBytes(packedSMCKey("TN0P"), bytes), smcresult::keyNotFound);
}

TEST_F(LinuxKeysTest, ADeviceThatReturnsUnderAnotherNumberHasItsKeyBack) {
    addPackage();
    addDrive();
    addChip(2, "nvme", "Composite", "0000:02:00.0");
    EXPECT_THAT(listed(keys), ElementsAre("TC0T", "TN0P", "TN1P"));
    tree.remove("sys/class/hwmon/hwmon1");
    EXPECT_THAT(listed(keys), ElementsAre("TC0T", "TN1P"));
    addChip(7, "nvme", "Composite", "0000:01:00.0");
    tree.write("sys/class/hwmon/hwmon2/temp1_input", "");
    EXPECT_THAT(listed(keys), ElementsAre("TC0T", "TN0P", "TN1P"));
    EXPECT_EQ(read(keys, "TN0P"), degrees45);
    EXPECT_EQ(read(keys, "TN1P"), std::nullopt);
}

TEST_F(LinuxKeysTest, CountingRightAfterFindingDoesNotLookForDevicesOnceMore) {
    addPackage();
    EXPECT_TRUE(keys.isPresent());
    EXPECT_EQ(openCount, 1);
    addDrive();
    EXPECT_EQ(keys.keyCount(), 1U);
    EXPECT_EQ(openCount, 1);
    EXPECT_EQ(keys.keyCount(), 2U) << "the count after that looks again";
    EXPECT_EQ(openCount, 2);
}

// A controller that comes and goes

TEST_F(LinuxKeysTest, AControllerThatIsOpenIsNotOpenedOnceMore) {
    addController();
    EXPECT_TRUE(keys.isPresent());
    keys.keyCount();
    keys.keyCount();
    EXPECT_EQ(openCount, 1);
}

TEST_F(LinuxKeysTest, WhenTheControllerGoesItsDriversChannelsAndTheSensorsRemain) {
    addController();
    addDriver("device");
    addDrive();
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum", "TN0P"));
    controller.announcedCount = 0;
    hasController = false;
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "TN0P"));
    EXPECT_EQ(read(keys, "TC0P"), (SMCBytes{0x28, 0x80})) << "40.5 °C in the controller's own type";
    EXPECT_FALSE(isKnown(keys, "FNum"));
    EXPECT_TRUE(keys.isPresent());
}

TEST_F(LinuxKeysTest, AControllerThatReturnsIsFoundWhenTheKeysAreCountedNext) {
    addController();
    keys.keyCount();
    controller.announcedCount = 0;
    EXPECT_EQ(keys.keyCount(), 0U);
    EXPECT_FALSE(isKnown(keys, "TC0P"));
    controller.announcedCount.reset();
    EXPECT_THAT(listed(keys), ElementsAre("TC0P", "FNum"));
    EXPECT_EQ(read(keys, "TC0P"), (SMCBytes{0x28, 0x80}));
    EXPECT_GE(openCount, 2);
}

TEST_F(LinuxKeysTest, AControllerWithoutKeysIsNone) {
    hasController = true;
    EXPECT_FALSE(keys.isPresent());
    addPackage();
    EXPECT_TRUE(keys.isPresent());
    EXPECT_THAT(listed(keys), ElementsAre("TC0T"));
}

// The driver's files

TEST_F(LinuxKeysTest, TheDriversFilesAreFoundOnTheChipOrOnItsDevice) {
    for (const std::string_view folder : {"", "device"}) {
        SCOPED_TRACE(folder);
        tree.remove("sys");
        addDriver(folder);
        LinuxKeys source = keysOfTree();
        EXPECT_THAT(listed(source), ElementsAre("TC0P"));
        EXPECT_EQ(source.keyInfo(packedSMCKey("TC0P"))->dataType, packedSMCKey("sp78"));
        EXPECT_EQ(read(source, "TC0P"), (SMCBytes{0x28, 0x80}));
    }
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(LinuxKeysTest, FilesOfTheSameNameOnAnotherChipAreNotTheControllers) {
    addDriver("device");
    tree.write("sys/class/hwmon/hwmon5/device/name", "another\n");
    EXPECT_EQ(openAppleSMC(*inventory), nullptr);
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(LinuxKeysTest, KeysThatCannotBeListedAreSpokenOfOnce) {
    addDriver("device");
    tree.remove("sys/class/hwmon/hwmon5/device/key_at_index");
    tree.makeDirectory("sys/class/hwmon/hwmon5/device/key_at_index");
    LinuxKeys source = keysOfTree();
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_TRUE(source.isPresent());
        EXPECT_THAT(listed(source), ElementsAre("TC0P"));
    }
    EXPECT_EQ(source.keyCount(), 1U);
    EXPECT_EQ(read(source, "TC0P"), (SMCBytes{0x28, 0x80}));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("key_at_index")));
}

TEST_F(LinuxKeysTest, AUserWhoMayNotChooseKeysIsToldSo) {
    if (::geteuid() == 0) GTEST_SKIP() << "the administrator may write everything";
    addDriver("device");
    fs::permissions(tree.root() / "sys/class/hwmon/hwmon5/device/key_at_index", fs::perms::owner_read);
    EXPECT_EQ(openAppleSMC(*inventory), nullptr);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("key_at_index")));
}

TEST_F(LinuxKeysTest, ADriverThatShowsNoKeysIsNotSpokenOf) {
    tree.write("sys/class/hwmon/hwmon5/device/name", "applesmc\n");
    EXPECT_EQ(openAppleSMC(*inventory), nullptr);
    tree.remove("sys");
    EXPECT_EQ(openAppleSMC(*inventory), nullptr);
    EXPECT_THAT(messages, IsEmpty());
}

} // namespace

} // namespace kelvinbar
