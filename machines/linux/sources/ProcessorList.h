#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The processors in a list such as "0-3,8,10-11"; none when it is malformed.
std::vector<std::uint32_t> processorsInList(std::string_view list);

} // namespace kelvinbar
