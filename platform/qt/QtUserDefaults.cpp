#include "platform/qt/QtUserDefaults.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStringList>
#include <QVariant>
#include <chrono>
#include <thread>
#include <utility>

namespace kelvinbar {

namespace {

QString qtKey(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

/// How long to wait for another process that writes, in milliseconds.
constexpr int longestTurn = 1000;

} // namespace

QtUserDefaults::QtUserDefaults(const QString& name, Report report)
    : settings_(QSettings::NativeFormat, QSettings::UserScope, "kelvinbar", name)
    , report_(std::move(report)) {
    checkFile();
}

void QtUserDefaults::checkFile() {
    settings_.setFallbacksEnabled(false);
    settings_.allKeys(); // a section is read when it is first asked for
    isDamaged_ = settings_.status() == QSettings::FormatError;
    if (isDamaged_) reportOnce("are damaged");
    if (settings_.status() == QSettings::AccessError) reportOnce("cannot be read");
}

std::optional<std::string> QtUserDefaults::text(std::string_view key) const {
    const QVariant value = settings_.value(qtKey(key));
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString().toStdString();
}

std::optional<TextList> QtUserDefaults::textList(std::string_view key) const {
    // A list of one text is stored as that text.
    const QVariant value = settings_.value(qtKey(key));
    if (value.typeId() != QMetaType::QString && value.typeId() != QMetaType::QStringList) return std::nullopt;
    TextList texts;
    const QStringList list = value.toStringList();
    for (const QString& text : list) texts.push_back(text.toStdString());
    return texts;
}

double QtUserDefaults::number(std::string_view key) const {
    const QVariant value = settings_.value(qtKey(key));
    const bool mayBeNumber = value.typeId() == QMetaType::QString || value.typeId() == QMetaType::Double;
    return mayBeNumber ? value.toDouble() : 0;
}

void QtUserDefaults::setText(std::string_view key, const std::string& value) {
    write(key, QString::fromStdString(value));
}

void QtUserDefaults::setTextList(std::string_view key, const TextList& value) {
    QStringList list;
    for (const std::string& text : value) list.append(QString::fromStdString(text));
    write(key, list);
}

void QtUserDefaults::setNumber(std::string_view key, double value) { write(key, value); }

void QtUserDefaults::remove(std::string_view key) {
    change([&] { settings_.remove(qtKey(key)); });
}

void QtUserDefaults::write(std::string_view key, const QVariant& value) {
    change([&] { settings_.setValue(qtKey(key), value); });
}

template <typename Change>
void QtUserDefaults::change(Change change) {
    if (isDamaged_ && !keepDamagedFileAside()) return reportOnce("are damaged and cannot be kept aside");
    QLockFile turn(settings_.fileName() + ".turn");
    turn.tryLock(longestTurn);
    waitForAnotherTimeStamp();
    change();
    settings_.sync();
    if (settings_.status() == QSettings::AccessError) reportOnce("cannot be written");
}

/// What another process has written is seen by the file's size and time. Two changes within the grain of that
/// time might look like one.
void QtUserDefaults::waitForAnotherTimeStamp() const {
    constexpr std::chrono::milliseconds grain{10};
    const QDateTime changed = QFileInfo(settings_.fileName()).lastModified();
    const std::chrono::milliseconds age(changed.msecsTo(QDateTime::currentDateTime()));
    if (changed.isValid() && age.count() >= 0 && age < grain) std::this_thread::sleep_for(grain - age);
}

bool QtUserDefaults::keepDamagedFileAside() {
    const QString copy = settings_.fileName() + ".damaged";
    QFile::remove(copy);
    isDamaged_ = !QFile::copy(settings_.fileName(), copy);
    return !isDamaged_;
}

void QtUserDefaults::reportOnce(const std::string& what) {
    if (std::exchange(hasReported_, true)) return;
    report_("the preferences in " + settings_.fileName().toStdString() + " " + what);
}

} // namespace kelvinbar
