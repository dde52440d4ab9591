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

/// `count` distinct keys that the catalogue can name, in ascending order: half by its table where that has
/// enough of them, the rest by its rules.
std::vector<std::string> namedKeys(std::size_t count);

/// A clock for which no key is ever old.
class StandingClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override { return std::chrono::nanoseconds(0); }
};

/// A controller that answers from memory, as fast as a driver can: what a pass costs beyond it is ours.
class MemoryDriver final : public SMCDriver {
  public:
    explicit MemoryDriver(const std::vector<std::string>& keys);

    /// Gives `key` another value. Not while a pass runs.
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

/// A machine of `keys`, without registry fans and system facts, and its driver.
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
