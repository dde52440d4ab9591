#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// The panel section to which a reading belongs, in display order. The order of the enumerators is not stored
/// anywhere; exported and saved data contain the title.
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

/// All categories in display order.
inline constexpr std::array<SMCCategory, 13> allCategories{
    SMCCategory::overview, SMCCategory::cpu,     SMCCategory::gpu,     SMCCategory::memory,
    SMCCategory::fans,     SMCCategory::battery, SMCCategory::power,   SMCCategory::voltages,
    SMCCategory::currents, SMCCategory::storage, SMCCategory::thermal, SMCCategory::sensors,
    SMCCategory::unknown,
};

/// The title of the category, for example "GPU / iGPU": section heading, identity in lists and stored form. A
/// changed title would make saved data unreadable. Lives as long as the program.
std::string_view rawValue(SMCCategory category);

/// The category with exactly this title; no value if there is none. Case matters, spaces are not trimmed.
std::optional<SMCCategory> categoryFromRawValue(std::string_view title);

} // namespace kelvinbar
