#pragma once

#include "catalogue/SMCReading.h"

#include <nlohmann/json.hpp>
#include <string>

namespace kelvinbar {

/// Objects keep the order in which their fields were added.
using Json = nlohmann::ordered_json;

/// The serialised form of a reading: its fields by name, `numericValue` only if there is one.
Json jsonOf(const SMCReading& reading);

/// `document` as text that is valid UTF-8 whatever its strings hold. `indentation` is the number of spaces a
/// level, or -1 for one line. Does not end with a line feed.
std::string jsonText(const Json& document, int indentation);

} // namespace kelvinbar
