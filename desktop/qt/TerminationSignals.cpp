#include "desktop/qt/TerminationSignals.h"

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <span>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// Signal handlers may only call async-signal-safe functions, so they write to a pipe that the event loop
/// reads.
std::array<int, 2> pipeEnds{-1, -1};

extern "C" void noteSignal(int number) {
    const int error = errno; // of the code that the signal interrupts
    const auto note = static_cast<char>(number);
    // If the pipe is full, a signal is already pending.
    if (::write(pipeEnds[1], &note, 1) < 0) errno = error;
}

/// Makes an end of the pipe non-blocking and closes it in child processes.
bool prepare(int end) {
    return ::fcntl(end, F_SETFD, FD_CLOEXEC) == 0 && ::fcntl(end, F_SETFL, O_NONBLOCK) == 0;
}

void setAction(int number, void (*handler)(int), bool isOnce = false) {
    struct sigaction action{};

    action.sa_handler = handler;
    action.sa_flags = isOnce ? SA_RESTART | static_cast<int>(SA_RESETHAND) : SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

void (*handlerOf(int number))(int) {
    struct sigaction action{};

    ::sigaction(number, nullptr, &action);
    return action.sa_handler;
}

/// After the event loop nobody reads the pipe: the next signal of each number still belongs to the request
/// that ended the loop, the one after that ends the program.
void allowOneMoreOfEach(std::span<const int> numbers) {
    for (const int number : numbers) {
        if (handlerOf(number) == noteSignal) setAction(number, noteSignal, true);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) : onSignal_(std::move(onSignal)) {
    if (::pipe(pipeEnds.data()) != 0 || !std::ranges::all_of(pipeEnds, prepare)) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { takeNotes(); });
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, notifier_.get(),
                     [] { allowOneMoreOfEach(numbers_); });
    for (std::size_t index = 0; index < numbers_.size(); ++index) {
        ::sigaction(numbers_[index], nullptr, &earlier_[index]);
        if (earlier_[index].sa_handler != SIG_IGN) setAction(numbers_[index], noteSignal);
    }
}

TerminationSignals::~TerminationSignals() {
    if (notifier_ == nullptr) return;
    for (std::size_t index = 0; index < numbers_.size(); ++index) {
        ::sigaction(numbers_[index], &earlier_[index], nullptr);
    }
    notifier_ = nullptr;
    for (int& end : pipeEnds) ::close(std::exchange(end, -1));
}

void TerminationSignals::takeNotes() {
    std::array<char, 64> notes{};
    const ssize_t count = ::read(pipeEnds[0], notes.data(), notes.size());
    if (count <= 0) return;
    for (std::size_t index = 0; index < static_cast<std::size_t>(count); ++index) {
        setAction(notes[index], SIG_DFL);
    }
    onSignal_();
}

void ignoreBrokenPipes() { setAction(SIGPIPE, SIG_IGN); }

} // namespace kelvinbar
