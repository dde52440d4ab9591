#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/TextPattern.h"

#include <span>
#include <string_view>

namespace kelvinbar {

/// Which key version 0.1 gave to a channel: the first rule that matched and had a key left.
///
/// Keys were tried from left to right. These characters stand for a hex digit:
///
///     @  index of the chip among those that match the rule's chip pattern
///     =  last number in the label
///     #  number of the channel; % is one less
///     +  the first digit that makes an unused key; ^ the same from 1 on
///
/// "~" stands for the first capital letter after F that makes an unused key, "++" for the first pair of
/// digits or capital letters that makes an unused key without a name in the catalogue's table. Keys that the
/// catalogue cannot name were skipped.
struct SensorRule {
    std::string_view chips; ///< pattern, as for fitsPattern
    SensorKind kind;
    std::string_view labels; ///< pattern; a channel without a label goes by its feature ("temp3")
    std::string_view keys;
    std::string_view coveredBy{}; ///< keys of a controller that measure the same: the channel had no key then
};

std::span<const SensorRule> sensorRules();

/// Further keys of a fan: its attributes had its digit ("F0Ac", "F0Mx").
struct FanAttributeRule {
    SensorKind kind;
    std::string_view chips;
    std::string_view keyEnd;
};

std::span<const FanAttributeRule> fanAttributeRules();

/// Patterns of the chips whose fans were published in a registry.
std::span<const std::string_view> registryChips();

} // namespace kelvinbar
