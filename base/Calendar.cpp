#include "base/Calendar.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

namespace kelvinbar {

namespace {

/// The milliseconds of a fraction of a second.
std::string threeDigits(std::chrono::system_clock::duration fraction) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(fraction).count();
    return std::to_string(1000 + milliseconds).substr(1);
}

} // namespace

std::string iso8601Text(std::chrono::system_clock::time_point time, TimePrecision precision) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const auto day = std::chrono::floor<std::chrono::days>(seconds);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(seconds - day);
    std::array<char, 64> buffer{};
    const int length =
        std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02d",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    std::string text(buffer.data(), static_cast<std::size_t>(length));
    if (precision == TimePrecision::milliseconds) text.append(".").append(threeDigits(time - seconds));
    return text.append("Z");
}

std::optional<std::chrono::system_clock::time_point> timeOfIso8601Text(std::string_view text) {
    const auto number = [&](std::size_t place, std::size_t digits) {
        const std::string_view field = text.substr(std::min(place, text.size()), digits);
        return wholeNumberIn<unsigned>(field).value_or(0);
    };
    const unsigned year = number(0, 4);
    if (year < 1970 || year > 2199) return std::nullopt; // the clock's range ends in 2262
    const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(year)),
                                           std::chrono::month(number(5, 2)), std::chrono::day(number(8, 2)));
    if (!date.ok()) return std::nullopt;
    const auto time = std::chrono::sys_days(date) + std::chrono::hours(number(11, 2)) +
                      std::chrono::minutes(number(14, 2)) + std::chrono::seconds(number(17, 2));
    return iso8601Text(time) == text ? std::optional(time) : std::nullopt;
}

} // namespace kelvinbar
