#include "machines/linux/applesmc/AppleSMCRegisters.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/file.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::apple_smc_files_test {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace std::chrono_literals;

/// Another program that has the driver's file open.
class OtherProgram {
  public:
    explicit OtherProgram(const fs::path& file) : descriptor_(::open(file.c_str(), O_RDWR | O_CLOEXEC)) {}

    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    ~OtherProgram() { ::close(descriptor_); }

    [[nodiscard]] bool lock() const { return ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0; }

    void unlock() const { ::flock(descriptor_, LOCK_UN); }

  private:
    int descriptor_;
};

/// The duration of `work`.
template <typename Work>
std::chrono::steady_clock::duration timeOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

class AppleSMCFilesTest : public testing::Test {
  protected:
    AppleSMCFilesTest() {
        tree.write("name", "applesmc\n");
        tree.write("key_count", "297\n");
        tree.write("key_at_index", "5\n");
        tree.write("key_at_index_name", "TC0P\n");
        tree.write("key_at_index_type", "sp78\n");
        tree.write("key_at_index_data_length", "2\n");
        tree.write("key_at_index_data", "\x28\x80");
    }

    [[nodiscard]] std::unique_ptr<AppleSMCRegisters> opened() const { return openAppleSMCFiles(tree.root()); }

    [[nodiscard]] std::string contentOf(const fs::path& file) const {
        std::ifstream stream(tree.root() / file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// The bytes of the selected key; nothing when the SMC refuses to return them.
    [[nodiscard]] std::optional<SMCBytes> data() const {
        SMCBytes bytes{};
        return opened()->data(bytes) ? std::optional(bytes) : std::nullopt;
    }

    fakes::TemporaryTree tree;
};

TEST_F(AppleSMCFilesTest, ReadsWhatTheDriverShowsOfTheChosenKey) {
    const auto registers = opened();
    ASSERT_NE(registers, nullptr);
    EXPECT_EQ(registers->keyCount(), 297U);
    EXPECT_EQ(registers->selectedIndex(), 5U);
    EXPECT_EQ(registers->keyName(), "TC0P");
    EXPECT_EQ(registers->typeName(), "sp78");
    EXPECT_EQ(registers->dataLength(), 2U);
    SMCBytes bytes{};
    EXPECT_TRUE(registers->data(bytes));
    EXPECT_EQ(bytes, (SMCBytes{0x28, 0x80}));
}

TEST_F(AppleSMCFilesTest, ReadsAfreshEveryTime) {
    const auto registers = opened();
    EXPECT_EQ(registers->keyName(), "TC0P");
    tree.write("key_at_index_name", "TC1P\n");
    tree.write("key_at_index_data", "\x29\x01");
    tree.write("key_count", "298\n");
    EXPECT_EQ(registers->keyName(), "TC1P");
    EXPECT_EQ(registers->keyCount(), 298U);
    SMCBytes bytes{};
    EXPECT_TRUE(registers->data(bytes));
    EXPECT_EQ(bytes, (SMCBytes{0x29, 0x01}));
}

TEST_F(AppleSMCFilesTest, KeepsTheBlanksOfNamesAndTypesAndTakesTheLineFeedAway) {
    const auto registers = opened();
    tree.write("key_at_index_name", "FS! \n");
    tree.write("key_at_index_type", "ui8 \n");
    EXPECT_EQ(registers->keyName(), "FS! ");
    EXPECT_EQ(registers->typeName(), "ui8 ");
    tree.write("key_at_index_type", "ui8\n");
    EXPECT_EQ(registers->typeName(), "ui8");
    tree.write("key_at_index_name", "    \n");
    EXPECT_EQ(registers->keyName(), "    ");
}

TEST_F(AppleSMCFilesTest, WritesTheIndexOfTheKeyToChooseInDecimal) {
    const auto registers = opened();
    EXPECT_TRUE(registers->select(7));
    EXPECT_EQ(contentOf("key_at_index"), "7\n");
    EXPECT_EQ(registers->selectedIndex(), 7U);
    tree.write("key_at_index", "");
    EXPECT_TRUE(registers->select(1234));
    EXPECT_EQ(contentOf("key_at_index").substr(0, 4), "1234");
}

TEST_F(AppleSMCFilesTest, BytesMayHoldLineFeedsAndZeroBytes) {
    for (const std::string& content : {"\n\0"s, "\0\n"s, "a\nb\n"s, "\n"s, "\0"s, "\0\0\n\n\0"s}) {
        SCOPED_TRACE(content.size());
        tree.write("key_at_index_data", content);
        SMCBytes expected{};
        for (std::size_t place = 0; place < content.size(); ++place) {
            expected[place] = static_cast<std::uint8_t>(content[place]);
        }
        EXPECT_EQ(data(), expected);
    }
}

TEST_F(AppleSMCFilesTest, MoreBytesThanThereIsRoomForAreCut) {
    SMCBytes expected{};
    expected.fill('x');
    for (const std::size_t size : {32U, 33U, 255U, 4096U}) {
        SCOPED_TRACE(size);
        tree.write("key_at_index_data", std::string(size, 'x'));
        EXPECT_EQ(data(), expected);
    }
}

TEST_F(AppleSMCFilesTest, BytesThatCannotBeReadAreNotGivenAway) {
    tree.remove("key_at_index_data");
    tree.makeDirectory("key_at_index_data");
    const auto registers = opened();
    SMCBytes bytes{};
    EXPECT_FALSE(registers != nullptr && registers->data(bytes));
    EXPECT_EQ(bytes, SMCBytes{});
}

TEST_F(AppleSMCFilesTest, FilesThatDoNotHoldWhatTheyShouldGiveNothing) {
    for (const std::string& content : {""s, "\n"s, "x\n"s, "-1\n"s, "0x10\n"s, "99999999999999999999\n"s,
                                       "4294967296\n"s, "1.5\n"s, std::string(4096, '1').append(1, '\n')}) {
        SCOPED_TRACE(content.substr(0, 24));
        tree.write("key_count", content);
        tree.write("key_at_index", content);
        tree.write("key_at_index_data_length", content);
        const auto registers = opened();
        EXPECT_EQ(registers->keyCount(), std::nullopt);
        EXPECT_EQ(registers->selectedIndex(), std::nullopt);
        EXPECT_EQ(registers->dataLength(), std::nullopt);
    }
    for (const std::string& content : {""s, "TC0P"s, std::string(4096, 'T').append(1, '\n')}) {
        SCOPED_TRACE(content.substr(0, 24));
        tree.write("key_at_index_name", content);
        tree.write("key_at_index_type", content);
        EXPECT_EQ(opened()->keyName(), std::nullopt);
        EXPECT_EQ(opened()->typeName(), std::nullopt);
    }
}

TEST_F(AppleSMCFilesTest, MissingFilesGiveNothing) {
    for (const char* const file :
         {"key_count", "key_at_index_name", "key_at_index_type", "key_at_index_data_length"}) {
        tree.remove(file);
    }
    const auto registers = opened();
    ASSERT_NE(registers, nullptr);
    EXPECT_EQ(registers->keyCount(), std::nullopt);
    EXPECT_EQ(registers->keyName(), std::nullopt);
    EXPECT_EQ(registers->typeName(), std::nullopt);
    EXPECT_EQ(registers->dataLength(), std::nullopt);
}

// Opening

TEST_F(AppleSMCFilesTest, CannotBeOpenedWithoutAFileToChooseKeysIn) {
    tree.remove("key_at_index");
    EXPECT_EQ(opened(), nullptr);
    EXPECT_FALSE(fs::exists(tree.root() / "key_at_index"));
    tree.makeDirectory("key_at_index");
    EXPECT_EQ(opened(), nullptr);
    EXPECT_EQ(openAppleSMCFiles(tree.root() / "missing"), nullptr);
}

TEST_F(AppleSMCFilesTest, CannotBeOpenedWithoutAFileOfBytes) {
    tree.remove("key_at_index_data");
    EXPECT_EQ(opened(), nullptr);
}

TEST_F(AppleSMCFilesTest, CannotBeOpenedByAUserWhoMayNotChooseKeys) {
    if (::geteuid() == 0) GTEST_SKIP() << "the administrator may write everything";
    fs::permissions(tree.root() / "key_at_index", fs::perms::owner_read);
    EXPECT_EQ(opened(), nullptr);
}

// The lock

TEST_F(AppleSMCFilesTest, TheLockKeepsOtherProgramsOutUntilItIsReleased) {
    const auto registers = opened();
    const OtherProgram other(tree.root() / "key_at_index");
    EXPECT_TRUE(registers->lock());
    EXPECT_FALSE(other.lock());
    registers->unlock();
    EXPECT_TRUE(other.lock());
}

TEST_F(AppleSMCFilesTest, ALockThatAnotherHoldsIsWaitedForAMomentAndNotForEver) {
    const auto registers = opened();
    const OtherProgram other(tree.root() / "key_at_index");
    ASSERT_TRUE(other.lock());
    const auto waited = timeOf([&] { EXPECT_FALSE(registers->lock()); });
    EXPECT_GE(waited, 5ms);
    EXPECT_LE(waited, 5s);
    other.unlock();
    EXPECT_TRUE(registers->lock());
}

TEST_F(AppleSMCFilesTest, ALockThatWasWaitedForInVainIsNotWaitedForAtEveryKey) {
    const auto registers = opened();
    const OtherProgram other(tree.root() / "key_at_index");
    ASSERT_TRUE(other.lock());
    EXPECT_FALSE(registers->lock());
    const auto waited = timeOf([&] {
        for (int key = 0; key < 100; ++key) EXPECT_FALSE(registers->lock());
    });
    EXPECT_LE(waited, 500ms);
}

TEST_F(AppleSMCFilesTest, ALockThatWasHadSinceIsWaitedForAgain) {
    const auto registers = opened();
    const OtherProgram other(tree.root() / "key_at_index");
    ASSERT_TRUE(other.lock());
    EXPECT_FALSE(registers->lock());
    other.unlock();
    EXPECT_TRUE(registers->lock());
    registers->unlock();
    ASSERT_TRUE(other.lock());
    EXPECT_GE(timeOf([&] { EXPECT_FALSE(registers->lock()); }), 5ms);
}

TEST_F(AppleSMCFilesTest, TheLockGoesWithItsHolder) {
    auto registers = opened();
    EXPECT_TRUE(registers->lock());
    registers = nullptr;
    EXPECT_TRUE(OtherProgram(tree.root() / "key_at_index").lock());
}

} // namespace
} // namespace kelvinbar::apple_smc_files_test
