#pragma once

#include "machines/linux/sources/SensorInventory.h"
#include "smc/IORegistry.h"

#include <memory>
#include <utility>

namespace kelvinbar {

/// The chips of the kernel's sensors as registry entries. Fans of Super I/O chips and board monitors are
/// properties under their labels; every other channel is a key of the emulated controller.
class HwmonRegistry final : public IORegistry {
  public:
    explicit HwmonRegistry(std::shared_ptr<SensorInventory> inventory) : inventory_(std::move(inventory)) {}

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override;

  private:
    std::shared_ptr<SensorInventory> inventory_;
};

} // namespace kelvinbar
