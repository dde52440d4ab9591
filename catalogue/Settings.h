#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// How often readings are refreshed: every 3 s or every 1 s.
enum class SMCSamplingRate { medium, fast };

inline constexpr std::array allSamplingRates{SMCSamplingRate::medium, SMCSamplingRate::fast};

/// Whether the panel keeps the size that the user gave it or follows its content.
enum class SMCWindowDisplayMode { fixed, dynamic };

inline constexpr std::array allWindowDisplayModes{SMCWindowDisplayMode::fixed, SMCWindowDisplayMode::dynamic};

/// The stored form: "medium" or "fast".
std::string_view rawValue(SMCSamplingRate rate);
std::optional<SMCSamplingRate> samplingRateFromRawValue(std::string_view text);

/// The stored form: "fixed" or "dynamic".
std::string_view rawValue(SMCWindowDisplayMode mode);
std::optional<SMCWindowDisplayMode> windowDisplayModeFromRawValue(std::string_view text);

} // namespace kelvinbar
