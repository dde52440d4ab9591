#include "process/EndSignals.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// Rounded up, so that a wait does not end early.
int wholeMilliseconds(std::chrono::nanoseconds time) {
    using std::chrono::milliseconds;
    constexpr milliseconds longest = std::chrono::hours(24);
    return static_cast<int>(
        std::clamp(std::chrono::ceil<milliseconds>(time), milliseconds(0), longest).count());
}

} // namespace

EndSignals::EndSignals() : pipe_(numbers, static_cast<int>(SA_RESETHAND)) {}

bool EndSignals::comeWithin(std::chrono::nanoseconds time) const {
    std::array<pollfd, 2> watched{{{pipe_.readEnd(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    const int count = ::poll(watched.data(), watched.size(), wholeMilliseconds(time));
    if (count < 0) return errno == EINTR && comeWithin(std::chrono::nanoseconds(0));
    return watched[0].revents != 0 || (watched[1].revents & (POLLERR | POLLHUP)) != 0;
}

} // namespace kelvinbar
