#pragma once

#include "store/UserDefaults.h"

#include <QSettings>
#include <QString>
#include <functional>

namespace kelvinbar {

/// Preferences in a file of the platform's own format. Every change is on disk when the call returns, so that
/// nothing is lost however the program ends; another process that writes other keys at the same time loses
/// none of them either.
class QtUserDefaults final : public UserDefaults {
  public:
    using Report = std::function<void(const std::string&)>;

    /// The preferences of this user for the program `name`. `report` hears once of a file that cannot be read
    /// or written.
    QtUserDefaults(const QString& name, Report report);

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override;
    [[nodiscard]] double number(std::string_view key) const override;

    void setText(std::string_view key, const std::string& value) override;
    void setTextList(std::string_view key, const TextList& value) override;
    void setNumber(std::string_view key, double value) override;
    void remove(std::string_view key) override;

  private:
    void checkFile();
    void write(std::string_view key, const QVariant& value);
    template <typename Change>
    void change(Change change);
    void waitForAnotherTimeStamp() const;
    bool keepDamagedFileAside();
    void reportOnce(const std::string& what);

    QSettings settings_;
    Report report_;
    bool isDamaged_ = false;
    bool hasReported_ = false;
};

} // namespace kelvinbar
