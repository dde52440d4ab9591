#pragma once

#include "sensors/RawReading.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a snapshot text says about the machine it was taken on.
namespace kelvinbar {

/// A key of the controller.
struct RecordedKey {
    std::uint32_t code = 0;          ///< the packed key
    std::uint32_t dataType = 0;      ///< the packed type
    std::vector<std::uint8_t> bytes; ///< 1 to 32
};

/// What the operating system reported; nothing where no line says so.
struct RecordedFacts {
    std::optional<std::string> processorModel;
    std::optional<int> activeProcessors;
    std::optional<std::uint64_t> physicalMemory; ///< bytes
    std::string architecture;                    ///< empty where no line says so
    std::optional<int> thermalState;             ///< as in SystemInformation
    std::string thermalStateName = "macOS Thermal State";
    bool lowPowerMode = false;
};

/// Why a line could not be used.
struct LineProblem {
    std::size_t lineNumber = 0; ///< from 1
    std::string_view reason;    ///< for people; a constant of the program
};

/// Why a second line of the same key is not used.
inline constexpr std::string_view repeatedKey = "the key came before; the first line counts";

struct RecordedMachine {
    std::vector<RecordedKey> keys;   ///< in the order of the text, each once
    std::vector<RawReading> fans;    ///< of the registry, likewise
    std::vector<RawReading> sensors; ///< of the kernel, likewise
    RecordedFacts facts;
    std::size_t usedLines = 0; ///< lines that hold a key, a fan, a sensor or a fact
};

} // namespace kelvinbar
