#include "process/StandardErrorSink.h"

#include "base/Log.h"

#include <array>
#include <cstddef>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/types.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::standard_error_sink_test {

namespace {

/// Standard error is something else while the object lives.
class ReplacedStandardError {
  public:
    explicit ReplacedStandardError(int descriptor) { dup2(descriptor, STDERR_FILENO); }

    ReplacedStandardError(const ReplacedStandardError&) = delete;
    ReplacedStandardError& operator=(const ReplacedStandardError&) = delete;

    ~ReplacedStandardError() {
        dup2(earlier_, STDERR_FILENO);
        close(earlier_);
    }

  private:
    int earlier_ = dup(STDERR_FILENO);
};

/// Standard error as a socket that keeps the bounds of each write.
class StandardErrorAsDatagrams {
  public:
    StandardErrorAsDatagrams() : sockets_(connected()), standardError_(sockets_[0]) {}

    StandardErrorAsDatagrams(const StandardErrorAsDatagrams&) = delete;
    StandardErrorAsDatagrams& operator=(const StandardErrorAsDatagrams&) = delete;

    ~StandardErrorAsDatagrams() {
        for (const int descriptor : sockets_) close(descriptor);
    }

    /// What one write wrote; empty when there was none.
    [[nodiscard]] std::string nextWrite() const {
        std::string text(2048, '\0');
        const ssize_t length = recv(sockets_[1], text.data(), text.size(), MSG_DONTWAIT);
        return text.substr(0, length < 0 ? 0 : static_cast<std::size_t>(length));
    }

  private:
    static std::array<int, 2> connected() {
        std::array<int, 2> sockets{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, sockets.data()), 0);
        return sockets;
    }

    std::array<int, 2> sockets_;
    ReplacedStandardError standardError_;
};

/// Standard error as a pipe that is full until it is read.
class FullStandardError {
  public:
    FullStandardError() : pipe_(full()), standardError_(pipe_[1]) {}

    FullStandardError(const FullStandardError&) = delete;
    FullStandardError& operator=(const FullStandardError&) = delete;

    ~FullStandardError() {
        for (const int descriptor : pipe_) close(descriptor);
    }

    /// All that was written since the last time, without what filled the pipe.
    [[nodiscard]] std::string read() const {
        std::string text(std::size_t{1} << 20, '\0');
        const ssize_t length = ::read(pipe_[0], text.data(), text.size());
        text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
        std::erase(text, filling);
        return text;
    }

  private:
    static constexpr char filling = '\1';

    static std::array<int, 2> full() {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe(ends.data()), 0);
        const int flags = fcntl(ends[1], F_GETFL);
        fcntl(ends[1], F_SETFL, flags | O_NONBLOCK);
        const std::string page(4096, filling);
        while (write(ends[1], page.data(), page.size()) > 0) {
        }
        fcntl(ends[1], F_SETFL, flags); // a write would wait
        return ends;
    }

    std::array<int, 2> pipe_;
    ReplacedStandardError standardError_;
};

TEST(StandardErrorSink, WritesEachLineInOneWrite) {
    const StandardErrorAsDatagrams standardError;
    StandardErrorSink sink;
    Log log(sink);
    const std::string text(1000, 'x');
    log.write(LogCategory::tray, LogLevel::warning, [&text] { return text; });
    log.write(LogCategory::tray, LogLevel::warning, "second");
    EXPECT_EQ(standardError.nextWrite(), "kelvinbar: " + text + "\n");
    EXPECT_EQ(standardError.nextWrite(), "kelvinbar: second\n");
    EXPECT_EQ(standardError.nextWrite(), "");
}

TEST(StandardErrorSink, LeavesOutAndCountsWhatNobodyReads) {
    const FullStandardError standardError;
    StandardErrorSink sink;
    sink.write("first\n");
    sink.write("second\n");
    EXPECT_EQ(standardError.read(), "");
    sink.write("third\n");
    sink.write("fourth\n");
    EXPECT_EQ(standardError.read(),
              "kelvinbar: 2 lines were left out, since nobody read on\nthird\nfourth\n");
}

TEST(StandardErrorSink, CountsAnew) {
    const FullStandardError standardError;
    StandardErrorSink sink;
    sink.write("first\n");
    EXPECT_EQ(standardError.read(), "");
    sink.write("second\n");
    EXPECT_EQ(standardError.read(), "kelvinbar: 1 line was left out, since nobody read on\nsecond\n");
    sink.write("third\n");
    EXPECT_EQ(standardError.read(), "third\n");
}

TEST(StandardErrorSink, DoesNotWaitInTheMiddleOfALongLine) {
    const FullStandardError standardError;
    EXPECT_EQ(standardError.read(), "");
    StandardErrorSink sink;
    sink.write(std::string(std::size_t{1} << 20, 'x'));
    EXPECT_FALSE(standardError.read().empty());
    sink.write("next\n");
    EXPECT_TRUE(standardError.read().ends_with("left out, since nobody read on\nnext\n"));
}

} // namespace
} // namespace kelvinbar::standard_error_sink_test
