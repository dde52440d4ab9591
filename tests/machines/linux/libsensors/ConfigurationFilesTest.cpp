#include "machines/linux/libsensors/ConfigurationFiles.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::configuration_files_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ConfigurationFilesTest : public testing::Test {
  protected:
    [[nodiscard]] std::string stamp() const { return stampOf(configurationFiles(tree.root())); }

    fakes::TemporaryTree tree;
};

TEST_F(ConfigurationFilesTest, TheMainFileComesFirstAndTheOthersInAlphabeticalOrder) {
    const auto second = tree.write("sensors.d/b", "");
    const auto first = tree.write("sensors.d/a", "");
    const auto main = tree.write("sensors3.conf", "");
    EXPECT_THAT(configurationFiles(tree.root()), ElementsAre(main, first, second));
}

TEST_F(ConfigurationFilesTest, TheOldMainFileCountsOnlyWithoutTheNewOne) {
    const auto old = tree.write("sensors.conf", "");
    EXPECT_THAT(configurationFiles(tree.root()), ElementsAre(old));
    const auto main = tree.write("sensors3.conf", "");
    EXPECT_THAT(configurationFiles(tree.root()), ElementsAre(main));
}

TEST_F(ConfigurationFilesTest, HiddenFilesDoNotCount) {
    tree.write("sensors.d/.board.swp", "");
    EXPECT_THAT(configurationFiles(tree.root()), IsEmpty());
}

TEST_F(ConfigurationFilesTest, TheStampStaysWhileNothingChanges) {
    tree.write("sensors3.conf", "chip \"*\"\n");
    EXPECT_EQ(stamp(), stamp());
    EXPECT_NE(stamp(), "");
}

TEST_F(ConfigurationFilesTest, TheStampTellsThatAFileCameChangedOrWent) {
    const std::string none = stamp();
    tree.write("sensors.d/board", "chip \"*\"\n");
    const std::string one = stamp();
    tree.write("sensors.d/board", "chip \"*\"\n ignore in1\n");
    const std::string longer = stamp();
    tree.remove("sensors.d/board");
    EXPECT_NE(none, one);
    EXPECT_NE(one, longer);
    EXPECT_EQ(stamp(), none);
}

TEST_F(ConfigurationFilesTest, TheStampTellsAReplacedFileOfTheSameSize) {
    tree.write("sensors.d/board", "ignore in1\n");
    const std::string before = stamp();
    std::filesystem::rename(tree.write("new", "ignore in2\n"), tree.root() / "sensors.d/board");
    EXPECT_NE(stamp(), before);
}

} // namespace
} // namespace kelvinbar::configuration_files_test
