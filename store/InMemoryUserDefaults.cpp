#include "store/InMemoryUserDefaults.h"

namespace kelvinbar {

namespace {

template <typename T, typename Values>
std::optional<T> valueOfType(const Values& values, std::string_view key) {
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    const T* const value = std::get_if<T>(&found->second);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

} // namespace

std::optional<std::string> InMemoryUserDefaults::text(std::string_view key) const {
    return valueOfType<std::string>(values_, key);
}

std::optional<TextList> InMemoryUserDefaults::textList(std::string_view key) const {
    return valueOfType<TextList>(values_, key);
}

double InMemoryUserDefaults::number(std::string_view key) const {
    return valueOfType<double>(values_, key).value_or(0);
}

void InMemoryUserDefaults::setText(std::string_view key, const std::string& value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemoryUserDefaults::setTextList(std::string_view key, const TextList& value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemoryUserDefaults::setNumber(std::string_view key, double value) {
    values_.insert_or_assign(std::string(key), value);
}

void InMemoryUserDefaults::remove(std::string_view key) {
    const auto found = values_.find(key);
    if (found != values_.end()) values_.erase(found);
}

} // namespace kelvinbar
