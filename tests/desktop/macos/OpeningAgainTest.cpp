#include "desktop/macos/OpeningAgain.h"

#include "desktop/macos/CocoaApplication.h"
#include "desktop/macos/CocoaStatusBar.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/macos-runtime/CocoaTest.h"

#include <functional>
#include <memory>
#include <optional>

namespace kelvinbar::opening_again_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OpeningAgainTest : public CocoaTest {
  protected:
    OpeningAgainTest() {
        cocoa.screens = {{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 70, 1440, 805}}};
        cocoa.itemWindow = Rect{1200, 876, 64, 24};
        cocoa.itemScreen = 0;
    }

    /// The program, which somebody opens again.
    struct Program {
        Program(std::function<void()> openPanel, Log& log)
            : observer([this, openPanel, &log] {
                openAgain(openPanel, [this] { return bar.itemSight(); }, log);
            }) {}

        CocoaStatusBar bar{[] {}};
        std::unique_ptr<StatusItem> item = bar.makeItem();
        ReopenObserver observer;
    };

    void openByUser() {
        const Program program([this] { ++openings; }, recording.log);
        cocoa.launch();
        EXPECT_TRUE(cocoa.reopen());
    }

    fakes::RecordingLog recording;
    int openings = 0;
};

TEST_F(OpeningAgainTest, OpensThePanelAndSaysNothingOfAnItemThatIsSeen) {
    openByUser();
    EXPECT_EQ(openings, 1);
    EXPECT_THAT(recording.lines(), IsEmpty());
}

TEST_F(OpeningAgainTest, SaysThatTheItemIsSwitchedOff) {
    cocoa.itemWindow = Rect{-1, 0, 64, 24};
    openByUser();
    EXPECT_EQ(openings, 1);
    EXPECT_THAT(recording.lines(),
                ElementsAre(HasSubstr("System Settings, Menu Bar may have switched it off")));
}

TEST_F(OpeningAgainTest, SaysThatTheItemIsBehindTheNotch) {
    cocoa.screens[0].leftOfNotch = {0, 875, 1150, 25};
    cocoa.screens[0].rightOfNotch = {1300, 875, 140, 25};
    openByUser();
    EXPECT_THAT(recording.lines(), ElementsAre(HasSubstr("behind the notch")));
}

TEST_F(OpeningAgainTest, SaysThatNoBarShowsTheItem) {
    cocoa.screens.clear();
    cocoa.itemScreen = std::nullopt;
    openByUser();
    EXPECT_EQ(openings, 1);
    EXPECT_THAT(recording.lines(), ElementsAre(HasSubstr("the menu bar does not show the status item")));
}

TEST_F(OpeningAgainTest, SaysItAsLongAsItIsSo) {
    const Program program([this] { ++openings; }, recording.log);
    cocoa.launch();
    cocoa.itemWindow = Rect{-1, 0, 64, 24};
    EXPECT_TRUE(cocoa.reopen());
    cocoa.itemWindow = Rect{1200, 876, 64, 24};
    EXPECT_TRUE(cocoa.reopen());
    EXPECT_EQ(openings, 2);
    EXPECT_EQ(recording.lines().size(), 1U);
}

TEST_F(OpeningAgainTest, DoesNothingBeforeThereIsAPanel) {
    cocoa.itemWindow = Rect{-1, 0, 64, 24};
    const Program program(nullptr, recording.log);
    cocoa.launch();
    EXPECT_TRUE(cocoa.reopen());
    EXPECT_THAT(recording.lines(), IsEmpty());
}

} // namespace
} // namespace kelvinbar::opening_again_test
