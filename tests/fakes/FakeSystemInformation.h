#pragma once

#include "sensors/SystemInformation.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar::fakes {

/// System facts that a test sets. The defaults still produce the readings that every machine has.
struct FakeSystemInformation final : public SystemInformation {
    std::map<std::string, std::string, std::less<>> entries; ///< with their terminating zero
    int processors = 0;
    std::uint64_t memory = 0;
    std::string processorArchitecture = "Apple Silicon";
    std::optional<int> thermal = 0;
    bool lowPower = false;

    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override {
        const auto found = entries.find(name);
        return found == entries.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] int activeProcessorCount() const override { return processors; }

    [[nodiscard]] std::uint64_t physicalMemory() const override { return memory; }

    [[nodiscard]] std::string architecture() const override { return processorArchitecture; }

    [[nodiscard]] std::optional<int> thermalState() const override { return thermal; }

    [[nodiscard]] std::string_view thermalStateName() const override { return "macOS Thermal State"; }

    [[nodiscard]] bool isLowPowerModeEnabled() const override { return lowPower; }
};

} // namespace kelvinbar::fakes
