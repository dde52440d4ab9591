#pragma once

#include "desktop/qt/QtMainQueue.h"

#include <QMap>
#include <QString>
#include <QVariant>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// Writes preferences away from the main thread, which never waits for a disk, a network share or another
/// program.
///
/// A change starts a thread at the end of this turn of the event loop, so that the changes of one action are
/// written together. So are those that come while it writes, next. What could not be written is kept and
/// tried again, at growing intervals. The thread ends when all is written: an idle program has neither the
/// thread nor a timer.
namespace kelvinbar {

class Log;

/// Values by key; an invalid one removes its key.
using PreferenceChanges = QMap<QString, QVariant>;

/// The result of an attempt to write. The remark is for the log: why it failed, or what else was done, if
/// anything.
struct WriteReport {
    bool isWritten = false;
    std::string remark;
};

/// How long a PreferencesWriter waits.
struct WriterPatience {
    /// After the first failure, the second, and so on; the last one repeats. Not empty.
    std::vector<std::chrono::milliseconds> retries;
    std::chrono::milliseconds atEnd; ///< for what is not yet written when the writer is destroyed
};

/// Main thread.
class PreferencesWriter {
  public:
    /// Writes all changes or none. Called on the writer's thread, not by two threads at once. A call that
    /// does not return in time outlives the writer, so it must own what it uses.
    using Write = std::function<WriteReport(const PreferenceChanges&)>;

    /// The log must outlive the writer.
    PreferencesWriter(Write write, WriterPatience patience, Log& log);
    PreferencesWriter(const PreferencesWriter&) = delete;
    PreferencesWriter& operator=(const PreferencesWriter&) = delete;

    /// Flushes. Logs a warning if changes are lost.
    ~PreferencesWriter();

    /// Schedules a change, for the event loop or `flush` to start. A later one of the same key replaces it.
    /// Returns at once.
    void add(const QString& key, const QVariant& value);

    /// Waits until all changes are written, or the next attempt has failed, at most `limit`. Returns whether
    /// all are written. What is not is tried again with the next change.
    bool flush(std::chrono::milliseconds limit);

  private:
    struct Shared;

    void startThreadSoon();
    void startThread();

    std::shared_ptr<Shared> shared_; ///< also held by the thread
    std::chrono::milliseconds patienceAtEnd_;
    std::thread thread_;
    bool isStartPosted_ = false;
    QtMainQueue queue_;
};

} // namespace kelvinbar
