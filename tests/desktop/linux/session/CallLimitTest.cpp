#include "desktop/linux/session/CallLimit.h"

#include <chrono>

#include <gtest/gtest.h>

namespace kelvinbar::call_limit_test {

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

class CallLimitTest : public testing::Test {
  protected:
    /// How many of the calls that come now are admitted.
    int admitted(int calls) {
        int count = 0;
        for (int call = 0; call < calls; ++call) {
            if (limit_.admits(now_)) ++count;
        }
        return count;
    }

    CallLimit::Time now_{hours(1)};
    CallLimit limit_{10, 5};
};

TEST_F(CallLimitTest, AdmitsAWholeBurstAtTheStart) { EXPECT_EQ(admitted(10), 10); }

TEST_F(CallLimitTest, RefusesWhatExceedsTheBurst) { EXPECT_EQ(admitted(10'000), 10); }

TEST_F(CallLimitTest, AdmitsAsManyAsTheRateAllowsAfterABurst) {
    admitted(100);
    now_ += milliseconds(1000);
    EXPECT_EQ(admitted(100), 5);
    now_ += milliseconds(200);
    EXPECT_EQ(admitted(100), 1);
    now_ += milliseconds(100);
    EXPECT_EQ(admitted(100), 0);
    now_ += milliseconds(100);
    EXPECT_EQ(admitted(100), 1);
}

TEST_F(CallLimitTest, SavesUpNoMoreThanABurst) {
    admitted(100);
    now_ += hours(1000);
    EXPECT_EQ(admitted(100), 10);
}

TEST_F(CallLimitTest, NeverRefusesCallsAtTheRate) {
    for (int call = 0; call < 1000; ++call) {
        EXPECT_EQ(admitted(1), 1);
        now_ += milliseconds(200);
    }
}

} // namespace
} // namespace kelvinbar::call_limit_test
