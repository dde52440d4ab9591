#pragma once

#include "smc/IORegistry.h"

namespace kelvinbar {

/// The registry of devices and drivers behind I/O Kit.
class IOKitRegistry final : public IORegistry {
  public:
    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override;
};

} // namespace kelvinbar
