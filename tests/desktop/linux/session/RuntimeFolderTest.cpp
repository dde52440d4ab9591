#include "desktop/linux/session/RuntimeFolder.h"

#include "desktop/linux/session/InstanceLock.h"
#include "tests/desktop/TemporaryVariable.h"
#include "tests/tools/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::runtime_folder_test {

namespace {

namespace fs = std::filesystem;

class RuntimeFolderTest : public testing::Test {
  protected:
    /// The runtime folder after a start in an environment with or without one; empty if there is none.
    [[nodiscard]] std::string folderAfterStart(const char* known = nullptr) const {
        const TemporaryVariable variable("XDG_RUNTIME_DIR", known);
        provideRuntimeFolder(folders_.path(""));
        const char* const value = std::getenv("XDG_RUNTIME_DIR");
        return value == nullptr ? std::string() : std::string(value);
    }

    void makeOwn(fs::perms permissions = fs::perms::owner_all) const {
        fs::create_directory(own_);
        fs::permissions(own_, permissions);
    }

    TemporaryFolder folders_;
    std::string own_ = folders_.path(std::to_string(::geteuid()));
};

TEST_F(RuntimeFolderTest, IsThatOfTheUserWhereTheEnvironmentHasNone) {
    makeOwn();
    EXPECT_EQ(folderAfterStart(), own_);
    EXPECT_EQ(folderAfterStart(""), own_);
}

TEST_F(RuntimeFolderTest, IsThatOfTheEnvironmentWhereItHasOne) {
    makeOwn();
    EXPECT_EQ(folderAfterStart("/somewhere"), "/somewhere");
}

TEST_F(RuntimeFolderTest, IsNoneIfTheUserHasNone) { EXPECT_EQ(folderAfterStart(), ""); }

TEST_F(RuntimeFolderTest, IsNoneThatOthersHaveAccessTo) {
    makeOwn(fs::perms::owner_all | fs::perms::group_exec);
    EXPECT_EQ(folderAfterStart(), "");
    makeOwn(fs::perms::owner_all | fs::perms::others_read);
    EXPECT_EQ(folderAfterStart(), "");
}

TEST_F(RuntimeFolderTest, IsNoFileAndNoLink) {
    ASSERT_EQ(folders_.write(std::to_string(::geteuid()), ""), own_);
    fs::permissions(own_, fs::perms::owner_all);
    EXPECT_EQ(folderAfterStart(), "");
    fs::remove(own_);
    const std::string elsewhere = folders_.path("elsewhere");
    fs::create_directory(elsewhere);
    fs::permissions(elsewhere, fs::perms::owner_all);
    fs::create_directory_symlink(elsewhere, own_);
    EXPECT_EQ(folderAfterStart(), "");
}

TEST_F(RuntimeFolderTest, IsNoneOfAnotherUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
    makeOwn();
    ASSERT_EQ(::chown(own_.c_str(), 1, 1), 0);
    EXPECT_EQ(folderAfterStart(), "");
}

TEST_F(RuntimeFolderTest, HasTheLockThatAStartInTheSessionTakes) {
    makeOwn();
    const TemporaryVariable none("XDG_RUNTIME_DIR", nullptr);
    provideRuntimeFolder(folders_.path(""));
    const fs::path withoutSession = instanceLockFile("kelvinbar");
    const TemporaryVariable session("XDG_RUNTIME_DIR", own_.c_str());
    EXPECT_EQ(withoutSession, instanceLockFile("kelvinbar"));
}

} // namespace
} // namespace kelvinbar::runtime_folder_test
