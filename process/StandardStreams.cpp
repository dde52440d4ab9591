#include "process/StandardStreams.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>

#include <unistd.h>

namespace kelvinbar {

namespace {

bool isClosed(int descriptor) { return ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF; }

} // namespace

void openClosedStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (!isClosed(stream)) continue;
        // The lowest free descriptor is this one. The direction is the one that nobody uses.
        const int direction = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::open("/dev/null", direction) < 0) return; // NOLINT(cppcoreguidelines-pro-type-vararg)
    }
}

bool isStandardOutputTerminal() { return ::isatty(STDOUT_FILENO) == 1; }

} // namespace kelvinbar
