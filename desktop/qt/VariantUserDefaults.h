#pragma once

#include "base/Log.h"
#include "store/UserDefaults.h"

#include <QString>
#include <QVariant>

namespace kelvinbar {

/// Preferences as Qt's values. Subclasses decide where they are stored.
///
/// Pitfall: some platforms keep types and others only texts, so a stored number may come back as a text. Main
/// thread.
class VariantUserDefaults : public UserDefaults {
  public:
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override;
    [[nodiscard]] double number(std::string_view key) const override;

    void setText(std::string_view key, const std::string& value) override;
    void setTextList(std::string_view key, const TextList& value) override;
    void setNumber(std::string_view key, double value) override;
    void remove(std::string_view key) override;

  protected:
    /// Logs every change, and values of an unexpected type as info. The log must outlive the object.
    explicit VariantUserDefaults(Log& log) : log_(log) {}

    /// Invalid if absent.
    [[nodiscard]] virtual QVariant storedValue(const QString& key) const = 0;
    /// An invalid `value` removes the key.
    virtual void storeValue(const QString& key, const QVariant& value) = 0;

    [[nodiscard]] Log& log() const { return log_; }

  private:
    void write(std::string_view key, const QVariant& value);
    void logIgnored(std::string_view key, const QVariant& value, const char* expected) const;

    Log& log_;
};

} // namespace kelvinbar
