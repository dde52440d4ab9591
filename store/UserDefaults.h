#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Port: the preferences of this user for this program. A value of another type than asked for counts as
/// absent. Main thread.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
    /// Nothing as well for a list in which not every element is a text.
    [[nodiscard]] virtual std::optional<TextList> textList(std::string_view key) const = 0;
    /// 0 when absent.
    [[nodiscard]] virtual double number(std::string_view key) const = 0;

    virtual void setText(std::string_view key, const std::string& value) = 0;
    virtual void setTextList(std::string_view key, const TextList& value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace kelvinbar
