#include "shell/LoginItemManager.h"

#include "tests/fakes/FakeShell.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::login_item_manager_test {

namespace {

using Entries = std::vector<std::string>;

struct LoginItem : testing::Test {
    fakes::ShellJournal journal;
    fakes::FakeLoginItemService service{journal};
    LoginItemManager manager{service};
};

TEST_F(LoginItem, IsEnabledIfTheServiceHasRegisteredIt) {
    EXPECT_FALSE(manager.isEnabled());
    service.registered = true;
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_EQ(journal.entries, Entries{});
}

TEST_F(LoginItem, EnablingRegisters) {
    EXPECT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(journal.entries, Entries{"login item: register"});
    EXPECT_TRUE(manager.isEnabled());
}

TEST_F(LoginItem, DisablingUnregisters) {
    service.registered = true;
    EXPECT_FALSE(manager.setEnabled(false));
    EXPECT_EQ(journal.entries, Entries{"login item: unregister"});
    EXPECT_FALSE(manager.isEnabled());
}

TEST_F(LoginItem, EnablingWhatIsEnabledCallsNeither) {
    service.registered = true;
    EXPECT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(journal.entries, Entries{});
}

TEST_F(LoginItem, DisablingWhatIsNotEnabledCallsNeither) {
    EXPECT_FALSE(manager.setEnabled(false));
    EXPECT_EQ(journal.entries, Entries{});
}

TEST_F(LoginItem, AFailedRegistrationBeepsOnceAndReturnsTheState) {
    service.succeeds = false;
    EXPECT_FALSE(manager.setEnabled(true));
    EXPECT_EQ(journal.entries, (Entries{"login item: register", "login item: beep"}));
}

TEST_F(LoginItem, AFailedUnregistrationBeepsOnceAndReturnsTheState) {
    service.registered = true;
    service.succeeds = false;
    EXPECT_TRUE(manager.setEnabled(false));
    EXPECT_EQ(journal.entries, (Entries{"login item: unregister", "login item: beep"}));
}

TEST_F(LoginItem, ARegistrationThatAwaitsApprovalIsNotEnabledAndDoesNotSound) {
    service.needsApproval = true;
    EXPECT_FALSE(manager.setEnabled(true));
    EXPECT_EQ(journal.entries, Entries{"login item: register"});
}

TEST_F(LoginItem, TheServiceIsQueriedEachTime) {
    EXPECT_TRUE(manager.setEnabled(true));
    service.registered = false; // by the user, in the system's settings
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(journal.entries, (Entries{"login item: register", "login item: register"}));
}

TEST_F(LoginItem, WhereTheSystemDoesNotLetItRegisterTheSettingsAreOpened) {
    service.allowsRegistration = false;
    EXPECT_FALSE(manager.canRegister());
    EXPECT_FALSE(manager.setEnabled(true));
    EXPECT_EQ(journal.taken(), Entries{"login item: settings opened"});
    EXPECT_FALSE(manager.setEnabled(false));
    EXPECT_EQ(journal.taken(), Entries{"login item: settings opened"});
}

TEST_F(LoginItem, WhereTheSystemDoesNotLetItRegisterItIsNeverEnabled) {
    service.allowsRegistration = false;
    service.registered = true;
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(manager.setEnabled(true));
}

TEST_F(LoginItem, CanRegisterWhereTheServiceLetsIt) { EXPECT_TRUE(manager.canRegister()); }

} // namespace
} // namespace kelvinbar::login_item_manager_test
