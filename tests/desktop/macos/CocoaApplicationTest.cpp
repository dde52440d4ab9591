#include "desktop/macos/CocoaApplication.h"

#include "tests/macos-runtime/CocoaTest.h"

#include <memory>
#include <optional>
#include <utility>

namespace kelvinbar::cocoa_application_test {

namespace {

using fakes::FakePosting;
using fakes::FakePress;
using fakes::FakeProgram;
using testing::ElementsAre;
using testing::IsEmpty;

class CocoaApplicationTest : public CocoaTest {
  protected:
    CocoaApplicationTest() { cocoa.program = instance(20, 200); }

    static FakeProgram instance(int identifier, std::optional<double> launch) {
        return {.identifier = identifier, .launch = launch, .bundleIdentifier = "org.kelvinbar.kelvinbar"};
    }

    /// Whether this instance hands over when `other` runs too.
    bool handsOverTo(const FakeProgram& other) {
        cocoa.programs = {cocoa.program, other};
        return handOverToRunningApplication();
    }
};

TEST_F(CocoaApplicationTest, AnAccessoryHasNoIconInTheDock) {
    becomeAccessoryApplication();
    EXPECT_EQ(cocoa.activationPolicy, 1); // the number with that meaning
}

TEST_F(CocoaApplicationTest, ActivationDoesNotWaitForOtherPrograms) {
    activateApplication();
    EXPECT_EQ(cocoa.activations, 1);
}

TEST_F(CocoaApplicationTest, AHiddenProgramIsShownBeforeItIsActivated) {
    hideApplication();
    EXPECT_EQ(cocoa.hidings, 1);
    ASSERT_TRUE(cocoa.isHidden);
    activateApplication();
    EXPECT_FALSE(cocoa.isHidden);
    EXPECT_EQ(cocoa.activations, 1);
}

TEST_F(CocoaApplicationTest, ReducedMotionIsTheSystemsSetting) {
    EXPECT_FALSE(systemPrefersReducedMotion());
    cocoa.reducesMotion = true;
    EXPECT_TRUE(systemPrefersReducedMotion());
}

TEST_F(CocoaApplicationTest, MoreContrastIsTheSystemsSetting) {
    EXPECT_FALSE(systemPrefersMoreContrast());
    cocoa.increasesContrast = true;
    EXPECT_TRUE(systemPrefersMoreContrast());
}

TEST_F(CocoaApplicationTest, EveryPressInAnotherProgramIsReported) {
    int presses = 0;
    const auto watch = watchPressesInOtherPrograms(MouseButtons::all, [&](Point) { ++presses; });
    for (const FakePress press : {FakePress::left, FakePress::right, FakePress::other}) {
        cocoa.pressElsewhere(press);
    }
    EXPECT_EQ(presses, 3);
}

TEST_F(CocoaApplicationTest, PressesAreReportedWhileTheResultLives) {
    int presses = 0;
    auto watch = watchPressesInOtherPrograms(MouseButtons::all, [&](Point) { ++presses; });
    EXPECT_EQ(cocoa.monitorCount(), 1U);
    watch.reset();
    EXPECT_EQ(cocoa.monitorCount(), 0U);
    cocoa.pressElsewhere(FakePress::left);
    EXPECT_EQ(presses, 0);
}

TEST_F(CocoaApplicationTest, AHandlerOfPressesMayEndTheWatch) {
    std::shared_ptr<void> watch;
    int presses = 0;
    watch = watchPressesInOtherPrograms(MouseButtons::all, [&watch, &presses](Point) {
        watch.reset();
        ++presses;
    });
    cocoa.pressElsewhere(FakePress::left);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(cocoa.monitorCount(), 0U);
}

TEST_F(CocoaApplicationTest, WithoutAMonitorThereIsNoWatch) {
    cocoa.allowsMonitors = false;
    EXPECT_EQ(watchPressesInOtherPrograms(MouseButtons::all, [](Point) {}), nullptr);
}

TEST_F(CocoaApplicationTest, AWatchOfTheSecondaryButtonReportsNoOther) {
    int presses = 0;
    const auto watch = watchPressesInOtherPrograms(MouseButtons::secondary, [&](Point) { ++presses; });
    cocoa.pressElsewhere(FakePress::left);
    cocoa.pressElsewhere(FakePress::other);
    EXPECT_EQ(presses, 0);
    cocoa.pressElsewhere(FakePress::right);
    EXPECT_EQ(presses, 1);
}

TEST_F(CocoaApplicationTest, APressIsReportedWithItsPlaceFromTheTopOfTheMainScreen) {
    cocoa.screens = {{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 70, 1440, 805}}};
    cocoa.mousePlace = {1230, 890};
    Point place;
    const auto watch =
        watchPressesInOtherPrograms(MouseButtons::all, [&](Point reported) { place = reported; });
    cocoa.pressElsewhere(FakePress::left);
    EXPECT_EQ(place, (Point{1230, 10}));
}

TEST_F(CocoaApplicationTest, AnActivityLastsAsLongAsTheResultLives) {
    auto activity = runOnTime();
    EXPECT_EQ(cocoa.activityCount(), 1U);
    activity.reset();
    EXPECT_EQ(cocoa.activityCount(), 0U);
}

TEST_F(CocoaApplicationTest, AnActivityThatIsKeptTwiceEndsOnce) {
    auto activity = runOnTime();
    auto kept = activity;
    activity.reset();
    EXPECT_EQ(cocoa.activityCount(), 1U);
    kept.reset();
    EXPECT_EQ(cocoa.activityCount(), 0U);
}

TEST_F(CocoaApplicationTest, TheMachineMaySleepDuringAnActivity) {
    const auto activity = runOnTime();
    EXPECT_EQ(cocoa.activityOptions, 0xEFFFFFU); // the number with that meaning
}

TEST_F(CocoaApplicationTest, AnInstanceHandsOverToAnOlderOne) {
    EXPECT_TRUE(handsOverTo(instance(30, 100)));
    EXPECT_THAT(cocoa.postings, ElementsAre(FakePosting{"org.kelvinbar.kelvinbar.open", true}));
}

TEST_F(CocoaApplicationTest, AnInstanceContinuesBesideANewerOne) {
    EXPECT_FALSE(handsOverTo(instance(10, 300)));
    EXPECT_THAT(cocoa.postings, IsEmpty());
}

TEST_F(CocoaApplicationTest, OfTwoThatStartAtTheSameTimeTheFirstProcessContinues) {
    EXPECT_TRUE(handsOverTo(instance(10, 200)));
    EXPECT_FALSE(handsOverTo(instance(30, 200)));
}

TEST_F(CocoaApplicationTest, WithoutATimeOfStartTheFirstProcessContinues) {
    EXPECT_TRUE(handsOverTo(instance(10, std::nullopt)));
    EXPECT_FALSE(handsOverTo(instance(30, std::nullopt)));
    cocoa.program.launch = std::nullopt;
    EXPECT_TRUE(handsOverTo(instance(10, 300)));
    EXPECT_FALSE(handsOverTo(instance(30, 100)));
}

TEST_F(CocoaApplicationTest, AnInstanceOfAnotherApplicationDoesNotCount) {
    FakeProgram other = instance(10, 100);
    other.bundleIdentifier = "org.kelvinbar.kelvinbar-demo";
    EXPECT_FALSE(handsOverTo(other));
}

TEST_F(CocoaApplicationTest, AProgramOutsideABundleHandsOverToNone) {
    cocoa.program.bundleIdentifier = std::nullopt;
    EXPECT_FALSE(handsOverTo(instance(10, 100)));
}

TEST_F(CocoaApplicationTest, OpeningTheRunningProgramIsReported) {
    int openings = 0;
    const ReopenObserver observer([&] { ++openings; });
    cocoa.launch();
    EXPECT_TRUE(cocoa.reopen());
    EXPECT_EQ(openings, 1);
}

TEST_F(CocoaApplicationTest, AnInstanceThatHandsOverIsReported) {
    int openings = 0;
    const ReopenObserver observer([&] { ++openings; });
    cocoa.receive("org.kelvinbar.kelvinbar.open");
    cocoa.receive("org.kelvinbar.kelvinbar-demo.open");
    EXPECT_EQ(openings, 1);
}

TEST_F(CocoaApplicationTest, NothingIsReportedAfterTheObserversEnd) {
    int openings = 0;
    auto observer = std::make_unique<ReopenObserver>([&] { ++openings; });
    cocoa.launch();
    observer.reset();
    EXPECT_FALSE(cocoa.reopen());
    cocoa.launch();
    EXPECT_FALSE(cocoa.reopen());
    cocoa.receive("org.kelvinbar.kelvinbar.open");
    EXPECT_EQ(openings, 0);
}

TEST_F(CocoaApplicationTest, AnObserverOutsideABundleHearsOfTheUserAlone) {
    cocoa.program.bundleIdentifier = std::nullopt;
    int openings = 0;
    const ReopenObserver observer([&] { ++openings; });
    cocoa.launch();
    cocoa.receive(".open");
    EXPECT_EQ(openings, 0);
    EXPECT_TRUE(cocoa.reopen());
    EXPECT_EQ(openings, 1);
}

TEST_F(CocoaApplicationTest, AnObserverWithoutHandlerDoesNothing) {
    const ReopenObserver observer(nullptr);
    cocoa.launch();
    EXPECT_TRUE(cocoa.reopen());
    cocoa.receive("org.kelvinbar.kelvinbar.open");
}

} // namespace
} // namespace kelvinbar::cocoa_application_test
