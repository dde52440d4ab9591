#include "desktop/linux/PreferencesFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <chrono>
#include <thread>
#include <utility>

namespace kelvinbar {

namespace {

/// How long to wait for another process that writes, in milliseconds.
constexpr int longestTurn = 1000;

} // namespace

PreferencesFile::PreferencesFile(const QString& name, Report report)
    : QtUserDefaults("kelvinbar", name, std::move(report)) {
    settings().allKeys(); // a section is read when it is first asked for
    isDamaged_ = settings().status() == QSettings::FormatError;
    if (isDamaged_) reportOnce("are damaged");
    if (settings().status() == QSettings::AccessError) reportOnce("cannot be read");
}

void PreferencesFile::change(const std::function<void()>& make) {
    if (isDamaged_ && !keepDamagedFileAside()) return reportOnce("are damaged and cannot be kept aside");
    QLockFile turn(settings().fileName() + ".turn");
    turn.tryLock(longestTurn);
    waitForAnotherTimeStamp();
    QtUserDefaults::change(make);
}

/// What another process has written is seen by the file's size and time. Two changes within the grain of that
/// time might look like one.
void PreferencesFile::waitForAnotherTimeStamp() {
    constexpr std::chrono::milliseconds grain{10};
    const QDateTime changed = QFileInfo(settings().fileName()).lastModified();
    const std::chrono::milliseconds age(changed.msecsTo(QDateTime::currentDateTime()));
    if (changed.isValid() && age.count() >= 0 && age < grain) std::this_thread::sleep_for(grain - age);
}

bool PreferencesFile::keepDamagedFileAside() {
    const QString copy = settings().fileName() + ".damaged";
    QFile::remove(copy);
    isDamaged_ = !QFile::copy(settings().fileName(), copy);
    return !isDamaged_;
}

} // namespace kelvinbar
