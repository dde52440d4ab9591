#pragma once

#include "base/Value.h"

#include <CoreFoundation/CoreFoundation.h>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The text, in full, zeros inside it included; nothing when the object is no text or cannot be written as
/// UTF-8. A null object is no text.
std::optional<std::string> textIn(CFTypeRef object);

/// A number, truth value, text or bytes; nothing for every other object.
std::optional<Value> valueIn(CFTypeRef object);

/// The entries whose names are texts and whose values are such values, in the dictionary's own order.
Dictionary dictionaryIn(CFDictionaryRef dictionary);

/// The caller owns the result; null for text that is not UTF-8.
CFStringRef createString(std::string_view text);

} // namespace kelvinbar
