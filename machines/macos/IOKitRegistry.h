#pragma once

#include "smc/IORegistry.h"

namespace kelvinbar {

/// The I/O registry: the tree of devices and drivers, with their properties. Each walk has an iterator of its
/// own, so walks on several threads do not interfere. A driver that comes or goes during a walk invalidates
/// its iterator; the walk then ends early and returns the entries it has visited.
class IOKitRegistry final : public IORegistry {
  public:
    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override;
};

} // namespace kelvinbar
