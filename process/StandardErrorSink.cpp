#include "process/StandardErrorSink.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <poll.h>
#include <string>
#include <sys/types.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// Whether a write of up to PIPE_BUF bytes returns at once. Also true where the system does not tell.
bool isReady() {
    pollfd standardError{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    return ::poll(&standardError, 1, 0) != 0;
}

/// Returns whether the text was written as a whole.
bool wasWritten(std::string_view text) {
    while (!text.empty() && isReady()) {
        const ssize_t written =
            ::write(STDERR_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return text.empty();
}

std::string gapText(std::uint64_t lines) {
    std::string text = "kelvinbar: ";
    text.append(std::to_string(lines)).append(lines == 1 ? " line was" : " lines were");
    return text.append(" left out, since nobody read on\n");
}

} // namespace

void StandardErrorSink::write(std::string_view line) {
    if (leftOut_ > 0 && wasWritten(gapText(leftOut_))) leftOut_ = 0;
    if (leftOut_ > 0 || !wasWritten(line)) ++leftOut_;
}

} // namespace kelvinbar
