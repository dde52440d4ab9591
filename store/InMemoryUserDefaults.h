#pragma once

#include "store/UserDefaults.h"

#include <functional>
#include <map>

namespace kelvinbar {

/// Preferences that are empty at first and are never saved. For programs and tests that must not change those
/// of the user. A value of another type than requested counts as absent, as in stored preferences. Main
/// thread.
class InMemoryUserDefaults final : public UserDefaults {
  public:
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override;
    [[nodiscard]] double number(std::string_view key) const override;

    void setText(std::string_view key, const std::string& value) override;
    void setTextList(std::string_view key, const TextList& value) override;
    void setNumber(std::string_view key, double value) override;
    void remove(std::string_view key) override;

  private:
    std::map<std::string, Value, std::less<>> values_;
};

} // namespace kelvinbar
