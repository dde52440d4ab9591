#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Calls `onSignal` in the event loop for SIGTERM, SIGINT and SIGHUP. The destructor restores their default
/// handling. Only one object at a time. Main thread.
class TerminationSignals {
  public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace kelvinbar
