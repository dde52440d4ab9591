#include "desktop/qt/TerminationSignals.h"

#include <QCoreApplication>
#include <cstddef>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : onSignal_(std::move(onSignal)), pipe_(numbers, SA_RESTART) {
    if (!pipe_.isOpen()) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipe_.readEnd(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { takeNotes(); });
    // After the event loop nobody reads the pipe: the next signal of each number still belongs to the request
    // that ended the loop, the one after that ends the program.
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, notifier_.get(),
                     [this] { pipe_.writeOneMoreOfEach(); });
}

void TerminationSignals::takeNotes() {
    std::array<char, 64> notes{};
    const ssize_t count = ::read(pipe_.readEnd(), notes.data(), notes.size());
    if (count <= 0) return;
    for (std::size_t index = 0; index < static_cast<std::size_t>(count); ++index) {
        SignalPipe::release(notes[index]);
    }
    onSignal_();
}

} // namespace kelvinbar
