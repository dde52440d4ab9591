#include "base/Calendar.h"

#include <array>
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

} // namespace kelvinbar
