#pragma once

#include <string>

namespace kelvinbar {

/// The file of the system font's rounded design. Empty if the system does not have it. Main thread.
std::string roundedFontFile();

} // namespace kelvinbar
