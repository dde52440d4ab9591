#pragma once

#include "base/Log.h"
#include "store/UserDefaults.h"

#include <QSettings>
#include <QString>
#include <functional>

namespace kelvinbar {

/// Preferences in the platform's standard location, through QSettings. Every change is written before the
/// call returns, so that nothing is lost if the program is killed.
///
/// Pitfall: some platforms keep types and others only texts, so a stored number may come back as a text. Main
/// thread.
class QtUserDefaults : public UserDefaults {
  public:
    /// Logs the first failure to read or write as a warning, and values of an unexpected type as info. The
    /// log must outlive the object.
    QtUserDefaults(const QString& organization, const QString& program, Log& log);

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override;
    [[nodiscard]] double number(std::string_view key) const override;

    void setText(std::string_view key, const std::string& value) override;
    void setTextList(std::string_view key, const TextList& value) override;
    void setNumber(std::string_view key, double value) override;
    void remove(std::string_view key) override;

  protected:
    /// Calls `make`, which changes the settings, and writes them.
    virtual void change(const std::function<void()>& make);
    /// Logs a warning about the preferences unless one was logged before.
    void warnOnce(const char* what);

    [[nodiscard]] Log& log() const { return log_; }

    [[nodiscard]] QSettings& settings() { return settings_; }

  private:
    void write(std::string_view key, const QVariant& value);
    void logIgnored(std::string_view key, const QVariant& value, const char* expected) const;

    QSettings settings_;
    Log& log_;
    bool hasWarned_ = false;
};

} // namespace kelvinbar
