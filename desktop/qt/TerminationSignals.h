#pragma once

#include "process/SignalPipe.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Calls `onSignal` in the event loop for SIGTERM, SIGINT and SIGHUP. A signal that the starter of the
/// program ignores, as nohup does, stays ignored. The destructor restores what was there before. Only one
/// object at a time. Main thread.
///
/// Once the event loop has noticed a signal, the next one of the same number ends the program at once, so
/// that a slow shutdown can be cut short. Until then it is the same request: wrappers pass signals on that
/// the terminal sends as well, and session managers send SIGHUP right after SIGTERM.
class TerminationSignals {
  public:
    explicit TerminationSignals(std::function<void()> onSignal);

  private:
    void takeNotes();

    static constexpr std::array numbers{SIGTERM, SIGINT, SIGHUP};

    std::function<void()> onSignal_;
    SignalPipe pipe_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< before the pipe is closed
};

} // namespace kelvinbar
