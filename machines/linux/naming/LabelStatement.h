#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// How libsensors' configuration addresses a channel (sensors.conf(5)).
struct LabelledFeature {
    std::string chip;    ///< "k10temp-pci-00c3"
    std::string feature; ///< "temp1"

    friend bool operator==(const LabelledFeature&, const LabelledFeature&) = default;
};

/// The channel with the key `key`. No value unless it is a channel of a hardware monitor that libsensors
/// knows too, whose chip is alone with its name. Buses that are numbered at boot are "*", since libsensors
/// takes a number only with a bus statement. Any thread.
std::optional<LabelledFeature> labelledFeature(std::string_view key);

/// The lines that name the channel, each with its line feed: a chip statement and a label statement.
/// `label` may contain any characters.
std::string labelStatement(const LabelledFeature& feature, std::string_view label);

} // namespace kelvinbar
