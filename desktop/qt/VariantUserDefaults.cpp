#include "desktop/qt/VariantUserDefaults.h"

#include <QSet>
#include <QStringList>

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

std::optional<std::string> VariantUserDefaults::text(std::string_view key) const {
    const QVariant stored = storedValue(qtKey(key));
    if (stored.typeId() != QMetaType::QString) {
        logIgnored(key, stored, "text");
        return std::nullopt;
    }
    return stored.toString().toStdString();
}

std::optional<TextList> VariantUserDefaults::textList(std::string_view key) const {
    // QSettings stores a list of one text as that text.
    const QVariant stored = storedValue(qtKey(key));
    if (stored.typeId() != QMetaType::QString && stored.typeId() != QMetaType::QStringList) {
        logIgnored(key, stored, "list of texts");
        return std::nullopt;
    }
    TextList texts;
    const QStringList list = stored.toStringList();
    for (const QString& text : list) texts.push_back(text.toStdString());
    return texts;
}

double VariantUserDefaults::number(std::string_view key) const {
    const QVariant stored = storedValue(qtKey(key));
    bool isNumber = mayBeNumber(stored);
    const double number = isNumber ? stored.toDouble(&isNumber) : 0;
    if (!isNumber) logIgnored(key, stored, "number");
    return isNumber ? number : 0;
}

void VariantUserDefaults::setText(std::string_view key, const std::string& value) {
    write(key, QString::fromStdString(value));
}

void VariantUserDefaults::setTextList(std::string_view key, const TextList& value) {
    QStringList list;
    for (const std::string& text : value) list.append(QString::fromStdString(text));
    write(key, list);
}

void VariantUserDefaults::setNumber(std::string_view key, double value) { write(key, value); }

void VariantUserDefaults::remove(std::string_view key) {
    log_.write(LogCategory::preferences, LogLevel::debug,
               [key] { return std::string(key).append(" is removed"); });
    storeValue(qtKey(key), {});
}

void VariantUserDefaults::write(std::string_view key, const QVariant& value) {
    log_.write(LogCategory::preferences, LogLevel::debug,
               [key] { return std::string(key).append(" is written"); });
    storeValue(qtKey(key), value);
}

void VariantUserDefaults::logIgnored(std::string_view key, const QVariant& value,
                                     const char* expected) const {
    if (!value.isValid()) return; // absent
    log_.write(LogCategory::preferences, LogLevel::info,
               [&] { return std::string(key) + " is ignored: its value is not a " + expected; });
}

} // namespace kelvinbar
