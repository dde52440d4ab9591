#pragma once

#include "machines/linux/libsensors/SensorConfiguration.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar::fakes {

/// A value set by a test, with a count of its reads.
struct FakeComputation {
    std::optional<double> value;
    bool isSilent = false;
    int reads = 0;
};

class FakeComputedValue final : public ComputedValue {
  public:
    explicit FakeComputedValue(FakeComputation& computation) : computation_(computation) {}

    [[nodiscard]] std::optional<double> read() const override {
        ++computation_.reads;
        return computation_.value;
    }

    [[nodiscard]] bool isSilent() const override { return computation_.isSilent; }

  private:
    FakeComputation& computation_;
};

/// A configuration whose chips are set by a test, by their libsensors names.
class FakeSensorConfiguration final : public SensorConfiguration {
  public:
    void refresh(const std::vector<SensorChip>& machine) override {
        refreshed.clear();
        for (const SensorChip& chip : machine) refreshed.push_back(chip.sensorsName);
    }

    [[nodiscard]] const ConfiguredChip* find(const SensorChip& chip) const override {
        const auto found = chips.find(chip.sensorsName);
        return found == chips.end() ? nullptr : &found->second;
    }

    [[nodiscard]] ConfigurationReport report() const override {
        return {.description = "a fake configuration"};
    }

    /// Adds a feature. Its value is that of the computation, if there is one.
    void add(const std::string& chip, const std::string& feature, const std::string& label,
             FakeComputation* computation = nullptr) {
        std::shared_ptr<const ConfiguredValue> value;
        if (computation != nullptr) {
            value =
                std::make_shared<const ConfiguredValue>(std::make_unique<FakeComputedValue>(*computation));
        }
        chips[chip][feature] = {label, std::move(value)};
    }

    std::map<std::string, ConfiguredChip> chips;
    std::vector<std::string> refreshed; ///< the chips of the last refresh
};

} // namespace kelvinbar::fakes
