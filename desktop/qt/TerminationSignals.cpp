#include "desktop/qt/TerminationSignals.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

constexpr std::array terminating{SIGTERM, SIGINT, SIGHUP};

/// Signal handlers may only call async-signal-safe functions, so they write to a pipe that the event loop
/// reads.
std::array<int, 2> pipeEnds{-1, -1};

extern "C" void noteSignal(int /*number*/) {
    const char note = 1;
    // If the pipe is full, a signal is already pending.
    if (::write(pipeEnds[1], &note, 1) < 0) return;
}

/// Makes an end of the pipe non-blocking and closes it in child processes.
bool prepare(int end) {
    return ::fcntl(end, F_SETFD, FD_CLOEXEC) == 0 && ::fcntl(end, F_SETFL, O_NONBLOCK) == 0;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    if (::pipe(pipeEnds.data()) != 0 || !std::ranges::all_of(pipeEnds, prepare)) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [handler = std::move(onSignal)] {
        std::array<char, 16> notes{};
        if (::read(pipeEnds[0], notes.data(), notes.size()) > 0) handler();
    });

    struct sigaction action {};

    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : terminating) ::sigaction(signal, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
    if (notifier_ == nullptr) return;
    for (const int signal : terminating) static_cast<void>(std::signal(signal, SIG_DFL));
    notifier_ = nullptr;
    for (int& end : pipeEnds) ::close(std::exchange(end, -1));
}

} // namespace kelvinbar
