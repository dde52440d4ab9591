#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

/// Numbers as text and back. A desktop toolkit may set a locale with a decimal comma for the whole process;
/// everything here uses a decimal point regardless, which printf() and streams do not. Pure functions; any
/// thread.
namespace kelvinbar {

/// `number` with exactly `decimals` (0 to 3) digits after the point: the output of C's "%.*f" in the "C"
/// locale, including "-0", "inf", "-inf" and "nan". The exact binary value is rounded, ties to the even
/// digit: 0.125 becomes "0.12".
std::string fixedText(double number, int decimals);

/// The distance to the nearest whole number, 0 to 0.5. NaN for infinities and NaN.
double distanceFromWhole(double number);

/// `number` without decimals if it is within 0.005 of a whole number, otherwise with two. The form in which
/// values of controllers and registries are displayed unless they have a format of their own.
std::string plainNumberText(double number);

/// The decimal number at the start of `text`, after optional white space: sign, digits, point, exponent. The
/// rest is ignored. Returns 0 if there is no number, and infinity with its sign if the number is too large
/// for a double. Does not accept "inf", "nan" or hexadecimal numbers.
double leadingNumber(std::string_view text);

/// Whether `text` consists of exactly one such number, without white space.
bool isNumber(std::string_view text);

/// Removes the decimal whole number at the start of `text` and returns it. If there is none or it does not
/// fit into `Integer`, returns no value and leaves `text` unchanged.
template <typename Integer>
std::optional<Integer> takeWholeNumber(std::string_view& text) {
    Integer number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// `text` as a decimal whole number. No value if any other character is in it or the number does not fit into
/// `Integer`. A plus sign is not accepted.
template <typename Integer>
std::optional<Integer> wholeNumberIn(std::string_view text) {
    Integer number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// `number` in upper-case hexadecimal digits without prefix or leading zeros; "0" for 0.
std::string hexadecimalText(std::uint64_t number);

} // namespace kelvinbar
