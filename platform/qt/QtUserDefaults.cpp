#include "platform/qt/QtUserDefaults.h"

#include <QFile>
#include <QStringList>
#include <QVariant>
#include <utility>

namespace kelvinbar {

namespace {

QString qtKey(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace

QtUserDefaults::QtUserDefaults(const QString& name, Report report)
    : settings_(QSettings::NativeFormat, QSettings::UserScope, "kelvinbar", name)
    , report_(std::move(report)) {
    checkFile();
}

void QtUserDefaults::checkFile() {
    settings_.setFallbacksEnabled(false);
    settings_.sync();
    isDamaged_ = settings_.status() == QSettings::FormatError;
    if (isDamaged_) reportOnce("the preferences in " + settings_.fileName().toStdString() + " are damaged");
    if (settings_.status() == QSettings::AccessError) {
        reportOnce("the preferences in " + settings_.fileName().toStdString() + " cannot be read");
    }
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
    if (isDamaged_) keepDamagedFileAside();
    settings_.remove(qtKey(key));
    settings_.sync();
}

void QtUserDefaults::write(std::string_view key, const QVariant& value) {
    if (isDamaged_) keepDamagedFileAside();
    settings_.setValue(qtKey(key), value);
    settings_.sync();
    if (settings_.status() == QSettings::AccessError) {
        reportOnce("the preferences in " + settings_.fileName().toStdString() + " cannot be written");
    }
}

void QtUserDefaults::keepDamagedFileAside() {
    const QString copy = settings_.fileName() + ".damaged";
    QFile::remove(copy);
    QFile::copy(settings_.fileName(), copy);
    isDamaged_ = false;
}

void QtUserDefaults::reportOnce(const std::string& message) {
    if (!std::exchange(hasReported_, true)) report_(message);
}

} // namespace kelvinbar
