#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

/// Numbers as text and back, the same under every process locale.
namespace kelvinbar {

/// `number` with exactly `decimals` (0 to 3) digits after a point, correctly rounded from the exact binary
/// value, ties to the even digit: what C's "%.*f" prints under the "C" locale ("-0", "inf", "-inf" and "nan"
/// included).
std::string fixedText(double number, int decimals);

/// How far `number` is from the nearest whole number (halves count as away from zero). NaN for infinities.
double distanceFromWhole(double number);

/// "%.0f" within 0.005 of a whole number, otherwise "%.2f": the text of a raw controller or registry value.
std::string plainNumberText(double number);

/// The number at the front of `text`, after white space: sign, decimal digits, point, exponent; what follows
/// is ignored. 0 when there is no number, plus or minus infinity when it is too large for a double.
double leadingNumber(std::string_view text);

/// Whether all of `text` is such a number, without white space.
bool isNumber(std::string_view text);

/// The decimal whole number at the front of `text`, which loses it; nothing when there is none or it does not
/// fit.
template <typename Integer>
std::optional<Integer> takeWholeNumber(std::string_view& text) {
    Integer number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// The decimal whole number that all of `text` is; nothing when it is none or does not fit.
template <typename Integer>
std::optional<Integer> wholeNumberIn(std::string_view text) {
    Integer number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// Upper-case hexadecimal digits without leading zeros: what C's "%llX" prints.
std::string hexadecimalText(std::uint64_t number);

} // namespace kelvinbar
