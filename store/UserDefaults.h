#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Port: the user's preferences for this program. A value of another type than requested counts as absent.
/// Setters do not report failures: the program continues with unsaved preferences. Main thread.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
    /// No value if an element of the list is not a text.
    [[nodiscard]] virtual std::optional<TextList> textList(std::string_view key) const = 0;
    /// 0 if absent.
    [[nodiscard]] virtual double number(std::string_view key) const = 0;

    virtual void setText(std::string_view key, const std::string& value) = 0;
    virtual void setTextList(std::string_view key, const TextList& value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace kelvinbar
