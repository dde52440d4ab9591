#include "platform/macos/desktop/ActiveInput.h"

#include <QGuiApplication>
#include <QWindow>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

class ActiveInputTest : public testing::Test {
  protected:
    void prepareAndTake() {
        input.prepare(window);
        window.show();
        input.take(window, [this] { ++elsewhere; });
    }

    static void tellState(Qt::ApplicationState state) { emit qGuiApp->applicationStateChanged(state); }

    int activations = 0;
    int hidings = 0;
    int elsewhere = 0;
    ActiveInput input{{.activate = [this] { ++activations; }, .hide = [this] { ++hidings; }}};
    QWindow window;
};

} // namespace

TEST_F(ActiveInputTest, TheProgramComesToTheFrontBeforeItsWindowIsShown) {
    input.prepare(window);
    EXPECT_EQ(activations, 1);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ActiveInputTest, TheWindowIsAPanelThatIsSeenBeforeTheProgramIsInFront) {
    input.prepare(window);
    EXPECT_EQ(window.type(), Qt::Tool);
    EXPECT_TRUE(window.flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(window.property("_q_macAlwaysShowToolWindow").toBool());
}

TEST_F(ActiveInputTest, AnotherProgramInFrontIsElsewhere) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    EXPECT_EQ(elsewhere, 0);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, TakingTwiceTellsOnce) {
    prepareAndTake();
    input.take(window, [this] { ++elsewhere; });
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, NothingIsToldOfAClosedWindow) {
    prepareAndTake();
    input.giveBack(window);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 0);
}

TEST_F(ActiveInputTest, TheInputMayBeGivenBackWhenItIsTold) {
    input.prepare(window);
    input.take(window, [this] {
        ++elsewhere;
        input.giveBack(window);
    });
    tellState(Qt::ApplicationInactive);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, TheFrontIsGivenBackByTheProgramThatHasIt) {
    prepareAndTake();
    const int expected = QGuiApplication::applicationState() == Qt::ApplicationActive ? 1 : 0;
    input.giveBack(window);
    EXPECT_EQ(hidings, expected);
}

} // namespace kelvinbar
