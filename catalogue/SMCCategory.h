#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// The panel section that a reading belongs to, in the order of the sections.
enum class SMCCategory : std::uint8_t {
    overview,
    cpu,
    gpu,
    memory,
    fans,
    battery,
    power,
    voltages,
    currents,
    storage,
    thermal,
    sensors,
    unknown,
};

inline constexpr std::array<SMCCategory, 13> allCategories{
    SMCCategory::overview, SMCCategory::cpu,     SMCCategory::gpu,     SMCCategory::memory,
    SMCCategory::fans,     SMCCategory::battery, SMCCategory::power,   SMCCategory::voltages,
    SMCCategory::currents, SMCCategory::storage, SMCCategory::thermal, SMCCategory::sensors,
    SMCCategory::unknown,
};

/// The title of the category: its section heading, its identity in lists and its stored form.
std::string_view rawValue(SMCCategory category);

/// The category with exactly this title (case counts, nothing is trimmed), if there is one.
std::optional<SMCCategory> categoryFromRawValue(std::string_view title);

} // namespace kelvinbar
