#include "machines/linux/files/SensorFile.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;
using fakes::TemporaryTree;
using namespace std::string_literals;

class SensorFileTest : public testing::Test {
  protected:
    TemporaryTree tree;

    fs::path fileWith(std::string_view content) { return tree.write("temp1_input", content); }

    std::optional<std::int64_t> numberIn(std::string_view content) {
        return SensorFile(fileWith(content)).number();
    }

    /// The descriptors of this process that `file` is open under.
    static std::vector<int> descriptorsOf(const fs::path& file) {
        const fs::path wanted = fs::canonical(file);
        std::vector<int> descriptors;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code error;
            if (fs::read_symlink(entry.path(), error) == wanted) {
                descriptors.push_back(std::stoi(entry.path().filename().string()));
            }
        }
        return descriptors;
    }
};

/// The file's line, with room for `size` characters.
std::optional<std::string> lineOf(const SensorFile& file, std::size_t size) {
    std::string buffer(size, '\0');
    const auto line = file.line(buffer);
    return line ? std::optional<std::string>(*line) : std::nullopt;
}

TEST_F(SensorFileTest, ANumberIsReadInPlaceAfterTheFileChanges) {
    const fs::path path = fileWith("42000\n");
    const SensorFile file(path);
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(file.number(), 42000);
    EXPECT_EQ(file.number(), 42000);
    fileWith("7\n");
    EXPECT_EQ(file.number(), 7);
    fileWith("123456\n");
    EXPECT_EQ(file.number(), 123456);
    EXPECT_EQ(descriptorsOf(path).size(), 1U);
}

TEST_F(SensorFileTest, NumbersMayBeNegativeAndStandBetweenBlanks) {
    EXPECT_EQ(numberIn("-5250\n"), -5250);
    EXPECT_EQ(numberIn("  42 \n"), 42);
    EXPECT_EQ(numberIn("\t42\r\n"), 42);
    EXPECT_EQ(numberIn("0\n"), 0);
    EXPECT_EQ(numberIn("9223372036854775807\n"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(numberIn("-9223372036854775808\n"), std::numeric_limits<std::int64_t>::min());
}

TEST_F(SensorFileTest, WhateverElseAFileHoldsIsNoNumber) {
    for (const std::string& content :
         {""s, "\n"s, " \n"s, "abc\n"s, "42mC\n"s, "4.2\n"s, "0x10\n"s, "42 43\n"s, "42\n43\n"s, "-\n"s,
          "- 1\n"s, "1e3\n"s, "9223372036854775808\n"s, "4\0002\n"s}) {
        SCOPED_TRACE(content);
        EXPECT_EQ(numberIn(content), std::nullopt);
    }
}

TEST_F(SensorFileTest, ALineWithoutItsLineFeedIsCutOff) {
    EXPECT_EQ(numberIn("42"), std::nullopt);
    EXPECT_EQ(numberIn("42\n4"), std::nullopt);
    EXPECT_EQ(lineOf(SensorFile(fileWith("Charging")), 64), std::nullopt);
}

TEST_F(SensorFileTest, FourKibibytesOfDigitsAreNoNumber) {
    EXPECT_EQ(numberIn(std::string(4096, '7')), std::nullopt);
    EXPECT_EQ(numberIn(std::string(4096, '7').append(1, '\n')), std::nullopt);
    EXPECT_EQ(numberIn(std::string(4096, '0').append(1, '\n')), std::nullopt);
}

TEST_F(SensorFileTest, AFileThatIsEmptiedGivesNothingUntilItHoldsANumberAgain) {
    const SensorFile file(fileWith("42\n"));
    fileWith("");
    EXPECT_EQ(file.number(), std::nullopt);
    EXPECT_EQ(lineOf(file, 64), std::nullopt);
    fileWith("43\n");
    EXPECT_EQ(file.number(), 43);
}

TEST_F(SensorFileTest, AFileThatIsTruncatedGivesNothing) {
    const fs::path path = fileWith("42000\n");
    const SensorFile file(path);
    fs::resize_file(path, 3);
    EXPECT_EQ(file.number(), std::nullopt);
}

TEST_F(SensorFileTest, ALineIsTheTextWithoutItsLineFeed) {
    EXPECT_EQ(lineOf(SensorFile(fileWith("Not charging\n")), 64), "Not charging");
    EXPECT_EQ(lineOf(SensorFile(fileWith(" two  blanks \n")), 64), " two  blanks ");
    EXPECT_EQ(lineOf(SensorFile(fileWith("\n")), 64), "");
}

TEST_F(SensorFileTest, ALineThatDoesNotFitGivesNothing) {
    const std::string text(63, 'x');
    const SensorFile file(fileWith(text + "\n"));
    EXPECT_EQ(lineOf(file, 63), std::nullopt);
    EXPECT_EQ(lineOf(file, 10), std::nullopt);
    EXPECT_EQ(lineOf(file, 0), std::nullopt);
    EXPECT_EQ(lineOf(file, 65), text);
}

TEST_F(SensorFileTest, ALineOfSixtyFourCharactersIsNoNumber) {
    EXPECT_EQ(numberIn(std::string(64, '0').append(1, '\n')), std::nullopt);
    EXPECT_EQ(numberIn(std::string(63, '0').append(1, '\n')), std::nullopt);
    EXPECT_EQ(numberIn(std::string(39, '0').append("7\n")), 7);
}

TEST_F(SensorFileTest, WithoutAFileThereIsNothingToRead) {
    const SensorFile none;
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(none.number(), std::nullopt);
    EXPECT_EQ(lineOf(none, 64), std::nullopt);
}

TEST_F(SensorFileTest, MissingFilesAndDirectoriesAreNotOpened) {
    for (const fs::path& path : {tree.root() / "missing", tree.makeDirectory("directory"), fs::path()}) {
        SCOPED_TRACE(path);
        const SensorFile file(path);
        EXPECT_FALSE(file.isOpen());
        EXPECT_EQ(file.number(), std::nullopt);
    }
}

TEST_F(SensorFileTest, APipeThatNoOneWritesToIsNotOpenedAndStallsNothing) {
    const fs::path pipe = tree.root() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const SensorFile file(pipe);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.number(), std::nullopt);
    EXPECT_TRUE(descriptorsOf(pipe).empty());
}

TEST_F(SensorFileTest, APipeThatHoldsANumberIsNotRead) {
    const fs::path pipe = tree.root() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int bothEnds = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    ASSERT_GE(bothEnds, 0);
    ASSERT_EQ(::write(bothEnds, "42\n", 3), 3);
    const SensorFile file(pipe);
    EXPECT_EQ(file.number(), std::nullopt);
    std::array<char, 4> left{};
    EXPECT_EQ(::read(bothEnds, left.data(), left.size()), 3);
    ::close(bothEnds);
}

TEST_F(SensorFileTest, AFileThatThisUserMayNotReadIsNotOpened) {
    if (::geteuid() == 0) GTEST_SKIP() << "this user may read every file";
    const fs::path path = fileWith("42\n");
    fs::permissions(path, fs::perms::none);
    const SensorFile file(path);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.number(), std::nullopt);
}

TEST_F(SensorFileTest, AFileThatAnotherTakesThePlaceOfIsTheOldOneOrNothing) {
    const fs::path path = fileWith("42\n");
    const SensorFile file(path);
    fs::rename(tree.write("new", "43\n"), path);
    const auto number = file.number();
    EXPECT_TRUE(!number || number == 42);
    EXPECT_EQ(SensorFile(path).number(), 43);
}

TEST_F(SensorFileTest, AFileThatIsRemovedIsTheOldOneOrNothing) {
    const fs::path path = fileWith("42\n");
    const SensorFile file(path);
    fs::remove(path);
    const auto number = file.number();
    EXPECT_TRUE(!number || number == 42);
    EXPECT_FALSE(SensorFile(path).isOpen());
}

TEST_F(SensorFileTest, OtherProgramsDoNotInheritDescriptors) {
    const fs::path path = fileWith("42\n");
    const SensorFile file(path);
    const auto descriptors = descriptorsOf(path);
    ASSERT_EQ(descriptors.size(), 1U);
    EXPECT_EQ(::fcntl(descriptors.front(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(SensorFileTest, AFileIsClosedWithItsObject) {
    const fs::path path = fileWith("42\n");
    {
        const SensorFile file(path);
        EXPECT_EQ(descriptorsOf(path).size(), 1U);
    }
    EXPECT_TRUE(descriptorsOf(path).empty());
}

TEST_F(SensorFileTest, AMovedFileIsReadAtItsNewPlaceAlone) {
    const fs::path path = fileWith("42\n");
    SensorFile first(path);
    const SensorFile second(std::move(first));
    EXPECT_EQ(second.number(), 42);
    EXPECT_FALSE(first.isOpen()); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(first.number(), std::nullopt);
    EXPECT_EQ(descriptorsOf(path).size(), 1U);
}

TEST_F(SensorFileTest, AnAssignedFileReplacesTheOneBefore) {
    const fs::path before = tree.write("before", "1\n");
    const fs::path after = tree.write("after", "2\n");
    SensorFile file(before);
    file = SensorFile(after);
    EXPECT_EQ(file.number(), 2);
    EXPECT_TRUE(descriptorsOf(before).empty());
    EXPECT_EQ(descriptorsOf(after).size(), 1U);
    file = SensorFile();
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(descriptorsOf(after).empty());
}

// More files than may stay open

class ManySensorFiles : public SensorFileTest {
  protected:
    static constexpr int excess = 20;

    fs::path path = fileWith("42\n");
    std::vector<SensorFile> files;

    void openMoreThanMayStayOpen() {
        for (int count = 0; count < SensorFile::mostOpenFiles + excess; ++count) files.emplace_back(path);
    }
};

TEST_F(ManySensorFiles, AllAreReadThoughABoundedNumberStaysOpen) {
    openMoreThanMayStayOpen();
    EXPECT_EQ(descriptorsOf(path).size(), static_cast<std::size_t>(SensorFile::mostOpenFiles));
    const auto allGive = [this](std::optional<std::int64_t> number) {
        return std::ranges::all_of(files, [&](const SensorFile& file) { return file.number() == number; });
    };
    EXPECT_TRUE(std::ranges::all_of(files, &SensorFile::isOpen));
    EXPECT_TRUE(allGive(42));
    fileWith("-7\n");
    EXPECT_TRUE(allGive(-7));
    fileWith("");
    EXPECT_TRUE(allGive(std::nullopt));
    EXPECT_EQ(descriptorsOf(path).size(), static_cast<std::size_t>(SensorFile::mostOpenFiles));
}

TEST_F(ManySensorFiles, ThoseThatAreGoneMakeRoomForOthers) {
    openMoreThanMayStayOpen();
    files.clear();
    EXPECT_TRUE(descriptorsOf(path).empty());
    openMoreThanMayStayOpen();
    EXPECT_EQ(descriptorsOf(path).size(), static_cast<std::size_t>(SensorFile::mostOpenFiles));
}

TEST_F(ManySensorFiles, MovesAndFilesThatAreNotThereTakeNoRoom) {
    for (int count = 0; count < SensorFile::mostOpenFiles; ++count) {
        SensorFile file(path);
        const SensorFile moved(std::move(file));
        const SensorFile missing(tree.root() / "missing");
    }
    openMoreThanMayStayOpen();
    EXPECT_EQ(descriptorsOf(path).size(), static_cast<std::size_t>(SensorFile::mostOpenFiles));
}

TEST_F(ManySensorFiles, OneThatIsOpenedForEachReadingMayBeMoved) {
    openMoreThanMayStayOpen();
    SensorFile beyond(std::move(files.back()));
    EXPECT_EQ(beyond.number(), 42);
    EXPECT_FALSE(files.back().isOpen());
    files.back() = std::move(beyond);
    EXPECT_EQ(files.back().number(), 42);
}

TEST_F(ManySensorFiles, OneThatIsOpenedForEachReadingDoesNotStallOnAPipe) {
    openMoreThanMayStayOpen();
    fs::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(files.back().number(), std::nullopt);
    fs::remove(path);
    EXPECT_EQ(files.back().number(), std::nullopt);
}

TEST_F(SensorFileTest, AFileIsOpenOnceForAllWhoShareIt) {
    tree.write("shared", "1\n");
    const auto first = SensorFile::shared(tree.root() / "shared");
    EXPECT_EQ(SensorFile::shared(tree.root() / "shared"), first);
    // Another file in its place is another file.
    tree.write("other", "2\n");
    fs::rename(tree.root() / "other", tree.root() / "shared");
    const auto second = SensorFile::shared(tree.root() / "shared");
    EXPECT_NE(second, first);
    EXPECT_EQ(second->number(), 2);
}

TEST_F(SensorFileTest, AMissingFileIsSharedAsNone) {
    EXPECT_FALSE(SensorFile::shared(tree.root() / "missing")->isOpen());
    tree.write("missing", "3\n");
    EXPECT_EQ(SensorFile::shared(tree.root() / "missing")->number(), 3);
}

} // namespace

} // namespace kelvinbar
