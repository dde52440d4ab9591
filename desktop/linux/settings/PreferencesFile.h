#pragma once

#include "desktop/linux/settings/PreferencesWriter.h"
#include "desktop/qt/VariantUserDefaults.h"

namespace kelvinbar {

/// Tries after 1, 2, 5, 10, 30 seconds and then every minute. Waits up to two seconds for the last changes.
WriterPatience standardWriterPatience();

/// The path of the preferences of `program`, which need not be there.
QString preferencesPath(const QString& program);

/// Preferences in a file in the user's configuration folder, in the format of QSettings. They are read once;
/// changes are visible at once and reach the file from a thread of their own (PreferencesWriter), as a rule
/// within milliseconds. The file is replaced as a whole, so a kill at any time leaves the old or the new one.
///
/// Processes that write different keys at the same time do not lose each other's changes. A damaged file is
/// copied to a backup before it is replaced; of its content, only texts under our keys are kept. Anything but
/// a regular file is neither read nor replaced, also behind a link (files/RegularFile.h).
///
/// Pitfalls: a change is not yet on the disk when the call returns. Changes that another process makes are
/// seen at the next start. Main thread.
class PreferencesFile final : public VariantUserDefaults {
  public:
    /// Reads the file of the program `name` and logs its path. The log must outlive the object.
    PreferencesFile(const QString& name, Log& log, WriterPatience patience = standardWriterPatience());

    [[nodiscard]] const QString& path() const { return path_; }

    /// See PreferencesWriter::flush.
    bool flush(std::chrono::milliseconds limit) { return writer_.flush(limit); }

  protected:
    [[nodiscard]] QVariant storedValue(const QString& key) const override { return values_.value(key); }

    void storeValue(const QString& key, const QVariant& value) override;

  private:
    const char* readFile();

    QString path_;
    QMap<QString, QVariant> values_;
    PreferencesWriter writer_;
};

} // namespace kelvinbar
