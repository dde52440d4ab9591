#include "tools/doctor/OwnCostFindings.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::own_cost_findings_test {

namespace {

using testing::ElementsAre;

ProgramCost costOf(double cpuTime) {
    ProgramCost cost;
    cost.cpuTimePerMinute = cpuTime;
    cost.wakeUpsPerMinute = 12;
    return cost;
}

std::vector<std::string> linesOf(const FindingSection& section) {
    std::vector<std::string> lines;
    for (const Finding& finding : section.findings) lines.push_back(finding.subject + ": " + finding.found);
    return lines;
}

TEST(OwnCostFindings, TellWhatTheTrayProgramCosts) {
    const FindingSection section = ownCostFindings(costOf(0.0031), costOf(7));
    EXPECT_EQ(section.title, "Kelvinbar");
    EXPECT_THAT(linesOf(section), ElementsAre("program: the tray program", "CPU Time a Minute: 0.0031 s",
                                              "Wake-Ups a Minute: 12"));
    EXPECT_EQ(section.findings.front().state, FindingState::good);
}

TEST(OwnCostFindings, TellWhatThisRunCostsWithoutATrayProgram) {
    const FindingSection section = ownCostFindings(NoAnswer::notRunning, costOf(7));
    EXPECT_THAT(linesOf(section), ElementsAre("program: this one, since no tray program runs",
                                              "CPU Time a Minute: 7 s", "Wake-Ups a Minute: 12"));
    EXPECT_EQ(section.findings.front().state, FindingState::note);
    EXPECT_EQ(ownCostFindings(NoAnswer::cannotAsk, {}).findings.front().state, FindingState::note);
}

TEST(OwnCostFindings, AProgramThatDoesNotAnswerIsAProblem) {
    const Finding finding = ownCostFindings(NoAnswer::silent, {}).findings.front();
    EXPECT_EQ(finding.state, FindingState::problem);
    EXPECT_EQ(finding.found, "this one, since the tray program does not answer");
    EXPECT_NE(finding.advice, "");
}

TEST(OwnCostFindings, ABusThatCannotBeReachedIsAnotherProblem) {
    const Finding finding = ownCostFindings(NoAnswer::unreachable, {}).findings.front();
    EXPECT_EQ(finding.state, FindingState::problem);
    EXPECT_EQ(finding.found, "this one, since the session bus cannot be reached");
    EXPECT_NE(finding.advice, "");
}

} // namespace
} // namespace kelvinbar::own_cost_findings_test
