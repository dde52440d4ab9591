#pragma once

#include <functional>
#include <set>
#include <string>

namespace kelvinbar {

/// Keys of readings, in ascending code-unit order.
using KeySet = std::set<std::string, std::less<>>;

} // namespace kelvinbar
