#pragma once

#include <cstdint>

namespace kelvinbar {

/// A Mach kern_return_t, as the controller's driver answers it. 0 is success; codes of the driver itself pass
/// through unchanged.
using ReturnCode = std::uint32_t;

inline constexpr ReturnCode kernSuccess = 0;
inline constexpr ReturnCode kernInvalidArgument = 4; ///< no connection, or no printable key
inline constexpr ReturnCode kernFailure = 5;         ///< refused by the controller, or a size out of range
inline constexpr ReturnCode kernNotFound = 56;       ///< no such service

} // namespace kelvinbar
