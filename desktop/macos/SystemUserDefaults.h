#pragma once

#include "desktop/qt/VariantUserDefaults.h"

#include <QSettings>
#include <QString>

namespace kelvinbar {

/// Preferences in the system's own store, through QSettings. The system keeps the values in memory and writes
/// its files by itself, so a change waits for no disk. Main thread.
class SystemUserDefaults final : public VariantUserDefaults {
  public:
    /// Logs the first failure to write as a warning. The log must outlive the object.
    SystemUserDefaults(const QString& organization, const QString& program, Log& log);

    /// The path of the file that the system writes.
    [[nodiscard]] QString path() const { return settings_.fileName(); }

  protected:
    [[nodiscard]] QVariant storedValue(const QString& key) const override;
    void storeValue(const QString& key, const QVariant& value) override;

  private:
    QSettings settings_;
};

} // namespace kelvinbar
