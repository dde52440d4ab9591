#include "machines/linux/doctor/ConfigurationFindings.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::configuration_findings_test {

namespace {

TEST(ConfigurationFindings, TellsWhatConfiguresASource) {
    const std::vector<SourceReport> reports{
        {.name = "hardware monitors", .configuration = {.description = "libsensors 3.6.0 is used"}},
        {.name = "batteries"}};
    const auto findings = configurationFindings(reports, "/");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].subject, "configuration of hardware monitors");
    EXPECT_EQ(findings[0].found, "libsensors 3.6.0 is used");
    EXPECT_EQ(findings[0].state, FindingState::good);
}

TEST(ConfigurationFindings, ErrorsInTheConfigurationAreAProblem) {
    SourceReport report{
        .name = "hardware monitors",
        .configuration = {.description = "libsensors is used", .errors = {"board:3: syntax"}}};
    auto findings = configurationFindings(std::span(&report, 1), "/");
    ASSERT_EQ(findings.size(), 3U);
    EXPECT_EQ(findings[1].subject, "configuration of hardware monitors, errors");
    EXPECT_EQ(findings[1].state, FindingState::problem);
    EXPECT_EQ(findings[1].found, "board:3: syntax");
    EXPECT_NE(findings[1].advice, "");
    report.configuration.errors.emplace_back("board:4: syntax");
    EXPECT_EQ(configurationFindings(std::span(&report, 1), "/")[1].found,
              "board:3: syntax, and 1 more error");
}

TEST(ConfigurationFindings, ARefusedConfigurationIsAProblemWhereThereAreFiles) {
    SourceReport report{.name = "hardware monitors",
                        .configuration = {.description = "libsensors is not used: file too short",
                                          .isUsed = false,
                                          .hasFiles = true}};
    const auto refused = configurationFindings(std::span(&report, 1), "/").front();
    EXPECT_EQ(refused.state, FindingState::problem);
    EXPECT_EQ(refused.found, "libsensors is not used: file too short");
    EXPECT_NE(refused.advice, "");
    report.configuration.hasFiles = false;
    const auto unused = configurationFindings(std::span(&report, 1), "/").front();
    EXPECT_EQ(unused.state, FindingState::note);
    EXPECT_NE(unused.advice, "");
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
