#include "machines/linux/files/SystemFile.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar::system_file_test {

namespace {

using fakes::TemporaryTree;
using namespace std::string_literals;

constexpr std::size_t limit = std::size_t{64} * 1024;

class SystemFile : public testing::Test {
  protected:
    TemporaryTree tree;

    std::filesystem::path fileWith(std::string_view content) { return tree.write("file", content); }
};

TEST_F(SystemFile, TheTextIsTheContentUnchanged) {
    const std::string content = " first \n\0second\xFF\n"s;
    EXPECT_EQ(systemFileText(fileWith(content)), content);
}

TEST_F(SystemFile, AnEmptyFileHasEmptyText) { EXPECT_EQ(systemFileText(fileWith("")), ""); }

TEST_F(SystemFile, NoMoreThan64KibibytesAreRead) {
    for (const std::size_t size : {limit - 1, limit, limit + 1}) {
        SCOPED_TRACE(size);
        const auto text = systemFileText(fileWith(std::string(size, 'x')));
        ASSERT_TRUE(text.has_value());
        EXPECT_EQ(text->size(), std::min(size, limit));
    }
}

TEST_F(SystemFile, AFileOfSeveralMebibytesIsReadFromItsBeginning) {
    const auto text = systemFileText(fileWith("begin" + std::string(std::size_t{5} * 1024 * 1024, 'x')));
    ASSERT_TRUE(text.has_value());
    EXPECT_EQ(text->size(), limit);
    EXPECT_TRUE(text->starts_with("beginx"));
}

TEST_F(SystemFile, AMissingFileGivesNothing) {
    const auto missing = tree.root() / "missing";
    EXPECT_EQ(systemFileText(missing), std::nullopt);
    EXPECT_EQ(systemFileLine(missing), std::nullopt);
    EXPECT_EQ(systemFileNumber(missing), std::nullopt);
}

TEST_F(SystemFile, ADirectoryGivesNothing) {
    const auto directory = tree.makeDirectory("directory");
    EXPECT_EQ(systemFileText(directory), std::nullopt);
    EXPECT_EQ(systemFileLine(directory), std::nullopt);
    EXPECT_EQ(systemFileNumber(directory), std::nullopt);
}

TEST_F(SystemFile, ALineHasNoWhiteSpaceAtItsEnds) {
    for (const auto& [content, line] : {std::pair{"passive\n", "passive"},
                                        {"passive", "passive"},
                                        {"\t two words \r\n", "two words"},
                                        {"\n\nfirst\nsecond\n", "first\nsecond"}}) {
        SCOPED_TRACE(content);
        EXPECT_EQ(systemFileLine(fileWith(content)), line);
    }
}

TEST_F(SystemFile, ABlankFileHasNoLine) {
    for (const std::string_view content : {"", "\n", " \t\r\n\n"}) {
        SCOPED_TRACE(content.size());
        EXPECT_EQ(systemFileLine(fileWith(content)), std::nullopt);
    }
}

TEST_F(SystemFile, ANumberIsOneDecimalWholeNumber) {
    for (const auto& [content, number] :
         {std::pair{"42000\n", std::int64_t{42000}},
          {"0", 0},
          {"  7\t\n", 7},
          {"-274000\n", -274000},
          {"007", 7},
          {"9223372036854775807\n", std::numeric_limits<std::int64_t>::max()},
          {"-9223372036854775808\n", std::numeric_limits<std::int64_t>::min()}}) {
        SCOPED_TRACE(content);
        EXPECT_EQ(systemFileNumber(fileWith(content)), number);
    }
}

TEST_F(SystemFile, WhateverElseAFileHoldsIsNoNumber) {
    for (const std::string& content :
         {""s, "\n"s, "abc\n"s, "42 000\n"s, "42\n43\n"s, "42mC\n"s, "4.2\n"s, "4,2\n"s, "0x10\n"s, "1e3\n"s,
          "-\n"s, "- 1\n"s, "9223372036854775808\n"s, "42\0"s}) {
        SCOPED_TRACE(content);
        EXPECT_EQ(systemFileNumber(fileWith(content)), std::nullopt);
    }
}

} // namespace
} // namespace kelvinbar::system_file_test
