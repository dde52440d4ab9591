#include "machines/linux/doctor/ConfigurationFindings.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::configuration_findings_test {

namespace {

TEST(ConfigurationFindings, TellsWhatConfiguresASource) {
    const std::vector<SourceReport> reports{
        {.name = "hardware monitors", .configuration = "libsensors 3.6.0 is used"}, {.name = "batteries"}};
    const auto findings = configurationFindings(reports, "/");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].subject, "configuration of hardware monitors");
    EXPECT_EQ(findings[0].found, "libsensors 3.6.0 is used");
}

TEST(ConfigurationFindings, TellsWhetherThereArePreferences) {
    fakes::TemporaryTree tree;
    const auto missing = configurationFindings({}, tree.root() / "kelvinbar.conf").back();
    EXPECT_EQ(missing.state, FindingState::note);
    EXPECT_EQ(missing.found, (tree.root() / "kelvinbar.conf").native() + ", not written yet");
    const auto file = tree.write("kelvinbar.conf", "");
    const auto there = configurationFindings({}, file).back();
    EXPECT_EQ(there.state, FindingState::good);
    EXPECT_EQ(there.found, file.native());
}

TEST(ConfigurationFindings, SaysWhatToDoAboutPreferencesThatCannotBeRead) {
    fakes::TemporaryTree tree;
    const auto folder = configurationFindings({}, tree.makeDirectory("kelvinbar.conf")).back();
    EXPECT_EQ(folder.state, FindingState::problem);
    EXPECT_TRUE(folder.found.ends_with("kelvinbar.conf cannot be read")) << folder.found;
    EXPECT_NE(folder.advice, "");
    EXPECT_EQ(configurationFindings({}, "").back().advice,
              "Set HOME or XDG_CONFIG_HOME, so that pins and settings can be kept");
}

} // namespace

} // namespace kelvinbar::configuration_findings_test
