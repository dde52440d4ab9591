#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

inline constexpr std::size_t longestSensorName = 40; ///< characters

/// A reading's name with what tells it apart from others of the same name.
struct NameInList {
    std::string* name = nullptr; ///< not empty
    SensorKind kind = SensorKind::temperature;
    std::string_view type;
};

/// Changes names until no two are equal: the kind is appended where kinds differ ("CPU Current"), then a
/// number to all but the first, or the chip where a number stands at the end already ("Fan 1 (nct6798)").
/// Where the chip does not fit, a marked number does ("Fan 1 #2").
void makeUnique(const std::vector<NameInList>& names);

} // namespace kelvinbar
