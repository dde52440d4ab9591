#pragma once

#include "base/Value.h"

#include <CoreFoundation/CoreFoundation.h>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Conversions from Core Foundation objects to plain values. Property lists come from drivers, so no type is
/// taken for granted: an object of another type yields nothing. The objects stay owned by the caller. Any
/// thread.
namespace kelvinbar {

/// The whole string as UTF-8, embedded zeros included. Nothing for a null object, for an object that is not a
/// CFString, and for a string that has no UTF-8 form (an unpaired surrogate).
std::optional<std::string> textIn(CFTypeRef object);

/// The value of a CFNumber, CFBoolean, CFString or CFData; nothing for any other object. Integers that do not
/// fit into 64 signed bits become doubles.
std::optional<Value> valueIn(CFTypeRef object);

/// The entries with a string as key that `isWanted` accepts and a value that `valueIn` converts, in the
/// dictionary's own order. Other values are not touched.
Dictionary dictionaryIn(CFDictionaryRef dictionary, const std::function<bool(std::string_view)>& isWanted);

/// The caller releases the result. Null for text that is not UTF-8.
CFStringRef createString(std::string_view text);

} // namespace kelvinbar
