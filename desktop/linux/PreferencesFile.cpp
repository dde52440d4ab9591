#include "desktop/linux/PreferencesFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStringList>
#include <chrono>
#include <string>
#include <thread>

namespace kelvinbar {

namespace {

/// How long to wait for another process to finish writing, in milliseconds.
constexpr int lockTimeout = 1000;

} // namespace

PreferencesFile::PreferencesFile(const QString& name, Log& log) : QtUserDefaults("kelvinbar", name, log) {
    const QStringList keys = settings().allKeys(); // also makes QSettings read the file
    log.write(LogCategory::preferences, LogLevel::info, [&] {
        return settings().fileName().toStdString() + " holds " + std::to_string(keys.size()) + " values";
    });
    isDamaged_ = settings().status() == QSettings::FormatError;
    if (isDamaged_) warnOnce("are damaged");
    if (settings().status() == QSettings::AccessError) warnOnce("cannot be read");
}

void PreferencesFile::change(const std::function<void()>& make) {
    if (isDamaged_ && !keepDamagedFileAside()) return;
    QLockFile lock(settings().fileName() + ".turn");
    lock.tryLock(lockTimeout);
    waitForDistinctTimeStamp();
    QtUserDefaults::change(make);
}

/// QSettings detects changes of other processes by the file's size and modification time. Two changes within
/// the resolution of that time could look like one.
void PreferencesFile::waitForDistinctTimeStamp() {
    constexpr std::chrono::milliseconds resolution{10};
    const QDateTime changed = QFileInfo(settings().fileName()).lastModified();
    const std::chrono::milliseconds age(changed.msecsTo(QDateTime::currentDateTime()));
    if (changed.isValid() && age.count() >= 0 && age < resolution)
        std::this_thread::sleep_for(resolution - age);
}

bool PreferencesFile::keepDamagedFileAside() {
    const QString copy = settings().fileName() + ".damaged";
    QFile::remove(copy);
    isDamaged_ = !QFile::copy(settings().fileName(), copy);
    if (isDamaged_) {
        log().once(LogCategory::preferences, LogLevel::warning, [&] {
            return "nothing is saved: damaged preferences cannot be kept as " + copy.toStdString();
        });
    } else {
        log().write(LogCategory::preferences, LogLevel::info,
                    [&] { return "damaged preferences are kept as " + copy.toStdString(); });
    }
    return !isDamaged_;
}

} // namespace kelvinbar
