#include "tools/cost/OwnCost.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::own_cost_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OwnCostTest : public testing::Test {
  protected:
    /// Whose cost is told; empty for nobody's.
    std::string subject() {
        const auto readings = cost.readings(40);
        for (const SMCReading& reading : readings) EXPECT_EQ(reading.type, readings.front().type);
        return readings.empty() ? "" : readings.front().type;
    }

    static ProgramCost idle() {
        ProgramCost idle;
        idle.wakeUpsPerMinute = 12;
        return idle;
    }

    TrayAnswer answer = idle();
    int questions = 0;
    std::vector<std::string> said;
    OwnCost cost{[this] {
                     ++questions;
                     return answer;
                 },
                 [this](const std::string& sentence) { said.push_back(sentence); }};
};

TEST_F(OwnCostTest, IsThatOfTheTrayProgramWhichIsAskedEachTime) {
    EXPECT_EQ(subject(), "tray program");
    EXPECT_EQ(subject(), "tray program");
    EXPECT_EQ(questions, 2);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(OwnCostTest, IsThatOfThisProgramWithoutATrayProgram) {
    for (const NoAnswer reason : {NoAnswer::notRunning, NoAnswer::cannotAsk}) {
        answer = reason;
        EXPECT_EQ(subject(), "console program");
        EXPECT_EQ(cost.readings(40).back().displayValue(), "40");
    }
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(OwnCostTest, StaysThatOfThisProgramWhenATrayProgramStarts) {
    answer = NoAnswer::notRunning;
    EXPECT_EQ(subject(), "console program");
    answer = idle();
    EXPECT_EQ(subject(), "console program");
    EXPECT_EQ(questions, 1);
}

TEST_F(OwnCostTest, SaysThatTheTrayProgramDoesNotAnswer) {
    answer = NoAnswer::silent;
    EXPECT_EQ(subject(), "console program");
    EXPECT_EQ(subject(), "console program");
    EXPECT_THAT(said, ElementsAre(HasSubstr("does not answer; what is printed is the cost of this program")));
}

TEST_F(OwnCostTest, SaysThatTheBusCannotBeReached) {
    answer = NoAnswer::unreachable;
    EXPECT_EQ(subject(), "console program");
    EXPECT_EQ(subject(), "console program");
    EXPECT_THAT(said, ElementsAre("the session bus cannot be reached; what is printed is the cost of this "
                                  "program"));
}

TEST_F(OwnCostTest, IsNobodysWhileTheTrayProgramIsAway) {
    for (const NoAnswer reason : {NoAnswer::notRunning, NoAnswer::unreachable, NoAnswer::silent}) {
        answer = idle();
        EXPECT_EQ(subject(), "tray program");
        said.clear();
        answer = reason;
        EXPECT_EQ(subject(), "");
        EXPECT_EQ(subject(), "");
        EXPECT_THAT(said, ElementsAre(HasSubstr("does not answer any more")));
    }
    answer = idle();
    EXPECT_EQ(subject(), "tray program");
}

} // namespace
} // namespace kelvinbar::own_cost_test
