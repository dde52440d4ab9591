#include "process/StandardStreams.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <initializer_list>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <system_error>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::standard_streams_test {

namespace {

bool isNullDevice(int descriptor) {
    struct stat opened{};

    struct stat device{};

    return ::fstat(descriptor, &opened) == 0 && ::stat("/dev/null", &device) == 0 &&
           opened.st_rdev == device.st_rdev;
}

/// Whether `holds` in a child process that has opened its standard streams, of which `closed` were closed.
bool inChildWithout(std::initializer_list<int> closed, const std::function<bool()>& holds) {
    const pid_t child = ::fork();
    if (child == 0) {
        for (const int stream : closed) ::close(stream);
        openClosedStandardStreams();
        ::_exit(holds() ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(StandardStreams, AreTheNullDeviceWhereTheyWereClosed) {
    EXPECT_TRUE(
        inChildWithout({0, 1, 2}, [] { return isNullDevice(0) && isNullDevice(1) && isNullDevice(2); }));
    for (const int stream : {0, 1, 2}) {
        EXPECT_TRUE(inChildWithout({stream}, [stream] { return isNullDevice(stream); })) << stream;
    }
}

TEST(StandardStreams, LeaveNoPlaceForAnotherFile) {
    EXPECT_TRUE(inChildWithout({0, 1, 2}, [] { return ::open("/", O_RDONLY) > 2; }));
}

TEST(StandardStreams, FailAsIfTheyWereStillClosed) {
    EXPECT_TRUE(inChildWithout({0, 1, 2}, [] {
        std::array<char, 1> byte{};
        return ::read(0, byte.data(), 1) < 0 && ::write(1, byte.data(), 1) < 0 &&
               ::write(2, byte.data(), 1) < 0;
    }));
}

TEST(StandardStreams, AreLeftAloneWhereTheyAreOpen) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    EXPECT_TRUE(inChildWithout({0, 2}, [&pipe] {
        struct stat before{};
        struct stat after{};
        ::dup2(pipe[1], 1);
        ::fstat(1, &before);
        openClosedStandardStreams();
        ::fstat(1, &after);
        return before.st_ino == after.st_ino && !isNullDevice(1);
    }));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

/// Whether colours are wanted with these variables, of which null ones are not set.
bool wantsColoursWith(const char* refusal, const char* terminal) {
    return inChildWithout({}, [&] {
        ::unsetenv("NO_COLOR");
        ::unsetenv("TERM");
        if (refusal != nullptr) ::setenv("NO_COLOR", refusal, 1);
        if (terminal != nullptr) ::setenv("TERM", terminal, 1);
        return wantsColours();
    });
}

TEST(Colours, AreWantedOnATerminalThatHasThemUnlessTheUserRefuses) {
    EXPECT_TRUE(wantsColoursWith(nullptr, "xterm-256color"));
    EXPECT_TRUE(wantsColoursWith("", "xterm-256color"));
    EXPECT_FALSE(wantsColoursWith("1", "xterm-256color"));
    EXPECT_FALSE(wantsColoursWith("0", "xterm-256color"));
    EXPECT_FALSE(wantsColoursWith(nullptr, "dumb"));
    EXPECT_FALSE(wantsColoursWith(nullptr, nullptr));
    EXPECT_FALSE(wantsColoursWith(nullptr, ""));
}

TEST(ControlSequences, AreTakenByTerminalsThatHaveThem) {
    for (const bool isDumb : {false, true}) {
        EXPECT_TRUE(inChildWithout({}, [isDumb] {
            ::setenv("NO_COLOR", "1", 1);
            ::setenv("TERM", isDumb ? "dumb" : "xterm", 1);
            return takesControlSequences() != isDumb;
        }));
    }
}

/// Closes the pipe.
void expectWholeTextThrough(const std::array<int, 2>& pipe) {
    const std::string text(std::size_t{1} << 20U, 'x'); // more than a pipe holds
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(pipe[0]);
        ::dup2(pipe[1], STDOUT_FILENO);
        ::_exit(writeToStandardOutput(text) ? 1 : 0);
    }
    ::close(pipe[1]);
    std::string received;
    std::array<char, 4096> chunk{};
    for (ssize_t size = 0; (size = ::read(pipe[0], chunk.data(), chunk.size())) > 0;) {
        received.append(chunk.data(), static_cast<std::size_t>(size));
    }
    ::close(pipe[0]);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(received == text);
}

TEST(StandardOutput, GetsTheWholeText) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    expectWholeTextThrough(pipe);
}

TEST(StandardOutput, WaitsForTheReaderOfANonBlockingPipe) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ASSERT_EQ(::fcntl(pipe[1], F_SETFL, O_NONBLOCK), 0);
    expectWholeTextThrough(pipe);
}

TEST(StandardOutput, FailsWithItsReasonInAPipeThatNobodyReads) {
    EXPECT_TRUE(inChildWithout({}, [] {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) return false;
        ::dup2(pipe[1], STDOUT_FILENO);
        ::close(pipe[0]);
        letWritesFail();
        return writeToStandardOutput("text") == std::errc::broken_pipe;
    }));
}

TEST(StandardOutput, FailsWithItsReasonInAFileThatMayNotGrow) {
    EXPECT_TRUE(inChildWithout({}, [] {
        std::FILE* const file = std::tmpfile();
        const rlimit limit{4, 4};
        if (file == nullptr || ::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
        ::dup2(::fileno(file), STDOUT_FILENO);
        letWritesFail();
        return !writeToStandardOutput("text") && writeToStandardOutput("more") == std::errc::file_too_large;
    }));
}

TEST(StandardOutput, FailsInASentence) {
    const auto error = std::make_error_code(std::errc::broken_pipe);
    EXPECT_EQ(writeFailure("the snapshot", error), "cannot write the snapshot: " + error.message());
}

TEST(StandardOutput, FailsWithItsReasonWhereItIsClosed) {
    EXPECT_TRUE(inChildWithout({1}, [] {
        return writeToStandardOutput("text") == std::errc::bad_file_descriptor && !writeToStandardOutput("");
    }));
}

} // namespace
} // namespace kelvinbar::standard_streams_test
