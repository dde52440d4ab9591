#include "desktop/macos/SystemUserDefaults.h"

namespace kelvinbar {

SystemUserDefaults::SystemUserDefaults(const QString& organization, const QString& program, Log& log)
    : VariantUserDefaults(log)
    , settings_(QSettings::NativeFormat, QSettings::UserScope, organization, program) {
    settings_.setFallbacksEnabled(false);
}

QVariant SystemUserDefaults::storedValue(const QString& key) const { return settings_.value(key); }

void SystemUserDefaults::storeValue(const QString& key, const QVariant& value) {
    if (value.isValid()) {
        settings_.setValue(key, value);
    } else {
        settings_.remove(key);
    }
    settings_.sync();
    if (settings_.status() != QSettings::AccessError) return;
    log().once(LogCategory::preferences, LogLevel::warning, [this] {
        return "the preferences in " + settings_.fileName().toStdString() + " cannot be written";
    });
}

} // namespace kelvinbar
