#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// Values whose type is known only at run time: properties of a device registry and stored preferences. Code
/// converts them to proper types at the border and does not pass dictionaries around.
///
/// Limits: dictionaries do not nest, and look-up is linear. Pitfall: numbers keep the type in which they were
/// stored, so `find<double>` does not find a whole number; use numberIn() for numbers of either type.
///
/// Plain values: any thread, as long as no other thread changes the same object.
namespace kelvinbar {

/// Bytes without a known meaning, as in registry properties.
///
/// A type of its own for the sake of Value: libstdc++ takes a variant of nothing but strings, vectors and
/// numbers to be never without a value, and destroys one that ran out of memory while it was copied.
/// (Releases before 13.3.)
struct Data : std::vector<std::uint8_t> {
    using std::vector<std::uint8_t>::vector;
};

/// A list of texts, as in preferences.
using TextList = std::vector<std::string>;

/// A value of a Dictionary: boolean, whole number, floating-point number, UTF-8 text, bytes or list of texts.
/// A boolean is not a number.
using Value = std::variant<bool, std::int64_t, double, std::string, Data, TextList>;

/// A whole or floating-point number as a double, which may be infinite or NaN. No value for any other type,
/// booleans and texts included. Whole numbers beyond 2^53 are rounded.
std::optional<double> numberIn(const Value& value);

/// A small map from text keys to values that keeps the order of insertion, for about a dozen entries. Two
/// dictionaries are equal if they have equal entries in the same order.
///
/// Pointers returned by find() are valid until the dictionary changes.
class Dictionary {
  public:
    using Entry = std::pair<std::string, Value>;

    Dictionary() = default;
    /// Of entries with the same key, the last value counts.
    Dictionary(std::initializer_list<Entry> entries);

    /// Replaces the value of `key`, or appends an entry.
    void set(std::string_view key, Value value);

    /// Appends an entry without searching. The caller must know that `key` is not present yet.
    template <typename T>
    void append(std::string_view key, T&& value) {
        entries_.emplace_back(key, std::forward<T>(value));
    }

    void reserve(std::size_t count) { entries_.reserve(count); }

    /// The value of `key`; null if there is none.
    [[nodiscard]] const Value* find(std::string_view key) const;

    /// The value of `key` if it is of type T. Null if it is missing or of another type: callers treat both
    /// alike.
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
