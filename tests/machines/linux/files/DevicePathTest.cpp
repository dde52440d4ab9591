#include "machines/linux/files/DevicePath.h"

#include "machines/linux/files/SystemFile.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::device_path_test {

namespace {

namespace fs = std::filesystem;
using fakes::TemporaryTree;
using testing::ElementsAre;
using testing::IsEmpty;

class DevicePathTest : public testing::Test {
  protected:
    void link(const fs::path& path, const fs::path& target) {
        tree.makeDirectory(path.parent_path());
        fs::create_symlink(target, tree.root() / path);
    }

    /// Creates a device at `place` below sys/devices, with a class folder that links back to `device`, and
    /// the class's own link to that folder.
    void addDevice(const fs::path& place, std::string_view className, const fs::path& device) {
        const fs::path folder = "sys/devices" / place;
        tree.makeDirectory(folder);
        link(folder / "device", device);
        link(fs::path("sys/class") / className / place.filename(), "../../devices" / place);
    }

    [[nodiscard]] static std::string pathBelow(const fs::path& root, const fs::path& entry) {
        const fs::path place = root / "sys/class" / entry;
        return DeviceTree(root).pathOf(place, canonicalPath(place / "device"));
    }

    [[nodiscard]] std::string pathOf(const fs::path& entry) const { return pathBelow(tree.root(), entry); }

    [[nodiscard]] std::vector<std::string> namesOf(std::string_view className) const {
        std::vector<std::string> names;
        for (const fs::path& entry : classEntries(tree.root(), className)) {
            EXPECT_EQ(entry.parent_path(), tree.root() / "sys/class" / className);
            names.push_back(entry.filename().string());
        }
        return names;
    }

    TemporaryTree tree;
};

// Entries

TEST_F(DevicePathTest, EntriesOfAClassComeInNaturalOrder) {
    for (const std::string_view name : {"hwmon10", "hwmon2", "hwmon0", "hwmon1", "hwmon21", "hwmon3"}) {
        tree.makeDirectory(fs::path("sys/class/hwmon") / name);
    }
    tree.makeDirectory("sys/class/thermal/thermal_zone0");
    EXPECT_THAT(namesOf("hwmon"), ElementsAre("hwmon0", "hwmon1", "hwmon2", "hwmon3", "hwmon10", "hwmon21"));
}

TEST_F(DevicePathTest, EntriesThatAreLinksAreListedWhereverTheyLead) {
    tree.makeDirectory("sys/devices/platform/coretemp.0/hwmon/hwmon4");
    link("sys/class/hwmon/hwmon4", "../../devices/platform/coretemp.0/hwmon/hwmon4");
    link("sys/class/hwmon/hwmon5", "../../devices/gone/hwmon5");
    EXPECT_THAT(namesOf("hwmon"), ElementsAre("hwmon4", "hwmon5"));
}

TEST_F(DevicePathTest, AMissingClassHasNoEntries) {
    EXPECT_THAT(namesOf("hwmon"), IsEmpty());
    tree.write("sys/class/hwmon", "a file");
    EXPECT_THAT(namesOf("hwmon"), IsEmpty());
    tree.makeDirectory("sys/class/power_supply");
    EXPECT_THAT(namesOf("power_supply"), IsEmpty());
}

// Links as the kernel lays them out

TEST_F(DevicePathTest, AChipOfAPCIDeviceHasTheDevicesAddress) {
    addDevice("pci0000:00/0000:00:18.3/hwmon/hwmon3", "hwmon", "../../../0000:00:18.3");
    EXPECT_EQ(pathOf("hwmon/hwmon3"), "pci0000:00/0000:00:18.3");
}

TEST_F(DevicePathTest, AChipOfADriveControllerHasTheAddressAndNotTheControllersNumber) {
    addDevice("pci0000:00/0000:00:01.2/0000:01:00.0/nvme/nvme1/hwmon2", "hwmon", "../../nvme1");
    EXPECT_EQ(pathOf("hwmon/hwmon2"), "pci0000:00/0000:00:01.2/0000:01:00.0");
}

TEST_F(DevicePathTest, AChipOfAThermalZoneHasNeitherNumber) {
    addDevice("virtual/thermal/thermal_zone2/hwmon5", "hwmon", "../../thermal_zone2");
    EXPECT_EQ(pathOf("hwmon/hwmon5"), "virtual/thermal");
}

TEST_F(DevicePathTest, AChipOfAWirelessCardHasTheCardsAddress) {
    addDevice("pci0000:00/0000:02:00.0/ieee80211/phy1/hwmon6", "hwmon", "../../phy1");
    EXPECT_EQ(pathOf("hwmon/hwmon6"), "pci0000:00/0000:02:00.0");
}

TEST_F(DevicePathTest, AChipOfADriveHasTheDrivesPortAndAddress) {
    addDevice("pci0000:00/0000:00:17.0/ata3/host2/target2:0:0/2:0:0:0/hwmon/hwmon7", "hwmon",
              "../../../2:0:0:0");
    EXPECT_EQ(pathOf("hwmon/hwmon7"), "pci0000:00/0000:00:17.0/ata3/host2/target2:0:0/2:0:0:0");
}

TEST_F(DevicePathTest, AChipOfAPlatformDeviceHasItsName) {
    addDevice("platform/coretemp.1/hwmon/hwmon4", "hwmon", "../../../coretemp.1");
    EXPECT_EQ(pathOf("hwmon/hwmon4"), "platform/coretemp.1");
}

TEST_F(DevicePathTest, AChipWithoutADeviceOfItsOwnHasThePlaceOfItsFolder) {
    tree.makeDirectory("sys/devices/platform/board/hwmon/hwmon9");
    link("sys/class/hwmon/hwmon9", "../../devices/platform/board/hwmon/hwmon9");
    EXPECT_EQ(pathOf("hwmon/hwmon9"), "platform/board");
}

TEST_F(DevicePathTest, ThePathStaysWhenTheKernelNumbersAnew) {
    addDevice("pci0000:00/0000:01:00.0/nvme/nvme0/hwmon1", "hwmon", "../../nvme0");
    addDevice("pci0000:00/0000:00:18.3/hwmon/hwmon2", "hwmon", "../../../0000:00:18.3");
    const std::string drive = pathOf("hwmon/hwmon1");
    const std::string processor = pathOf("hwmon/hwmon2");
    tree.remove("sys");
    addDevice("pci0000:00/0000:01:00.0/nvme/nvme5/hwmon12", "hwmon", "../../nvme5");
    addDevice("pci0000:00/0000:00:18.3/hwmon/hwmon0", "hwmon", "../../../0000:00:18.3");
    EXPECT_EQ(pathOf("hwmon/hwmon12"), drive);
    EXPECT_EQ(pathOf("hwmon/hwmon0"), processor);
    EXPECT_NE(drive, processor);
}

TEST_F(DevicePathTest, NamesThatOnlyBeginLikeNumberedOnesStay) {
    addDevice("platform/hwmon-board/hwmon/hwmon3", "hwmon", "../../../hwmon-board");
    EXPECT_EQ(pathOf("hwmon/hwmon3"), "platform/hwmon-board");
    addDevice("platform/phy2.auto/hwmon/hwmon4", "hwmon", "../../../phy2.auto");
    EXPECT_EQ(pathOf("hwmon/hwmon4"), "platform/phy2.auto");
}

TEST_F(DevicePathTest, ARootThatIsReachedThroughALinkGivesTheSamePath) {
    addDevice("platform/coretemp.0/hwmon/hwmon4", "hwmon", "../../../coretemp.0");
    const TemporaryTree elsewhere;
    fs::create_directory_symlink(tree.root(), elsewhere.root() / "link");
    const fs::path root = elsewhere.root() / "link";
    EXPECT_EQ(pathBelow(root, "hwmon/hwmon4"), "platform/coretemp.0");
}

// Trees with the class only

TEST_F(DevicePathTest, AFolderWithALinkThatLeadsNowhereHasTheDeviceThatTheLinkNames) {
    tree.makeDirectory("sys/class/hwmon/hwmon0");
    link("sys/class/hwmon/hwmon0/device", "../../../0000:00:18.3");
    EXPECT_EQ(pathOf("hwmon/hwmon0"), "0000:00:18.3");
    tree.makeDirectory("sys/class/hwmon/hwmon1");
    link("sys/class/hwmon/hwmon1/device", "../../nvme0/0000:0b:00.0");
    EXPECT_EQ(pathOf("hwmon/hwmon1"), "0000:0b:00.0");
}

TEST_F(DevicePathTest, AFolderWithoutALinkHasWhatItsDeviceTellsOfItself) {
    tree.write("sys/class/hwmon/hwmon0/device/uevent", "DRIVER=k10temp\nPCI_SLOT_NAME=0000:00:18.3\n");
    tree.write("sys/class/hwmon/hwmon7/device/uevent", "DRIVER=k10temp\nPCI_SLOT_NAME=0000:00:18.3\n");
    tree.write("sys/class/hwmon/hwmon1/device/uevent", "DRIVER=nvme\nPCI_SLOT_NAME=0000:01:00.0\n");
    EXPECT_THAT(pathOf("hwmon/hwmon0"), testing::HasSubstr("0000:00:18.3"));
    EXPECT_EQ(pathOf("hwmon/hwmon7"), pathOf("hwmon/hwmon0"));
    EXPECT_NE(pathOf("hwmon/hwmon1"), pathOf("hwmon/hwmon0"));
}

TEST_F(DevicePathTest, AFolderThatTellsNothingOfItsDeviceHasNoPath) {
    tree.write("sys/class/hwmon/hwmon0/name", "coretemp\n");
    EXPECT_EQ(pathOf("hwmon/hwmon0"), "");
    tree.makeDirectory("sys/class/hwmon/hwmon0/device");
    EXPECT_EQ(pathOf("hwmon/hwmon0"), "");
    tree.makeDirectory("sys/devices");
    EXPECT_EQ(pathOf("hwmon/hwmon0"), "");
    EXPECT_EQ(pathOf("hwmon/hwmon1"), "") << "an entry that is not there";
}

} // namespace
} // namespace kelvinbar::device_path_test
