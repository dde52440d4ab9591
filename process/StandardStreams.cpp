#include "process/StandardStreams.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/types.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

bool isClosed(int descriptor) { return ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF; }

/// Of a stream that its starter has made non-blocking. Errors are found by the next write.
void waitForSpace() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    static_cast<void>(::poll(&output, 1, -1));
}

/// Empty if the variable is not set, too.
std::string_view environmentValue(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
    return value == nullptr ? "" : value;
}

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

TerminalSize standardOutputSize() {
    struct winsize size{};

    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return {};
    return {.columns = size.ws_col, .rows = size.ws_row};
}

bool takesControlSequences() {
    const std::string_view terminal = environmentValue("TERM");
    return !terminal.empty() && terminal != "dumb";
}

bool wantsColours() { return takesControlSequences() && environmentValue("NO_COLOR").empty(); }

void letWritesFail() {
    for (const int number : {SIGPIPE, SIGXFSZ}) static_cast<void>(std::signal(number, SIG_IGN));
}

std::error_code writeToStandardOutput(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EAGAIN) {
            waitForSpace();
        } else if (written < 0 && errno != EINTR) {
            return {errno, std::generic_category()};
        }
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::string writeFailure(std::string_view what, std::error_code error) {
    return std::string("cannot write ").append(what).append(": ").append(error.message());
}

} // namespace kelvinbar
