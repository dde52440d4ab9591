#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/TextPattern.h"

#include <span>
#include <string_view>

namespace kelvinbar {

/// The key that version 0.1 assigned to a channel: by the first rule that matched and had a free key.
///
/// `keys` is a list, tried from left to right. Placeholders stand for a hexadecimal digit:
///
///     @  index of the chip among those that match the rule's chip pattern
///     =  last number in the label
///     #  number of the channel
///     %  number of the channel minus one
///     +  the first digit that makes a free key
///     ^  the first digit from 1 that makes a free key
///
/// "~" stands for the first capital letter after F that makes a free key. "++" stands for the first pair of
/// digits or capital letters that makes a free key which is not in the catalogue's table. Keys without a name
/// in the catalogue were skipped.
struct SensorRule {
    std::string_view chips; ///< pattern, as for fitsPattern
    SensorKind kind;
    std::string_view labels; ///< pattern; a channel without a label matches by its feature ("temp3")
    std::string_view keys;
    std::string_view coveredBy{}; ///< SMC keys that measure the same; with one of them the channel had no key
};

std::span<const SensorRule> sensorRules();

/// Keys of a fan's attributes, which begin like the fan's key ("F0Ac", "F0Mx").
struct FanAttributeRule {
    SensorKind kind;
    std::string_view chips;
    std::string_view keyEnd;
};

std::span<const FanAttributeRule> fanAttributeRules();

/// Patterns of chips whose fans had the keys FAN0 to FAN7.
std::span<const std::string_view> registryChips();

} // namespace kelvinbar
