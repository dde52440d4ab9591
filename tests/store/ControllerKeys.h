#pragma once

#include "smc/SMCParamBlock.h"
#include "tests/fakes/FakeSMCDriver.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Keys for a fake controller, and queries on what was read from it.
namespace kelvinbar::fakes {

using ControllerKey = FakeSMCDriver::Key;

inline ControllerKey temperatureKey(std::string name, std::uint8_t degrees) {
    return {.name = std::move(name), .type = "sp78", .bytes = {degrees, 0}};
}

inline ControllerKey wholeNumberKey(std::string name, std::uint16_t number) {
    return {.name = std::move(name),
            .type = "ui16",
            .bytes = {static_cast<std::uint8_t>(number >> 8U), static_cast<std::uint8_t>(number & 0xFFU)}};
}

inline ControllerKey textKey(std::string name, std::string_view text) {
    return {.name = std::move(name), .type = "ch8*", .bytes = {text.begin(), text.end()}};
}

/// Replaces the keys of `driver` by `keys` and "#KEY".
inline void setKeys(FakeSMCDriver& driver, const std::vector<ControllerKey>& keys) {
    driver.keys.clear();
    driver.addKeyCount(static_cast<std::uint32_t>(keys.size() + 1));
    driver.keys.insert(driver.keys.end(), keys.begin(), keys.end());
}

/// The keys that were read, in order, without "#KEY".
inline std::vector<std::string> keysRead(const FakeSMCDriver& driver) {
    std::vector<std::string> keys;
    for (const FakeSMCDriver::Call& call : driver.calls) {
        if (call.command == SMCCommand::readKeyInfo && call.key != "#KEY") keys.push_back(call.key);
    }
    return keys;
}

/// How often discovery started.
inline std::size_t discoveryCount(const FakeSMCDriver& driver) {
    std::size_t count = 0;
    for (const FakeSMCDriver::Call& call : driver.calls) {
        if (call.command == SMCCommand::readKeyInfo && call.key == "#KEY") ++count;
    }
    return count;
}

} // namespace kelvinbar::fakes
