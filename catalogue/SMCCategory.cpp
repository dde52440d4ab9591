#include "catalogue/SMCCategory.h"

#include <algorithm>
#include <cstddef>

namespace kelvinbar {

std::string_view rawValue(SMCCategory category) {
    constexpr std::array<std::string_view, allCategories.size()> titles{
        "Overview", "CPU",      "GPU / iGPU", "Memory",        "Fans",         "Battery",    "Power",
        "Voltages", "Currents", "Storage",    "Thermal Zones", "Misc Sensors", "Other Keys",
    };
    return titles.at(static_cast<std::size_t>(category));
}

std::optional<SMCCategory> categoryFromRawValue(std::string_view title) {
    const auto* const found = std::ranges::find(allCategories, title, rawValue);
    return found == allCategories.end() ? std::nullopt : std::optional(*found);
}

} // namespace kelvinbar
