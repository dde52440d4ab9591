#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The processor numbers in a list in the kernel's format, such as "0-3,8,10-11". Empty when the list is
/// malformed.
std::vector<std::uint32_t> processorsInList(std::string_view list);

} // namespace kelvinbar
