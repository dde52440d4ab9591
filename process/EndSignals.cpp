#include "process/EndSignals.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// A handler has no argument to find its object by.
std::atomic<int> handlersPipe{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// C linkage knows no namespaces, so the name is unlike that of other handlers.
extern "C" void noteEndSignal(int /*number*/) {
    const int error = errno;
    const char note = 0;
    static_cast<void>(::write(handlersPipe, &note, 1) == 1);
    errno = error;
}

void makeUnheritedAndUnblocking(int descriptor) {
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg)
    static_cast<void>(::fcntl(descriptor, F_SETFD, FD_CLOEXEC));
    static_cast<void>(::fcntl(descriptor, F_SETFL, O_NONBLOCK));
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
}

/// Rounded up, so that a wait does not end early.
int wholeMilliseconds(std::chrono::nanoseconds time) {
    using std::chrono::milliseconds;
    constexpr milliseconds longest = std::chrono::hours(24);
    return static_cast<int>(
        std::clamp(std::chrono::ceil<milliseconds>(time), milliseconds(0), longest).count());
}

} // namespace

EndSignals::EndSignals() {
    if (::pipe(pipe_.data()) != 0) pipe_ = {-1, -1}; // signals end the process then, as without this
    if (pipe_[0] < 0) return;
    for (const int end : pipe_) makeUnheritedAndUnblocking(end);
    handlersPipe = pipe_[1];

    struct sigaction action{};

    action.sa_handler = noteEndSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        ::sigaction(numbers.at(index), nullptr, &earlier_.at(index));
        if (earlier_.at(index).sa_handler != SIG_IGN) ::sigaction(numbers.at(index), &action, nullptr);
    }
}

EndSignals::~EndSignals() {
    if (pipe_[0] < 0) return;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        ::sigaction(numbers.at(index), &earlier_.at(index), nullptr);
    }
    handlersPipe = -1;
    for (const int end : pipe_) ::close(end);
}

bool EndSignals::comeWithin(std::chrono::nanoseconds time) const {
    std::array<pollfd, 2> watched{{{pipe_[0], POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    const int count = ::poll(watched.data(), watched.size(), wholeMilliseconds(time));
    if (count < 0) return errno == EINTR && comeWithin(std::chrono::nanoseconds(0));
    return watched[0].revents != 0 || (watched[1].revents & (POLLERR | POLLHUP)) != 0;
}

} // namespace kelvinbar
