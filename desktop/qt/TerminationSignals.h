#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace kelvinbar {

/// SIGTERM, SIGINT and SIGHUP as events of the main thread. One object at a time.
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
