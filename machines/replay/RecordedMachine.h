#pragma once

#include "sensors/RawReading.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A snapshot text as data: what was recorded, without judging it.
namespace kelvinbar {

/// An SMC key as it was read.
struct RecordedKey {
    std::uint32_t code = 0;          ///< the four characters, packed
    std::uint32_t dataType = 0;      ///< likewise
    std::vector<std::uint8_t> bytes; ///< 1 to 32
};

/// System facts. A member is empty when the snapshot has no line for it.
struct RecordedFacts {
    std::optional<std::string> processorModel;
    std::optional<int> activeProcessors;
    std::optional<std::uint64_t> physicalMemory; ///< bytes
    std::string architecture;                    ///< empty without a line
    std::optional<int> thermalState;             ///< as in SystemInformation
    std::string thermalStateName = "macOS Thermal State";
    bool lowPowerMode = false;
};

/// A line that could not be used.
struct LineProblem {
    std::size_t lineNumber = 0; ///< from 1
    std::string_view reason;    ///< for people; has static lifetime
};

/// The reason for a second line with the same key.
inline constexpr std::string_view repeatedKey = "the key came before; the first line counts";

struct RecordedMachine {
    std::vector<RecordedKey> keys;   ///< in the order of the text, without duplicates
    std::vector<RawReading> fans;    ///< from the I/O registry, likewise
    std::vector<RawReading> sensors; ///< from the Linux kernel, likewise
    RecordedFacts facts;
    std::optional<std::chrono::system_clock::time_point> time; ///< of the snapshot, if it tells it
    std::size_t usedLines = 0; ///< lines with a key, a fan, a sensor or a fact
};

} // namespace kelvinbar
