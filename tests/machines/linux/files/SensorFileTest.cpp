#include "machines/linux/files/SensorFile.h"

#include "tests/machines/linux/SystemCalls.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::sensor_file_test {

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

    /// The descriptors with which this process has `file` open.
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

TEST_F(SensorFileTest, AFileThatReturnsIsNotTheOneThatIsOpen) {
    const fs::path path = fileWith("42\n");
    const SensorFile file(path);
    EXPECT_TRUE(file.isStillAt(path));
    fileWith("43\n");
    EXPECT_TRUE(file.isStillAt(path)) << "another content, the same file";
    fs::rename(tree.write("new", "44\n"), path);
    EXPECT_FALSE(file.isStillAt(path));
    fs::remove(path);
    EXPECT_FALSE(file.isStillAt(path));
    EXPECT_FALSE(SensorFile(path).isStillAt(path)) << "a file that never was there";
}

TEST_F(SensorFileTest, AReadingIsOneSystemCall) {
    const SensorFile file(fileWith("42\n"));
    EXPECT_EQ(fakes::systemCallsOf([&] { EXPECT_EQ(file.number(), 42); }), (fakes::SystemCalls{.reads = 1}));
}

TEST_F(SensorFileTest, TwoThreadsMayReadAtOnce) {
    const SensorFile file(fileWith("42000\n"));
    const auto readOften = [&] {
        for (int round = 0; round < 10'000; ++round) ASSERT_EQ(file.number(), 42000);
    };
    std::thread other(readOften);
    readOften();
    other.join();
}

// The files of a machine

class SensorFilesTest : public SensorFileTest {
  protected:
    static constexpr int limit = 30;
    static constexpr int excess = 20;

    /// Opens more files than may stay open.
    void openTooMany() {
        paths.clear();
        for (int number = 0; number < limit + excess; ++number) {
            const fs::path path = tree.write("temp" + std::to_string(number) + "_input", "42\n");
            paths.push_back(path);
            opened.push_back(files.open(path));
        }
    }

    /// The files of the tree that this process has open.
    [[nodiscard]] std::size_t openCount() const {
        const std::string root = fs::canonical(tree.root()).string() + "/";
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code error;
            if (fs::read_symlink(entry.path(), error).string().starts_with(root)) ++count;
        }
        return count;
    }

    /// Whether all of the files hold `number`.
    [[nodiscard]] bool allHold(std::optional<std::int64_t> number) const {
        return std::ranges::all_of(opened, [&](const auto& file) { return file->number() == number; });
    }

    void writeAll(std::string_view content) const {
        for (const fs::path& path : paths) std::ofstream(path, std::ios::trunc) << content;
    }

    SensorFiles files{limit};
    std::vector<fs::path> paths;
    std::vector<std::shared_ptr<const SensorFile>> opened;
};

TEST_F(SensorFilesTest, AFileIsOpenOnceForAllWhoShareIt) {
    const fs::path path = fileWith("1\n");
    const auto first = files.open(path);
    EXPECT_EQ(files.open(path), first);
    EXPECT_EQ(descriptorsOf(path).size(), 1U);
    fs::rename(tree.write("other", "2\n"), path);
    const auto second = files.open(path);
    EXPECT_NE(second, first) << "another file in its place";
    EXPECT_EQ(second->number(), 2);
}

TEST_F(SensorFilesTest, AFileIsClosedWhenNobodyUsesItAnyMore) {
    const fs::path path = fileWith("1\n");
    auto first = files.open(path);
    auto second = files.open(path);
    first = nullptr;
    EXPECT_EQ(second->number(), 1);
    second = nullptr;
    EXPECT_TRUE(descriptorsOf(path).empty());
    EXPECT_EQ(files.open(path)->number(), 1);
}

TEST_F(SensorFilesTest, AMissingFileIsLookedForEachTimeItIsOpened) {
    const fs::path path = tree.root() / "missing";
    EXPECT_FALSE(files.open(path)->isOpen());
    tree.write("missing", "3\n");
    EXPECT_EQ(files.open(path)->number(), 3);
}

TEST_F(SensorFilesTest, AllAreReadThoughABoundedNumberStaysOpen) {
    openTooMany();
    EXPECT_EQ(openCount(), std::size_t{limit});
    EXPECT_TRUE(std::ranges::all_of(opened, [](const auto& file) { return file->isOpen(); }));
    EXPECT_TRUE(allHold(42));
    writeAll("-7\n");
    EXPECT_TRUE(allHold(-7));
    writeAll("");
    EXPECT_TRUE(allHold(std::nullopt));
    EXPECT_EQ(openCount(), std::size_t{limit});
}

TEST_F(SensorFilesTest, HalfOfTheFilesThatAProcessMayOpenAreTheLimit) {
    EXPECT_EQ(SensorFiles::mostOpenFiles, 512);
    SensorFiles unlimited;
    for (int number = 0; number < SensorFiles::mostOpenFiles + excess; ++number) {
        const fs::path path = tree.write(std::to_string(number), "42\n");
        paths.push_back(path);
        opened.push_back(unlimited.open(path));
    }
    EXPECT_EQ(openCount(), std::size_t{SensorFiles::mostOpenFiles});
    EXPECT_TRUE(allHold(42));
}

TEST_F(SensorFilesTest, ThoseThatAreGoneMakeRoomForOthers) {
    openTooMany();
    opened.clear();
    EXPECT_EQ(openCount(), 0U);
    openTooMany();
    EXPECT_EQ(openCount(), std::size_t{limit});
    EXPECT_TRUE(allHold(42));
}

TEST_F(SensorFilesTest, FilesThatAreNotThereTakeNoRoom) {
    for (int number = 0; number < 2 * limit; ++number) {
        opened.push_back(files.open(tree.root() / ("missing" + std::to_string(number))));
    }
    openTooMany();
    EXPECT_EQ(openCount(), std::size_t{limit});
}

TEST_F(SensorFilesTest, OneThatIsOpenedForEachReadingDoesNotStallOnAPipe) {
    openTooMany();
    fs::remove(paths.back());
    ASSERT_EQ(::mkfifo(paths.back().c_str(), 0600), 0);
    EXPECT_EQ(opened.back()->number(), std::nullopt);
    fs::remove(paths.back());
    EXPECT_EQ(opened.back()->number(), std::nullopt);
}

TEST_F(SensorFilesTest, ThousandsThatCameAndWentAreForgotten) {
    const auto kept = files.open(fileWith("42\n"));
    for (int number = 0; number < 5000; ++number) files.open(tree.root() / std::to_string(number));
    EXPECT_EQ(files.open(tree.root() / "temp1_input"), kept);
}

} // namespace
} // namespace kelvinbar::sensor_file_test
