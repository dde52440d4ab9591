#pragma once

#include "sensors/RawReading.h"

#include <ostream>

namespace kelvinbar {

/// Shows a reading in the message of a failed expectation.
inline void PrintTo(const RawReading& reading, std::ostream* stream) {
    *stream << reading.key << " [" << reading.type << "] '" << reading.value << "' raw '" << reading.raw
            << "' size " << reading.size << " status '" << reading.status << "'";
    if (reading.numericValue) *stream << " number " << *reading.numericValue;
    if (reading.name) *stream << " name '" << *reading.name << "'";
    if (reading.category) *stream << " category '" << *reading.category << "'";
    if (reading.unit) *stream << " unit '" << *reading.unit << "'";
}

} // namespace kelvinbar
