#pragma once

#include <array>
#include <optional>
#include <string_view>

/// Settings that more than one folder needs, and the texts that preferences store for them. Changing a text
/// would lose the setting of every user. Pure functions; any thread.
namespace kelvinbar {

/// How often readings are refreshed: every 3 s (medium) or every second (fast).
enum class SMCSamplingRate { medium, fast };

inline constexpr std::array allSamplingRates{SMCSamplingRate::medium, SMCSamplingRate::fast};

/// Whether the panel keeps the size that the user gave it (fixed) or follows its content (dynamic).
enum class SMCWindowDisplayMode { fixed, dynamic };

inline constexpr std::array allWindowDisplayModes{SMCWindowDisplayMode::fixed, SMCWindowDisplayMode::dynamic};

/// The stored form: "medium" or "fast".
std::string_view rawValue(SMCSamplingRate rate);

/// The rate with exactly this stored form; no value for any other text.
std::optional<SMCSamplingRate> samplingRateFromRawValue(std::string_view text);

/// The stored form: "fixed" or "dynamic".
std::string_view rawValue(SMCWindowDisplayMode mode);

/// The mode with exactly this stored form; no value for any other text.
std::optional<SMCWindowDisplayMode> windowDisplayModeFromRawValue(std::string_view text);

} // namespace kelvinbar
