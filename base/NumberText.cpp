#include "base/NumberText.h"

#include "base/Text.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>
#include <new>
#include <sstream>

namespace kelvinbar {

namespace {

constexpr int mantissaBits = std::numeric_limits<double>::digits;

/// `mantissa` / 2^`shift`, rounded to the nearest whole number, ties to even.
std::uint64_t dividedByPowerOfTwo(std::uint64_t mantissa, int shift) {
    if (shift == 0) return mantissa;
    if (shift >= 64) return 0; // the mantissa has at most 63 bits, so the quotient is below one half
    const std::uint64_t whole = mantissa >> shift;
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    const std::uint64_t rest = mantissa & ((half << 1U) - 1);
    const bool roundsUp = rest > half || (rest == half && (whole & 1U) != 0);
    return whole + (roundsUp ? 1 : 0);
}

/// |number| * 10^decimals, rounded to a whole number. |number| must be below 2^53.
std::uint64_t scaledMagnitude(double number, int decimals) {
    constexpr std::array<std::uint64_t, 4> powersOfTen{1, 10, 100, 1000};
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(number), &exponent);
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, mantissaBits));
    // Cannot overflow: 53 bits times 1000 is at most 63 bits.
    const std::uint64_t scaled = mantissa * powersOfTen.at(static_cast<std::size_t>(decimals));
    return dividedByPowerOfTwo(scaled, mantissaBits - exponent);
}

/// The text of a number of 2^53 or more. Such a double is whole, and "%.0f" prints no decimal separator, so
/// the locale makes no difference.
std::string largeNumberText(double number, int decimals) {
    std::array<char, std::numeric_limits<double>::max_exponent10 + 3> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.0f", number);
    std::string text(buffer.data(), static_cast<std::size_t>(length));
    if (decimals > 0) text.append(".").append(static_cast<std::size_t>(decimals), '0');
    return text;
}

/// The longest prefix of `text` that is a decimal number; empty if there is none. Does not skip white space.
std::string_view numberPrefix(std::string_view text) {
    std::size_t at = 0;
    const auto skipSign = [&] {
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    };
    const auto skipDigits = [&] {
        const std::size_t start = at;
        while (at < text.size() && isDecimalDigit(text[at])) ++at;
        return at - start;
    };
    skipSign();
    std::size_t digits = skipDigits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        digits += skipDigits();
    }
    if (digits == 0) return {};
    const std::size_t endOfMantissa = at;
    if (at < text.size() && asciiLowercased(text[at]) == 'e') {
        ++at;
        skipSign();
        if (skipDigits() == 0) at = endOfMantissa;
    }
    return text.substr(0, at);
}

} // namespace

std::string fixedText(double number, int decimals) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
    if (std::fabs(number) >= std::ldexp(1.0, mantissaBits)) return largeNumberText(number, decimals);

    std::uint64_t magnitude = scaledMagnitude(number, decimals);
    std::array<char, 24> buffer{};
    char* const end = buffer.data() + buffer.size();
    char* first = end;
    for (int digit = 0; magnitude != 0 || digit <= decimals; ++digit) {
        if (digit == decimals && decimals > 0) *--first = '.';
        *--first = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    }
    if (std::signbit(number)) *--first = '-';
    return {first, end};
}

double distanceFromWhole(double number) { return std::fabs(number - std::round(number)); }

std::string plainNumberText(double number) {
    return fixedText(number, distanceFromWhole(number) < 0.005 ? 0 : 2);
}

double leadingNumber(std::string_view text) {
    const std::string_view prefix = numberPrefix(trimmed(text));
    if (prefix.empty()) return 0;
    std::istringstream stream{std::string(prefix)};
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    if (stream.bad()) throw std::bad_alloc(); // which the stream has caught
    // A number out of range sets the fail bit and returns the largest finite double.
    if (stream.fail() && std::fabs(number) == std::numeric_limits<double>::max()) {
        return std::copysign(std::numeric_limits<double>::infinity(), number);
    }
    return number;
}

std::string hexadecimalText(std::uint64_t number) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    if (number >= 16) text = hexadecimalText(number / 16);
    text.push_back(digits[number % 16]);
    return text;
}

bool isNumber(std::string_view text) { return !text.empty() && numberPrefix(text).size() == text.size(); }

} // namespace kelvinbar
