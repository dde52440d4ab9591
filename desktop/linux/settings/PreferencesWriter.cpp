#include "desktop/linux/settings/PreferencesWriter.h"

#include "base/Log.h"
#include "base/OutOfMemory.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <utility>

namespace kelvinbar {

/// What the writer and its thread have in common. The mutex guards everything but `write`.
struct PreferencesWriter::Shared {
    Shared(Write ownWrite, std::vector<std::chrono::milliseconds> delays, Log& ownLog)
        : write(std::move(ownWrite)), retryDelays(std::move(delays)), log(&ownLog) {}

    void writeAll();
    [[nodiscard]] WriteReport attempt(const PreferenceChanges& changes) const;
    void tell(const WriteReport& report);
    void keepForRetry(PreferenceChanges changes);
    [[nodiscard]] std::chrono::milliseconds nextRetryDelay();

    const Write write;
    const std::vector<std::chrono::milliseconds> retryDelays;
    std::mutex mutex;
    std::condition_variable changed; ///< of `isRunning` and `isHurried`
    PreferenceChanges pending;
    bool isRunning = false;   ///< the thread runs and looks at `pending` again before it ends
    bool isHurried = false;   ///< somebody waits: no pause before the next attempt, and no attempt after it
    std::size_t failures = 0; ///< in a row
    std::string failure;      ///< what the last attempt failed of; empty if it did not
    Log* log;                 ///< null when the writer is gone
};

/// Runs on the writer's thread.
void PreferencesWriter::Shared::writeAll() {
    std::unique_lock lock(mutex);
    while (!pending.isEmpty()) {
        PreferenceChanges changes = std::exchange(pending, {});
        lock.unlock();
        const WriteReport report = attempt(changes);
        lock.lock();
        tell(report);
        if (report.isWritten) continue;
        keepForRetry(std::move(changes));
        if (isHurried) break;
        changed.wait_for(lock, nextRetryDelay(), [this] { return isHurried; });
    }
    isRunning = false;
    changed.notify_all();
}

/// Writes the changes. The mutex is not held.
WriteReport PreferencesWriter::Shared::attempt(const PreferenceChanges& changes) const {
    WriteReport report{.isWritten = false, .remark = "out of memory"}; // short enough to need none
    static_cast<void>(hasMemoryFor([&] { report = write(changes); }));
    return report;
}

/// Logs the first of several equal failures, and that they are over.
void PreferencesWriter::Shared::tell(const WriteReport& report) {
    if (report.isWritten) failures = 0;
    const std::string earlier = std::exchange(failure, report.isWritten ? std::string() : report.remark);
    if (log == nullptr || earlier == report.remark) return;
    if (report.isWritten && !earlier.empty()) {
        log->write(LogCategory::preferences, LogLevel::info, "the preferences are saved again");
    }
    if (report.remark.empty()) return;
    log->write(LogCategory::preferences, report.isWritten ? LogLevel::info : LogLevel::warning,
               [&] { return report.remark; });
}

void PreferencesWriter::Shared::keepForRetry(PreferenceChanges changes) {
    changes.insert(pending); // what was changed meanwhile is newer
    pending = std::move(changes);
}

std::chrono::milliseconds PreferencesWriter::Shared::nextRetryDelay() {
    return retryDelays[std::min(failures++, retryDelays.size() - 1)];
}

PreferencesWriter::PreferencesWriter(Write write, WriterPatience patience, Log& log)
    : shared_(std::make_shared<Shared>(std::move(write), std::move(patience.retries), log))
    , patienceAtEnd_(patience.atEnd) {}

PreferencesWriter::~PreferencesWriter() {
    flush(patienceAtEnd_);
    const std::lock_guard lock(shared_->mutex);
    if (shared_->isRunning || !shared_->pending.isEmpty()) {
        shared_->log->write(LogCategory::preferences, LogLevel::warning,
                            "the last changes of the preferences are lost");
    }
    shared_->log = nullptr;
    shared_->isHurried = true; // no retries
    if (!thread_.joinable()) return;
    // A thread that still runs is stuck in the system, which may take it for ever to answer.
    shared_->isRunning ? thread_.detach() : thread_.join();
}

void PreferencesWriter::add(const QString& key, const QVariant& value) {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->pending.insert(key, value);
    }
    startThreadSoon();
}

/// One action may change several preferences.
void PreferencesWriter::startThreadSoon() {
    if (std::exchange(isStartPosted_, true)) return;
    queue_.post([this] {
        isStartPosted_ = false;
        startThread();
    });
}

bool PreferencesWriter::flush(std::chrono::milliseconds limit) {
    startThread();
    std::unique_lock lock(shared_->mutex);
    shared_->isHurried = true;
    shared_->changed.notify_all();
    shared_->changed.wait_for(lock, limit, [this] { return !shared_->isRunning; });
    shared_->isHurried = false;
    return !shared_->isRunning && shared_->pending.isEmpty();
}

/// Does nothing if the thread runs or has nothing to do.
void PreferencesWriter::startThread() {
    {
        const std::lock_guard lock(shared_->mutex);
        if (shared_->pending.isEmpty() || std::exchange(shared_->isRunning, true)) return;
    }
    if (thread_.joinable()) thread_.join(); // it has ended
    try {
        thread_ = std::thread([shared = shared_] { shared->writeAll(); });
    } catch (const std::exception&) {
        // The system has no thread or no memory for one. The next change tries again, and so does the end.
        const std::lock_guard lock(shared_->mutex);
        shared_->isRunning = false;
    }
}

} // namespace kelvinbar
