#pragma once

#include "catalogue/SMCCategory.h"

#include <cstddef>
#include <functional>
#include <string>

namespace kelvinbar {

/// What the catalogue knows about one SMC key. It says how to display a value, not whether a machine has the
/// key or how its bytes are encoded.
struct SMCKeyDefinition {
    std::string key;  ///< four characters, trailing spaces included
    std::string name; ///< for people, in English; not unique
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "RPM", "W", "V", "A", "mAh" or empty

    friend bool operator==(const SMCKeyDefinition&, const SMCKeyDefinition&) = default;
};

} // namespace kelvinbar

/// All four fields count.
template <>
struct std::hash<kelvinbar::SMCKeyDefinition> {
    std::size_t operator()(const kelvinbar::SMCKeyDefinition& definition) const noexcept;
};
