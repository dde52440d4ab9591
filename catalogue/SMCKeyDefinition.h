#pragma once

#include "catalogue/SMCCategory.h"

#include <cstddef>
#include <functional>
#include <string>

namespace kelvinbar {

/// What the catalogue knows of one SMC key.
struct SMCKeyDefinition {
    std::string key; ///< four characters, trailing blanks kept
    std::string name;
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "RPM", "W", "V", "A", "mAh" or empty

    friend bool operator==(const SMCKeyDefinition&, const SMCKeyDefinition&) = default;
};

} // namespace kelvinbar

template <>
struct std::hash<kelvinbar::SMCKeyDefinition> {
    std::size_t operator()(const kelvinbar::SMCKeyDefinition& definition) const noexcept;
};
