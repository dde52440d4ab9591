#include "desktop/linux/session/InstanceLock.h"

#include "tests/ProgramRun.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/TemporaryVariable.h"
#include "tests/tools/TemporaryFolder.h"

#include <optional>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::instance_lock_test {

namespace {

const InstancePlace terminal{.process = "12", .display = ":0", .waylandDisplay = "wayland-0", .session = "3"};

class InstanceLockTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
    std::string file_ = folder_.path("kelvinbar.lock");
    InstanceLock first_{file_};
    InstanceLock second_{file_};
};

TEST_F(InstanceLockTest, OneAtATimeHoldsIt) {
    EXPECT_TRUE(first_.take(terminal));
    EXPECT_FALSE(second_.take(terminal));
    first_.release();
    EXPECT_TRUE(second_.take(terminal));
    EXPECT_FALSE(first_.take(terminal));
}

TEST_F(InstanceLockTest, TakingItTwiceIsTakingItOnce) {
    EXPECT_TRUE(first_.take(terminal));
    EXPECT_TRUE(first_.take(terminal));
    first_.release();
    EXPECT_TRUE(second_.take(terminal));
}

TEST_F(InstanceLockTest, OthersLearnWhereItsHolderRuns) {
    EXPECT_EQ(second_.holder(), std::nullopt);
    EXPECT_TRUE(first_.take(terminal));
    EXPECT_EQ(second_.holder(), terminal);
    first_.release();
    EXPECT_EQ(second_.holder(), std::nullopt);
}

TEST_F(InstanceLockTest, AShorterPlaceReplacesALongerOne) {
    EXPECT_TRUE(first_.take(terminal));
    first_.release();
    const InstancePlace elsewhere{.process = "7", .display = {}, .waylandDisplay = {}, .session = {}};
    EXPECT_TRUE(first_.take(elsewhere));
    EXPECT_EQ(second_.holder(), elsewhere);
}

TEST_F(InstanceLockTest, AskingWhoHoldsItIsNotInTheWayOfAStart) {
    EXPECT_EQ(second_.holder(), std::nullopt);
    EXPECT_TRUE(first_.take(terminal));
    EXPECT_EQ(second_.holder(), terminal);
    EXPECT_EQ(second_.holder(), terminal);
    EXPECT_FALSE(second_.take(terminal));
}

TEST_F(InstanceLockTest, TheKernelReleasesTheLockOfAProcessThatIsKilled) {
    const ProgramRun other({"/proc/self/exe", "--hold-instance-lock", file_},
                           {"/dev/null", folder_.write("output", ""), "/dev/null"});
    ASSERT_TRUE(waitFor([&] { return first_.holder().has_value(); }));
    EXPECT_FALSE(first_.take(terminal));
    other.send(SIGKILL);
    EXPECT_EQ(other.status(), -1);
    EXPECT_EQ(first_.holder(), std::nullopt);
    EXPECT_TRUE(first_.take(terminal));
}

TEST_F(InstanceLockTest, TheFileIsTheUsersOwnAndExemptFromCleaning) {
    EXPECT_TRUE(first_.take(terminal));

    struct stat status{};

    ASSERT_EQ(::stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 01600U);
}

TEST_F(InstanceLockTest, AFileThatCannotBeUsedKeepsNobodyFromStarting) {
    InstanceLock none("");
    EXPECT_TRUE(none.take(terminal));
    EXPECT_EQ(none.holder(), std::nullopt);
    InstanceLock lost(folder_.path("missing/kelvinbar.lock"));
    EXPECT_TRUE(lost.take(terminal));
    EXPECT_EQ(lost.holder(), std::nullopt);
}

TEST(InstanceLockFile, IsInTheRuntimeFolder) {
    const TemporaryVariable runtime("XDG_RUNTIME_DIR", "/run/user/7");
    EXPECT_EQ(instanceLockFile("kelvinbar-demo"), "/run/user/7/kelvinbar-demo.lock");
}

TEST(InstanceLockFile, IsNoneWithoutARuntimeFolder) {
    for (const char* const folder : {static_cast<const char*>(nullptr), "", "relative"}) {
        const TemporaryVariable runtime("XDG_RUNTIME_DIR", folder);
        EXPECT_TRUE(instanceLockFile("kelvinbar").empty());
    }
}

TEST(InstancePlace, IsThatOfTheEnvironment) {
    const TemporaryVariable display("DISPLAY", ":1.0");
    const TemporaryVariable wayland("WAYLAND_DISPLAY", "wayland-1");
    const TemporaryVariable session("XDG_SESSION_ID", "c2");
    const InstancePlace expected{.process = std::to_string(::getpid()),
                                 .display = ":1",
                                 .waylandDisplay = "wayland-1",
                                 .session = "c2"};
    EXPECT_EQ(ownPlace(), expected);
}

TEST(InstancePlace, IsUnknownWhereTheEnvironmentSaysNothing) {
    const TemporaryVariable display("DISPLAY", nullptr);
    const TemporaryVariable wayland("WAYLAND_DISPLAY", nullptr);
    const TemporaryVariable session("XDG_SESSION_ID", nullptr);
    EXPECT_EQ(ownPlace().display + ownPlace().waylandDisplay + ownPlace().session, "");
}

TEST(InstancePlace, KeepsTheHostInADisplaysName) {
    const TemporaryVariable display("DISPLAY", "host.example:10.0");
    EXPECT_EQ(ownPlace().display, "host.example:10");
}

TEST(DifferentDisplays, AreOnesOfWhichNoneIsShared) {
    const InstancePlace nowhere;
    const InstancePlace x{.process = {}, .display = ":0", .waylandDisplay = {}, .session = {}};
    const InstancePlace otherX{.process = {}, .display = ":1", .waylandDisplay = {}, .session = {}};
    const InstancePlace wayland{.process = {}, .display = {}, .waylandDisplay = "wayland-0", .session = {}};
    EXPECT_TRUE(areOnDifferentDisplays(x, otherX));
    EXPECT_TRUE(areOnDifferentDisplays(x, wayland));
    EXPECT_TRUE(areOnDifferentDisplays(otherX, terminal));
    EXPECT_FALSE(areOnDifferentDisplays(x, x));
    EXPECT_FALSE(areOnDifferentDisplays(x, terminal));
    EXPECT_FALSE(areOnDifferentDisplays(terminal, wayland));
    for (const InstancePlace& place : {x, wayland, terminal, nowhere}) {
        EXPECT_FALSE(areOnDifferentDisplays(nowhere, place));
        EXPECT_FALSE(areOnDifferentDisplays(place, nowhere));
    }
}

} // namespace
} // namespace kelvinbar::instance_lock_test
