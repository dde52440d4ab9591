#include "desktop/macos/MainAppLoginItem.h"

#include "tests/macos-runtime/CocoaTest.h"

namespace kelvinbar::main_app_login_item_test {

namespace {

using fakes::FakeLoginState;
using testing::ElementsAre;
using testing::IsEmpty;

class MainAppLoginItemTest : public CocoaTest {
  protected:
    int refusals = 0;
    MainAppLoginItem item{[this] { ++refusals; }};
};

TEST_F(MainAppLoginItemTest, AProgramCanRegisterItselfFromMacOS13On) {
    cocoa.version = 13;
    EXPECT_TRUE(item.canRegister());
    cocoa.version = 12.7;
    EXPECT_FALSE(item.canRegister());
}

TEST_F(MainAppLoginItemTest, OnlyAnEnabledItemIsRegistered) {
    for (const FakeLoginState state : {FakeLoginState::notRegistered, FakeLoginState::enabled,
                                       FakeLoginState::requiresApproval, FakeLoginState::notFound}) {
        cocoa.loginState = state;
        EXPECT_EQ(item.isRegistered(), state == FakeLoginState::enabled);
    }
}

TEST_F(MainAppLoginItemTest, RegistersAndUnregistersTheProgram) {
    EXPECT_TRUE(item.registerItem());
    EXPECT_EQ(cocoa.loginState, FakeLoginState::enabled);
    EXPECT_TRUE(item.unregisterItem());
    EXPECT_EQ(cocoa.loginState, FakeLoginState::notRegistered);
    EXPECT_EQ(refusals, 0);
}

TEST_F(MainAppLoginItemTest, ARefusalIsAFailureAndReportedOnce) {
    cocoa.allowsLoginChanges = false;
    EXPECT_FALSE(item.registerItem());
    EXPECT_EQ(refusals, 1);
    EXPECT_FALSE(item.unregisterItem());
    EXPECT_EQ(refusals, 2);
    EXPECT_EQ(cocoa.loginState, FakeLoginState::notRegistered);
}

TEST_F(MainAppLoginItemTest, BeforeMacOS13NothingIsRegistered) {
    cocoa.version = 12;
    cocoa.loginState = FakeLoginState::enabled;
    EXPECT_FALSE(item.isRegistered());
    EXPECT_FALSE(item.registerItem());
    EXPECT_FALSE(item.unregisterItem());
}

TEST_F(MainAppLoginItemTest, OpensThePageOfTheSettings) {
    item.openLoginItemsSettings();
    EXPECT_THAT(cocoa.openedAddresses,
                ElementsAre("x-apple.systempreferences:com.apple.preferences.users?startupItemsPref"));
}

TEST_F(MainAppLoginItemTest, AnAddressThatTheSystemRejectsIsNotOpened) {
    cocoa.parsesAddresses = false;
    item.openLoginItemsSettings();
    EXPECT_THAT(cocoa.openedAddresses, IsEmpty());
}

TEST_F(MainAppLoginItemTest, Beeps) {
    item.beep();
    EXPECT_EQ(cocoa.beeps, 1);
}

TEST_F(MainAppLoginItemTest, TheManagerBeepsForARefusal) {
    LoginItemManager manager(item);
    cocoa.allowsLoginChanges = false;
    EXPECT_FALSE(manager.setEnabled(true));
    EXPECT_EQ(cocoa.beeps, 1);
    cocoa.allowsLoginChanges = true;
    EXPECT_TRUE(manager.setEnabled(true));
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_EQ(cocoa.beeps, 1);
}

} // namespace
} // namespace kelvinbar::main_app_login_item_test
