#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a snapshot text tells of the machine that it was taken on.
namespace kelvinbar {

/// A key of the controller.
struct RecordedKey {
    std::uint32_t code = 0;          ///< the packed key
    std::uint32_t dataType = 0;      ///< the packed type
    std::vector<std::uint8_t> bytes; ///< 1 to 32
};

/// A fan from the registry, as its line shows it.
struct RecordedFan {
    std::size_t lineNumber = 0;
    std::string key;
    std::string name;
    std::string speed; ///< the shown number, without unit
    std::string raw;
};

/// What the operating system told; nothing where no line did.
struct RecordedFacts {
    std::optional<std::string> processorModel;
    std::optional<int> activeProcessors;
    std::optional<std::uint64_t> physicalMemory; ///< bytes
    std::optional<int> thermalState;             ///< as in SystemInformation
    bool lowPowerMode = false;
};

/// Why a line could not be used.
struct LineProblem {
    std::size_t lineNumber = 0; ///< from 1
    std::string_view reason;    ///< for people; a constant of the program
};

/// What is wrong with a second line of one key.
inline constexpr std::string_view repeatedKey = "the key came before; the first line counts";

struct RecordedMachine {
    std::vector<RecordedKey> keys; ///< in the order of the text, each once
    std::vector<RecordedFan> fans;
    RecordedFacts facts;
    std::size_t usedLines = 0; ///< lines that gave a key, a fan or a fact
};

} // namespace kelvinbar
