// That the fake is strict: what the tests of the program rely on.
#include "desktop/macos/CocoaApplication.h"
#include "desktop/macos/CocoaStatusBar.h"
#include "desktop/macos/CocoaTimers.h"
#include "machines/macos/MacSystemInformation.h"
#include "tests/macos-runtime/CocoaTest.h"

#include <chrono>
#include <thread>

namespace kelvinbar::fake_cocoa_test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class FakeCocoaTest : public CocoaTest {};

void onAnotherThread(void (*action)()) { std::thread(action).join(); }

TEST_F(FakeCocoaTest, AMessageFromAnotherThreadEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(onAnotherThread(becomeAccessoryApplication), "NSApplication from another thread");
    EXPECT_DEATH(onAnotherThread([] { (void)CocoaStatusBar(nullptr).makeItem(); }),
                 "NSStatusBar from another thread");
}

TEST_F(FakeCocoaTest, FactsAboutTheSystemCanBeReadOnEveryThread) {
    onAnotherThread([] { EXPECT_EQ(MacSystemInformation().activeProcessorCount(), 8); });
}

TEST_F(FakeCocoaTest, WhatIsLeftIsReported) {
    CocoaStatusBar bar(nullptr);
    const auto item = bar.makeItem();
    const auto watch = watchPressesInOtherPrograms(MouseButtons::all, [](Point) {});
    const auto activity = runOnTime();
    const auto timer = CocoaTimers().start(std::chrono::seconds(1), std::chrono::seconds(0), [] {});
    const ReopenObserver observer([] {});
    cocoa.launch();
    const auto leftovers = cocoa.leftovers();
    EXPECT_THAT(leftovers, Contains("1 status items"));
    EXPECT_THAT(leftovers, Contains("1 monitors"));
    EXPECT_THAT(leftovers, Contains("1 activities"));
    EXPECT_THAT(leftovers, Contains("1 timers"));
    EXPECT_THAT(leftovers, Contains("1 observers"));
    EXPECT_THAT(leftovers, Contains("1 handlers of events"));
}

} // namespace
} // namespace kelvinbar::fake_cocoa_test
