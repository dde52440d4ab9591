#pragma once

#include "base/Log.h"
#include "store/UserDefaults.h"

#include <QSettings>
#include <QString>
#include <functional>

namespace kelvinbar {

/// Preferences where the platform keeps those of its programs. Every change has been handed over when the
/// call returns, so that nothing is lost however the program ends.
class QtUserDefaults : public UserDefaults {
  public:
    /// The preferences of this user for a program of an organization. Logs once, as a warning, that they
    /// cannot be read or written; values of another type than the one asked for are logged as info.
    QtUserDefaults(const QString& organization, const QString& program, Log& log);

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override;
    [[nodiscard]] double number(std::string_view key) const override;

    void setText(std::string_view key, const std::string& value) override;
    void setTextList(std::string_view key, const TextList& value) override;
    void setNumber(std::string_view key, double value) override;
    void remove(std::string_view key) override;

  protected:
    /// Makes a change and hands it over.
    virtual void change(const std::function<void()>& make);
    /// Logs a warning about the preferences, unless there was one before.
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
