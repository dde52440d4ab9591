#pragma once

#include "base/Value.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Whether the property of a name is wanted.
using PropertyFilter = std::function<bool(std::string_view name)>;

/// Port: one entry of the registry. Belongs to the iterator that returned it.
class IORegistryEntry {
  public:
    virtual ~IORegistryEntry() = default;
    [[nodiscard]] virtual std::string className() const = 0;
    [[nodiscard]] virtual std::string name() const = 0;
    /// The property `name`, or no value if it is missing or not a text.
    [[nodiscard]] virtual std::optional<std::string> textProperty(std::string_view name) const = 0;
    /// The properties whose name `isWanted` accepts, in the platform's own order, or no value if they cannot
    /// be read. Contains at least the numbers, bytes and texts; properties whose name is not a text are left
    /// out. Values of other properties are not converted, which would take most of the time of a walk.
    [[nodiscard]] virtual std::optional<Dictionary> properties(const PropertyFilter& isWanted) const = 0;
};

/// Port: a walk over registry entries.
class IORegistryIterator {
  public:
    virtual ~IORegistryIterator() = default;
    /// The next entry, or null at the end. Valid until the next call.
    virtual const IORegistryEntry* next() = 0;
};

/// Port: the operating system's registry of devices and drivers. Any thread.
class IORegistry {
  public:
    virtual ~IORegistry() = default;
    /// Iterates over all entries of `plane`, at every depth. Null if the iteration cannot start.
    virtual std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) = 0;
};

} // namespace kelvinbar
