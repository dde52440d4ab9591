#pragma once

#include <functional>
#include <set>
#include <string>

namespace kelvinbar {

/// A set of keys, in ascending code-unit order: upper-case letters sort before lower-case ones. Look-up
/// accepts a std::string_view without a copy. Holds any text; use it for keys of SMC and of other sources
/// alike.
using KeySet = std::set<std::string, std::less<>>;

} // namespace kelvinbar
