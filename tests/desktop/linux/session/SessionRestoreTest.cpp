#include "desktop/linux/session/SessionRestore.h"

#include <QGuiApplication>
#include <QSessionManager>

#include <gtest/gtest.h>

namespace kelvinbar::session_restore_test {

namespace {

/// The application's connection to the session manager.
QSessionManager& sessionManager() { return *qGuiApp->findChild<QSessionManager*>(); }

class SessionRestoreTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(qGuiApp->findChild<QSessionManager*>(), nullptr);
        sessionManager().setRestartHint(QSessionManager::RestartIfRunning);
        declineSessionRestore(*qGuiApp);
    }

    void TearDown() override {
        QObject::disconnect(qGuiApp, &QGuiApplication::commitDataRequest, nullptr, nullptr);
        QObject::disconnect(qGuiApp, &QGuiApplication::saveStateRequest, nullptr, nullptr);
    }
};

TEST_F(SessionRestoreTest, IsDeclinedWhenTheSessionEnds) {
    emit qGuiApp->commitDataRequest(sessionManager());
    EXPECT_EQ(sessionManager().restartHint(), QSessionManager::RestartNever);
}

TEST_F(SessionRestoreTest, IsDeclinedWhenTheSessionIsSaved) {
    emit qGuiApp->saveStateRequest(sessionManager());
    EXPECT_EQ(sessionManager().restartHint(), QSessionManager::RestartNever);
}

} // namespace
} // namespace kelvinbar::session_restore_test
