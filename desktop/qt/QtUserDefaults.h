#pragma once

#include "store/UserDefaults.h"

#include <QSettings>
#include <QString>
#include <functional>

namespace kelvinbar {

/// Preferences where the platform keeps those of its programs. Every change has been handed over when the
/// call returns, so that nothing is lost however the program ends.
class QtUserDefaults : public UserDefaults {
  public:
    using Report = std::function<void(const std::string&)>;

    /// The preferences of this user for a program of an organization. `report` hears once of preferences that
    /// cannot be read or written.
    QtUserDefaults(const QString& organization, const QString& program, Report report);

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
    void reportOnce(const std::string& what);

    [[nodiscard]] QSettings& settings() { return settings_; }

  private:
    void write(std::string_view key, const QVariant& value);

    QSettings settings_;
    Report report_;
    bool hasReported_ = false;
};

} // namespace kelvinbar
