#include "machines/linux/doctor/SourceFindings.h"

#include "base/Text.h"
#include "tests/machines/linux/RecordedTree.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::source_findings_test {

namespace {

std::vector<Finding> findingsOn(LeftOutChannels leftOut) {
    const std::vector<SourceReport> reports{
        {.name = "hardware monitors", .devices = 2, .readings = 31, .leftOut = std::move(leftOut)}};
    return sourceFindings(reports);
}

TEST(SourceFindings, TellsHowManyReadingsAClassGives) {
    const auto findings = findingsOn({});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].subject, "hardware monitors");
    EXPECT_EQ(findings[0].state, FindingState::good);
    EXPECT_EQ(findings[0].found, "31 readings of 2 devices");
}

TEST(SourceFindings, TellsThatTheKernelHasNoDeviceOfAClass) {
    const std::vector<SourceReport> reports{{.name = "energy counters"}};
    EXPECT_EQ(sourceFindings(reports)[0].found, "the kernel has none");
    EXPECT_EQ(sourceFindings(reports)[0].state, FindingState::note);
}

TEST(SourceFindings, NamesWhatIsLeftOutByReason) {
    const auto findings = findingsOn({{"a", "nct6798/temp2", LeftOutReason::unconnected},
                                      {"b", "amdgpu/temp1", LeftOutReason::asleep},
                                      {"a", "nct6798/temp3", LeftOutReason::unconnected}});
    ASSERT_EQ(findings.size(), 3U);
    EXPECT_EQ(findings[1].subject, "hardware monitors, left out");
    EXPECT_EQ(findings[1].state, FindingState::note);
    EXPECT_EQ(findings[1].found, "2 not connected: nct6798/temp2, nct6798/temp3");
    EXPECT_EQ(findings[2].found, "1 asleep: amdgpu/temp1");
}

TEST(SourceFindings, CountsWhatIsTooMuchToName) {
    LeftOutChannels many;
    for (int number = 1; number <= 10; ++number) {
        many.push_back({"a", "x/temp" + std::to_string(number), LeftOutReason::unreadable});
    }
    EXPECT_TRUE(findingsOn(many)[1].found.ends_with("x/temp8 and 2 more")) << findingsOn(many)[1].found;
    many.resize(8);
    EXPECT_TRUE(findingsOn(many)[1].found.ends_with("x/temp8")) << findingsOn(many)[1].found;
}

TEST(SourceFindings, NamesNoSettingsAndRepetitions) {
    const auto findings = findingsOn(
        {{"a", "x/fan1_min", LeftOutReason::setting}, {"a", "BAT0/voltage_now", LeftOutReason::repeated}});
    ASSERT_EQ(findings.size(), 3U);
    EXPECT_EQ(findings[1].found, "1 shown by another reading");
    EXPECT_EQ(findings[2].found, "1 a setting, not a measurement");
}

TEST(SourceFindings, NamesTheRuleThatOpensTheEnergyCounters) {
    const auto findings = findingsOn({{"a", "intel-rapl-0/energy_uj", LeftOutReason::notPermitted}});
    EXPECT_EQ(findings[1].state, FindingState::problem);
    EXPECT_EQ(findings[1].found, "1 readable by the administrator only: intel-rapl-0/energy_uj");
    EXPECT_TRUE(
        contains(findings[1].advice, "/usr/share/doc/kelvinbar-snapshot/examples/60-kelvinbar-energy.rules"))
        << findings[1].advice;
}

TEST(SourceFindings, ADeviceThatDoesNotAnswerIsAProblem) {
    const auto findings = findingsOn({{"a", "x/temp1", LeftOutReason::silent}});
    EXPECT_EQ(findings[1].state, FindingState::problem);
    EXPECT_NE(findings[1].advice, "");
}

// Apple's controller

constexpr auto controller = "chip devices/platform/applesmc.768\n"
                            "name applesmc\n"
                            "key_count 2\n"
                            "key_at_index 0\n"
                            "key_at_index_name FNum\n"
                            "key_at_index_type ui8\n"
                            "key_at_index_data_length 1\n"
                            "key_at_index_data 1\n";

TEST(ControllerFindings, ThereIsNoneWithoutAController) {
    const fakes::RecordedTree machine;
    EXPECT_TRUE(controllerFindings(machine.root()).empty());
}

TEST(ControllerFindings, TellsThatItsKeysCanBeListed) {
    fakes::RecordedTree machine;
    machine.add(controller);
    ASSERT_EQ(controllerFindings(machine.root()).size(), 1U);
    EXPECT_EQ(controllerFindings(machine.root())[0].state, FindingState::good);
}

TEST(ControllerFindings, NamesTheRuleForAControllerWhoseKeysMayNotBeListed) {
    fakes::RecordedTree machine;
    machine.add(controller);
    const std::string index = "sys/devices/platform/applesmc.768/key_at_index";
    machine.tree().remove(index);
    machine.tree().makeDirectory(index); // cannot be written, by root either
    const auto findings = controllerFindings(machine.root());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].state, FindingState::problem);
    EXPECT_TRUE(contains(findings[0].advice, "60-kelvinbar-applesmc.rules")) << findings[0].advice;
}

} // namespace

} // namespace kelvinbar::source_findings_test
