#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kelvinbar {

/// Uninterpreted bytes, as a registry property may hold them.
using Data = std::vector<std::uint8_t>;

/// A list of texts, as a preference may hold it.
using TextList = std::vector<std::string>;

/// One value of a Dictionary. The set is closed: truth, whole number, floating-point number, text, bytes,
/// list of texts. A truth value is not a number.
using Value = std::variant<bool, std::int64_t, double, std::string, Data, TextList>;

/// Any number, whole or floating, as a double; nothing for every other kind. May be infinite or NaN.
std::optional<double> numberIn(const Value& value);

/// A small map from text keys to values that keeps the order of insertion.
///
/// Made for a dozen or so entries: look-up walks the entries. Looking an entry up by type returns null for an
/// entry of another type, so callers treat "missing" and "mistyped" alike.
class Dictionary {
  public:
    using Entry = std::pair<std::string, Value>;

    Dictionary() = default;
    Dictionary(std::initializer_list<Entry> entries);

    /// Replaces the entry under `key`, or appends one.
    void set(std::string_view key, Value value);

    /// Appends an entry. The caller knows that `key` is not present yet.
    template <typename T>
    void append(std::string_view key, T&& value) {
        entries_.emplace_back(key, std::forward<T>(value));
    }

    void reserve(std::size_t count) { entries_.reserve(count); }

    /// The value under `key`, or null. Valid until the dictionary changes.
    [[nodiscard]] const Value* find(std::string_view key) const;

    /// The value under `key` if it is of type T, otherwise null. Valid until the dictionary changes.
    template <typename T>
    [[nodiscard]] const T* find(std::string_view key) const {
        const Value* value = find(key);
        return value == nullptr ? nullptr : std::get_if<T>(value);
    }

    [[nodiscard]] auto begin() const { return entries_.begin(); }

    [[nodiscard]] auto end() const { return entries_.end(); }

    friend bool operator==(const Dictionary&, const Dictionary&) = default;

  private:
    std::vector<Entry> entries_;
};

} // namespace kelvinbar
