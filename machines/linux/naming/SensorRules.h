#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/TextPattern.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace kelvinbar {

/// Which key a channel gets. The first rule that fits a channel and has a key left for it decides.
///
/// Chips and labels are patterns: "*" stands for any text, "?" for any character, "|" separates alternatives;
/// letter case does not count. A channel without a label goes by its file's prefix ("temp3").
///
/// Keys are tried from left to right. In a key stand for a hex digit:
///   @  the index of the chip among the chips that the rule's chip pattern fits
///   =  the last number in the label
///   #  the channel's number, and % one less than it
///   +  the first that is free, and ^ the same from 1 on
/// and for a capital letter beyond those digits: ~ the first that is free.
/// "++" is the first pair of digits or capital letters that makes a free key which the catalogue has no other
/// name for; "????" is the label itself. A key that the catalogue cannot name is passed over, except a label
/// that is a key.
struct SensorRule {
    std::string_view chips;
    SensorKind kind;
    std::string_view labels;
    std::string_view keys;
    std::string_view type;
    /// Keys of a real controller that tell the same: where it has one, the channel is left out.
    std::string_view coveredBy{};
};

/// Most particular first.
std::span<const SensorRule> sensorRules();

/// A fan's further keys: those of its attributes carry its digit ("F0Ac", "F0Mx").
struct FanAttributeRule {
    SensorKind kind;
    std::string_view chips;
    std::string_view keyEnd;
    std::string_view type;
};

std::span<const FanAttributeRule> fanAttributeRules();

/// Chips whose labelled and numbered fans are published in the registry, under their labels.
struct RegistryRule {
    std::string_view chips;
    std::string_view className;
};

std::span<const RegistryRule> registryRules();

/// The class name in the registry of every other chip.
inline constexpr std::string_view plainRegistryClass = "HwmonDevice";

} // namespace kelvinbar
