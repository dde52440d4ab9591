#include "tools/TextInput.h"

#include "tests/tools/TemporaryFolder.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <ios>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::text_input_test {

namespace {

std::string textIn(const TextInput& input) {
    const auto* text = std::get_if<std::string>(&input);
    return text == nullptr ? "(no text)" : *text;
}

/// Why nothing was read; empty when something was.
std::string reasonIn(const TextInput& input) {
    const auto* error = std::get_if<InputError>(&input);
    return error == nullptr ? "" : error->message;
}

/// What the reason for a text that is too large says.
const std::string tooLargeWords = "larger than " + std::to_string(maximumInputSize / 1024 / 1024) + " MiB";

/// Gives `length` times the letter x without holding them all.
class LongStream final : public std::streambuf {
  public:
    explicit LongStream(std::size_t length) : rest_(length) { chunk_.assign(std::size_t{1} << 20U, 'x'); }

  protected:
    int_type underflow() override {
        const std::size_t size = std::min(rest_, chunk_.size());
        if (size == 0) return traits_type::eof();
        rest_ -= size;
        setg(chunk_.data(), chunk_.data(), chunk_.data() + size);
        return traits_type::to_int_type('x');
    }

  private:
    std::size_t rest_;
    std::string chunk_;
};

/// Has standard input read from `buffer` for as long as this lives.
class StandardInputFrom {
  public:
    explicit StandardInputFrom(std::streambuf& buffer) : before_(std::cin.rdbuf(&buffer)) {
        std::cin.clear();
    }

    StandardInputFrom(const StandardInputFrom&) = delete;
    StandardInputFrom& operator=(const StandardInputFrom&) = delete;

    ~StandardInputFrom() {
        std::cin.rdbuf(before_);
        std::cin.clear();
    }

  private:
    std::streambuf* before_;
};

TEST(TextInput, ReadsAllOfAFile) {
    const TemporaryFolder folder;
    EXPECT_EQ(textIn(readTextInput(folder.write("file", "a\tb\r\n\nlast line"))), "a\tb\r\n\nlast line");
}

TEST(TextInput, ReadsAFileWhoseSizeIsNoWholeNumberOfChunks) {
    const TemporaryFolder folder;
    for (const std::size_t size : {65535U, 65536U, 65537U, 200000U}) {
        SCOPED_TRACE(size);
        std::string content(size, 'a');
        content.back() = 'z';
        EXPECT_TRUE(textIn(readTextInput(folder.write("file", content))) == content);
    }
}

TEST(TextInput, ReadsBytesThatAreNoText) {
    const TemporaryFolder folder;
    const std::string bytes("\0\x1A\xFF\xFE\n\0", 6);
    EXPECT_EQ(textIn(readTextInput(folder.write("file", bytes))), bytes);
}

TEST(TextInput, ReadsAnEmptyFileAsEmptyText) {
    const TemporaryFolder folder;
    EXPECT_EQ(textIn(readTextInput(folder.write("file", ""))), "");
}

TEST(TextInput, ReadsAFileWithAnOddName) {
    const TemporaryFolder folder;
    EXPECT_EQ(textIn(readTextInput(folder.write("größe \t-", "content"))), "content");
}

TEST(TextInput, TellsUtf32FromUtf16) {
    for (const std::string& text :
         {std::string("\xFF\xFE\0\0K\0\0\0", 8), std::string("\0\0\xFE\xFF\0\0\0K", 8)}) {
        std::istringstream stream(text);
        EXPECT_EQ(reasonIn(readTextInput(stream)), "it is in UTF-32 instead of UTF-8");
    }
    std::istringstream stream(std::string("\xFF\xFEK\0", 4));
    EXPECT_EQ(reasonIn(readTextInput(stream)), "it is in UTF-16 instead of UTF-8");
}

TEST(TextInput, NamesTheReasonWhenAFileIsMissing) {
    const TemporaryFolder folder;
    const std::string reason = reasonIn(readTextInput(folder.path("missing")));
    EXPECT_NE(reason, "");
    EXPECT_EQ(reasonIn(readTextInput("")), reason);
    EXPECT_EQ(reasonIn(readTextInput(folder.path("missing/file"))), reason);
}

TEST(TextInput, NamesAnotherReasonForAFolder) {
    const TemporaryFolder folder;
    const std::string reason = reasonIn(readTextInput(folder.path("")));
    EXPECT_NE(reason, "");
    EXPECT_NE(reason, reasonIn(readTextInput(folder.path("missing"))));
}

TEST(TextInput, EndsOnADeviceThatNeverEnds) {
    EXPECT_THAT(reasonIn(readTextInput("/dev/zero")), testing::HasSubstr(tooLargeWords));
}

TEST(TextInput, ReadsAnEmptyDeviceAsEmptyText) { EXPECT_EQ(textIn(readTextInput("/dev/null")), ""); }

TEST(TextInput, TakesTextsUpToTheLimitAndNotMore) {
    LongStream largestBuffer(maximumInputSize);
    std::istream largest(&largestBuffer);
    EXPECT_EQ(textIn(readTextInput(largest)).size(), maximumInputSize);
    LongStream tooLargeBuffer(maximumInputSize + 1);
    std::istream tooLarge(&tooLargeBuffer);
    EXPECT_THAT(reasonIn(readTextInput(tooLarge)), testing::HasSubstr(tooLargeWords));
}

TEST(TextInput, ReadsStandardInputForADash) {
    std::stringbuf buffer("from standard\ninput");
    const StandardInputFrom redirection(buffer);
    EXPECT_EQ(textIn(readTextInput("-")), "from standard\ninput");
}

TEST(TextInput, ReadsEmptyStandardInputAsEmptyText) {
    std::stringbuf buffer;
    const StandardInputFrom redirection(buffer);
    EXPECT_EQ(textIn(readTextInput("-")), "");
}

TEST(TextInput, NamesAReasonWhenAStreamBreaks) {
    std::istringstream stream("text");
    stream.setstate(std::ios::badbit);
    EXPECT_NE(reasonIn(readTextInput(stream)), "");
}

} // namespace
} // namespace kelvinbar::text_input_test
