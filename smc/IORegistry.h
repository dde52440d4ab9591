#pragma once

#include "base/Value.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Port: one entry of the registry of devices and drivers.
class IORegistryEntry {
  public:
    virtual ~IORegistryEntry() = default;
    [[nodiscard]] virtual std::string className() const = 0;
    [[nodiscard]] virtual std::string name() const = 0;
    /// The property under `name` if it is a text.
    [[nodiscard]] virtual std::optional<std::string> textProperty(std::string_view name) const = 0;
    /// All properties in the platform's own order: numbers, bytes, texts (others may be left out); nothing
    /// when they cannot be read. A property without a textual name is left out.
    [[nodiscard]] virtual std::optional<Dictionary> properties() const = 0;
};

/// Port: a walk over registry entries.
class IORegistryIterator {
  public:
    virtual ~IORegistryIterator() = default;
    /// The next entry, owned by the iterator and valid until the next call; null at the end.
    virtual const IORegistryEntry* next() = 0;
};

/// Port: the registry of devices and drivers. Callable from any thread.
class IORegistry {
  public:
    virtual ~IORegistry() = default;
    /// Walks all entries of `plane` and of everything below them; null when the walk cannot be begun.
    virtual std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) = 0;
};

} // namespace kelvinbar
