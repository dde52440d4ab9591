#pragma once

#include "base/Clock.h"
#include "sensors/Machine.h"
#include "smc/SMCDriver.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCParamBlock.h"
#include "store/LoadPass.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar::bench {

/// `count` distinct keys with names, in ascending order: half of them from the catalogue's table as far as it
/// goes, the others named by rules.
std::vector<std::string> namedKeys(std::size_t count);

/// A clock that stands still, so that no key expires.
class StandingClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override { return std::chrono::nanoseconds(0); }
};

/// An SMC driver that answers from memory without delay, so that a benchmark measures our own code only.
class MemoryDriver final : public SMCDriver {
  public:
    explicit MemoryDriver(const std::vector<std::string>& keys);

    /// Changes the value of `key`. Not while a pass is running.
    void changeValue(std::string_view key);

    std::optional<Service> findService(std::string_view /*className*/) override { return 1; }

    OpenResult open(Service /*service*/) override { return {.code = kernSuccess, .connection = 1}; }

    ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override;

    void close(Connection /*connection*/) override {}

  private:
    struct Answers {
        SMCParamBlock info;
        SMCParamBlock bytes;
    };

    std::vector<SMCParamBlock> byIndex_;
    std::unordered_map<std::uint32_t, Answers> byKey_;
};

/// A machine with `keys`, without registry fans and system facts, and its driver.
struct MemoryMachine {
    explicit MemoryMachine(const std::vector<std::string>& keys);

    std::shared_ptr<MemoryDriver> driver;
    Machine machine;
};

/// A pass that discovers all keys, and reads registry fans.
LoadPass discoveringPass();

/// A pass between two discoveries that reads `keys`.
LoadPass passOver(const std::vector<std::string>& keys, bool readSuperIOFans);

} // namespace kelvinbar::bench
