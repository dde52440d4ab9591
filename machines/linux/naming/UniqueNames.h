#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

inline constexpr std::size_t longestSensorName = 40; ///< characters

/// A reading's name, and what can be appended to it to make it unique.
struct NameInList {
    std::string* name = nullptr; ///< changed in place; not empty
    SensorKind kind = SensorKind::temperature;
    std::string_view type;
};

/// Changes names until no two are equal. Equal names of different kinds get the kind ("CPU Current"). Of
/// names that are still equal, the first stays and the others get a number; a name that ends in a digit gets
/// the chip instead ("Fan 1 (nct6798)"), or a marked number if the chip does not fit ("Fan 1 #2"). No name
/// exceeds `longestSensorName`. The result depends on the order of `names`.
void makeUnique(const std::vector<NameInList>& names);

} // namespace kelvinbar
