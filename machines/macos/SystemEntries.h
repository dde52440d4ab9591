#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The value of the sysctl entry `name` ("hw.model"), as many bytes as the kernel announced; if the value has
/// become shorter meanwhile, zeros fill the rest. A string includes its terminating zero. Nothing when there
/// is no such entry or it cannot be read. Any thread.
std::optional<std::string> systemEntry(std::string_view name);

} // namespace kelvinbar
