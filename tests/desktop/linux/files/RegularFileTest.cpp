#include "desktop/linux/files/RegularFile.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::regular_file_test {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t limit = 100;

class RegularFileTest : public testing::Test {
  protected:
    fs::path link(const fs::path& target, const std::string& name = "link") {
        const fs::path path = tree.root() / name;
        fs::remove(path);
        fs::create_symlink(target, path);
        return path;
    }

    fs::path pipe() {
        fs::path path = tree.root() / "pipe";
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    fs::path socket() {
        fs::path path = tree.root() / "socket";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.native().copy(address.sun_path, sizeof(address.sun_path) - 1);
        const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        ::close(descriptor);
        return path;
    }

    /// What is there, and is no regular file.
    std::vector<fs::path> others() {
        return {tree.root(), "/dev/zero", pipe(), socket(), tree.root() / "file" / "below"};
    }

    fakes::TemporaryTree tree;
    fs::path file = tree.write("file", "content");
};

TEST_F(RegularFileTest, ReadsARegularFileAlsoBehindLinks) {
    EXPECT_EQ(regularContent(file, limit), "content");
    EXPECT_EQ(regularContent(link(link("file"), "second"), limit), "content");
    EXPECT_EQ(kindOf(link(file)), FileKind::regular);
}

TEST_F(RegularFileTest, ReadsAFileUpToItsLimit) {
    EXPECT_EQ(regularContent(file, 7), "content");
    EXPECT_EQ(regularContent(file, 6), std::nullopt);
}

TEST_F(RegularFileTest, ReadsNothingElse) {
    for (const fs::path& other : others()) {
        EXPECT_EQ(regularContent(other, limit), std::nullopt) << other;
        EXPECT_EQ(regularContent(link(other), limit), std::nullopt) << other;
    }
    EXPECT_EQ(regularContent(tree.root() / "missing", limit), std::nullopt);
}

TEST_F(RegularFileTest, TellsAMissingFileFromOneOfAnotherKind) {
    EXPECT_EQ(kindOf(tree.root() / "missing"), FileKind::missing);
    EXPECT_EQ(kindOf(link("missing")), FileKind::missing);
    EXPECT_EQ(kindOf(tree.root()), FileKind::other);
    EXPECT_EQ(kindOf("/dev/zero"), FileKind::other);
    EXPECT_EQ(kindOf(link("link")), FileKind::other) << "leads to itself";
}

TEST_F(RegularFileTest, ALinkIsWrittenThroughToARegularFile) {
    EXPECT_EQ(replaceableFile(file), file);
    EXPECT_EQ(replaceableFile(link(file)), file);
    EXPECT_EQ(replaceableFile(link("link", "second")), file);
}

TEST_F(RegularFileTest, ALinkIsWrittenThroughToNothingInAFolderThatIsThere) {
    EXPECT_EQ(replaceableFile(link(tree.root() / "new")), tree.root() / "new");
    EXPECT_EQ(replaceableFile(link(tree.root() / "no" / "new")), std::nullopt);
}

TEST_F(RegularFileTest, ALinkIsWrittenThroughToNothingElse) {
    for (const fs::path& other : others()) {
        EXPECT_EQ(replaceableFile(other), std::nullopt) << other;
        EXPECT_EQ(replaceableFile(link(other)), std::nullopt) << other;
    }
    EXPECT_EQ(replaceableFile(link("link")), std::nullopt) << "leads to itself";
}

} // namespace
} // namespace kelvinbar::regular_file_test
