#include "machines/linux/sources/HwmonRegistry.h"

#include <cmath>
#include <cstdint>
#include <optional>

namespace kelvinbar {

namespace {

class ChipEntry final : public IORegistryEntry {
  public:
    explicit ChipEntry(const RegistryChip& chip) : chip_(&chip) {}

    [[nodiscard]] std::string className() const override { return std::string(chip_->className); }

    [[nodiscard]] std::string name() const override { return chip_->name; }

    [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
        return name == "device" ? std::optional(chip_->device) : std::nullopt;
    }

    /// Speeds are whole numbers; a fan that cannot be read is left out.
    [[nodiscard]] std::optional<Dictionary> properties() const override {
        Dictionary properties;
        properties.append("device", chip_->device);
        for (const auto& [label, fan] : chip_->fans) {
            const auto speed = fan.value();
            if (speed) properties.append(label, static_cast<std::int64_t>(std::lround(*speed)));
        }
        return properties;
    }

  private:
    const RegistryChip* chip_;
};

class ChipIterator final : public IORegistryIterator {
  public:
    explicit ChipIterator(std::shared_ptr<const SensorInventoryList> sensors)
        : sensors_(std::move(sensors)) {}

    const IORegistryEntry* next() override {
        if (place_ == sensors_->chips.size()) return nullptr;
        entry_.emplace(sensors_->chips[place_++]);
        return &*entry_;
    }

  private:
    std::shared_ptr<const SensorInventoryList> sensors_;
    std::size_t place_ = 0;
    std::optional<ChipEntry> entry_;
};

} // namespace

std::unique_ptr<IORegistryIterator> HwmonRegistry::iterateRecursively(std::string_view plane) {
    if (plane != "IOService") return nullptr;
    return std::make_unique<ChipIterator>(inventory_->current());
}

} // namespace kelvinbar
