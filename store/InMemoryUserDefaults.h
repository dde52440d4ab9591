#pragma once

#include "store/UserDefaults.h"

#include <functional>
#include <map>

namespace kelvinbar {

/// Preferences that begin empty and end with the process: for programs that must not touch the user's.
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
