#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What a source can tell of itself besides its readings, for somebody who misses one. Plain values.
namespace kelvinbar {

/// Why a channel of a device has no reading, or none with a value.
enum class LeftOutReason : std::uint8_t {
    setting,      ///< a limit or target, which is not measured
    repeated,     ///< another reading has the value
    ignored,      ///< by the user's configuration
    unnamed,      ///< the device does not tell what it is
    switchedOff,  ///< in its driver
    unconnected,  ///< the driver says so, or the value is one that chips return for an open input
    unreadable,   ///< the driver refuses, or returns no number
    notPermitted, ///< to this user
    asleep,       ///< a reading would wake the device
    silent,       ///< an earlier read of the device does not come back
};

/// The reason for people: "asleep".
std::string_view textOf(LeftOutReason reason);

struct LeftOutChannel {
    std::string device;  ///< name of the device for the watch
    std::string channel; ///< its key, or its file in place of the feature: "nct6798-isa-0290/fan1_min"
    LeftOutReason reason = LeftOutReason::unreadable;
};

/// Filled in by the code that leaves channels out, where it is given a list. A usual pass gives none.
using LeftOutChannels = std::vector<LeftOutChannel>;

/// What became of the user's configuration of a class of devices. Texts are for people.
struct ConfigurationReport {
    std::string description{};         ///< what is used, or why nothing is; empty for a class without one
    std::vector<std::string> errors{}; ///< in what is used: "/etc/sensors.d/board:3: syntax error"
    bool isUsed = true;                ///< whether what configures the devices could be loaded
    bool hasFiles = false;             ///< there is something that the user expects to count
};

/// What became of all channels of one class of devices.
struct SourceReport {
    std::string name; ///< "hardware monitors"
    std::size_t devices = 0;
    std::size_t readings = 0; ///< with a value
    LeftOutChannels leftOut{};
    ConfigurationReport configuration{};
};

} // namespace kelvinbar
