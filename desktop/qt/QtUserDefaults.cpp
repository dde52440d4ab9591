#include "desktop/qt/QtUserDefaults.h"

#include <QSet>
#include <QStringList>
#include <QVariant>
#include <utility>

namespace kelvinbar {

namespace {

QString qtKey(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

/// The types that platforms may return for a stored number. Those without types return a text.
bool mayBeNumber(const QVariant& value) {
    static const QSet<int> types{QMetaType::QString,  QMetaType::Double,    QMetaType::Float, QMetaType::Int,
                                 QMetaType::LongLong, QMetaType::ULongLong, QMetaType::Bool};
    return types.contains(value.typeId());
}

} // namespace

QtUserDefaults::QtUserDefaults(const QString& organization, const QString& program, Log& log)
    : settings_(QSettings::NativeFormat, QSettings::UserScope, organization, program), log_(log) {
    settings_.setFallbacksEnabled(false);
}

std::optional<std::string> QtUserDefaults::text(std::string_view key) const {
    const QVariant value = settings_.value(qtKey(key));
    if (value.typeId() != QMetaType::QString) {
        logIgnored(key, value, "text");
        return std::nullopt;
    }
    return value.toString().toStdString();
}

std::optional<TextList> QtUserDefaults::textList(std::string_view key) const {
    // QSettings stores a list of one text as that text.
    const QVariant value = settings_.value(qtKey(key));
    if (value.typeId() != QMetaType::QString && value.typeId() != QMetaType::QStringList) {
        logIgnored(key, value, "list of texts");
        return std::nullopt;
    }
    TextList texts;
    const QStringList list = value.toStringList();
    for (const QString& text : list) texts.push_back(text.toStdString());
    return texts;
}

double QtUserDefaults::number(std::string_view key) const {
    const QVariant value = settings_.value(qtKey(key));
    bool isNumber = mayBeNumber(value);
    const double number = isNumber ? value.toDouble(&isNumber) : 0;
    if (!isNumber) logIgnored(key, value, "number");
    return isNumber ? number : 0;
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
    log_.write(LogCategory::preferences, LogLevel::debug,
               [key] { return std::string(key).append(" is removed"); });
    change([&] { settings_.remove(qtKey(key)); });
}

void QtUserDefaults::write(std::string_view key, const QVariant& value) {
    log_.write(LogCategory::preferences, LogLevel::debug,
               [key] { return std::string(key).append(" is written"); });
    change([&] { settings_.setValue(qtKey(key), value); });
}

void QtUserDefaults::change(const std::function<void()>& make) {
    make();
    settings_.sync();
    if (settings_.status() == QSettings::AccessError) warnOnce("cannot be written");
}

void QtUserDefaults::warnOnce(const char* what) {
    if (std::exchange(hasWarned_, true)) return;
    log_.write(LogCategory::preferences, LogLevel::warning,
               [&] { return "the preferences in " + settings_.fileName().toStdString() + " " + what; });
}

void QtUserDefaults::logIgnored(std::string_view key, const QVariant& value, const char* expected) const {
    if (!value.isValid()) return; // absent
    log_.write(LogCategory::preferences, LogLevel::info,
               [&] { return std::string(key) + " is ignored: its value is not a " + expected; });
}

} // namespace kelvinbar
