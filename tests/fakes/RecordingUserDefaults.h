#pragma once

#include "store/InMemoryUserDefaults.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fakes {

/// Preferences in memory. Records the keys that are written, and with a "-" those that are removed, in order.
class RecordingUserDefaults final : public UserDefaults {
  public:
    InMemoryUserDefaults values;
    std::vector<std::string> writes;

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override {
        return values.text(key);
    }

    [[nodiscard]] std::optional<TextList> textList(std::string_view key) const override {
        return values.textList(key);
    }

    [[nodiscard]] double number(std::string_view key) const override { return values.number(key); }

    void setText(std::string_view key, const std::string& value) override {
        writes.emplace_back(key);
        values.setText(key, value);
    }

    void setTextList(std::string_view key, const TextList& value) override {
        writes.emplace_back(key);
        values.setTextList(key, value);
    }

    void setNumber(std::string_view key, double value) override {
        writes.emplace_back(key);
        values.setNumber(key, value);
    }

    void remove(std::string_view key) override {
        writes.push_back(std::string("-").append(key));
        values.remove(key);
    }
};

} // namespace kelvinbar::fakes
