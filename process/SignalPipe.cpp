#include "process/SignalPipe.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// A handler has no argument to find its object by.
std::atomic<int> writeEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// C linkage knows no namespaces, so the name is unlike that of other handlers.
extern "C" void writeSignalNumber(int number) {
    const int error = errno; // of the code that the signal interrupts
    const auto note = static_cast<char>(number);
    // If the pipe is full, a signal is already pending.
    if (::write(writeEnd, &note, 1) < 0) errno = error;
}

void setAction(int number, void (*handler)(int), int flags) {
    struct sigaction action{};

    action.sa_handler = handler;
    action.sa_flags = flags;
    ::sigaction(number, &action, nullptr);
}

struct sigaction actionOf(int number) {
    struct sigaction action{};

    ::sigaction(number, nullptr, &action);
    return action;
}

/// Makes an end of the pipe non-blocking and closes it in child processes.
bool prepare(int end) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    return ::fcntl(end, F_SETFD, FD_CLOEXEC) == 0 && ::fcntl(end, F_SETFL, O_NONBLOCK) == 0;
}

} // namespace

SignalPipe::SignalPipe(std::span<const int> numbers, int flags) {
    earlier_.reserve(numbers.size());
    if (::pipe(ends_.data()) != 0) ends_ = {-1, -1};
    if (isOpen() && !std::ranges::all_of(ends_, prepare)) close();
    if (!isOpen()) return;
    writeEnd = ends_[1];
    for (const int number : numbers) {
        const auto& [same, earlier] = earlier_.emplace_back(number, actionOf(number));
        if (earlier.sa_handler != SIG_IGN) setAction(number, writeSignalNumber, flags);
    }
}

SignalPipe::~SignalPipe() {
    for (const auto& [number, earlier] : earlier_) ::sigaction(number, &earlier, nullptr);
    writeEnd = -1;
    if (isOpen()) close();
}

void SignalPipe::close() {
    for (int& end : ends_) ::close(std::exchange(end, -1));
}

void SignalPipe::release(int number) { setAction(number, SIG_DFL, 0); }

void SignalPipe::writeOneMoreOfEach() const {
    for (const auto& [number, earlier] : earlier_) {
        const auto action = actionOf(number);
        if (action.sa_handler != writeSignalNumber) continue;
        setAction(number, writeSignalNumber, action.sa_flags | static_cast<int>(SA_RESETHAND));
    }
}

} // namespace kelvinbar
