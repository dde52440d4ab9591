#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The bytes of the kernel's entry `name` ("hw.model"), as many as it announces, zeros where it then gives
/// fewer. Nothing when there is no such entry or it cannot be read. Any thread.
std::optional<std::string> systemEntry(std::string_view name);

} // namespace kelvinbar
