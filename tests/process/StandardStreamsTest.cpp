#include "process/StandardStreams.h"

#include <array>
#include <fcntl.h>
#include <functional>
#include <initializer_list>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::standard_streams_test {

namespace {

bool isNullDevice(int descriptor) {
    struct stat opened {};

    struct stat device {};

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
        struct stat before {};
        struct stat after {};
        ::dup2(pipe[1], 1);
        ::fstat(1, &before);
        openClosedStandardStreams();
        ::fstat(1, &after);
        return before.st_ino == after.st_ino && !isNullDevice(1);
    }));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

} // namespace
} // namespace kelvinbar::standard_streams_test
