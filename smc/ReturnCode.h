#pragma once

#include <cstdint>

namespace kelvinbar {

/// A Mach kern_return_t, as returned by the controller's driver. 0 is success. Codes that the driver defines
/// itself are passed on unchanged.
using ReturnCode = std::uint32_t;

inline constexpr ReturnCode kernSuccess = 0;
inline constexpr ReturnCode kernInvalidArgument = 4; ///< not connected, or the key is not printable
inline constexpr ReturnCode kernFailure = 5;         ///< refused by the controller, or size out of range
inline constexpr ReturnCode kernNotFound = 56;       ///< no such service

} // namespace kelvinbar
