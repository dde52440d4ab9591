#include "machines/macos/IOKitRegistry.h"

#include "machines/macos/AutoreleaseScope.h"
#include "machines/macos/CFValues.h"
#include "machines/macos/MainPort.h"
#include "machines/macos/SystemHandles.h"

#include <algorithm>

namespace kelvinbar {

namespace {

constexpr IOOptionBits noOptions = 0;

/// Calls `read` to get a name. I/O Kit may fill the whole buffer without a terminating zero. Empty on
/// failure.
std::string readName(kern_return_t (*read)(io_object_t, io_name_t), io_object_t object) {
    io_name_t name{};
    if (read(object, name) != KERN_SUCCESS) return {};
    return {name, std::find(std::begin(name), std::end(name), '\0')};
}

class Entry final : public IORegistryEntry {
  public:
    explicit Entry(io_registry_entry_t entry) : entry_(entry) {}

    [[nodiscard]] bool isValid() const { return static_cast<bool>(entry_); }

    [[nodiscard]] std::string className() const override { return readName(IOObjectGetClass, entry_.get()); }

    [[nodiscard]] std::string name() const override { return readName(IORegistryEntryGetName, entry_.get()); }

    [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
        const AutoreleaseScope scope;
        const CFOwned key(createString(name));
        if (!key) return std::nullopt;
        const CFOwned property(
            IORegistryEntryCreateCFProperty(entry_.get(), key.get(), kCFAllocatorDefault, noOptions));
        return textIn(property.get());
    }

    [[nodiscard]] std::optional<Dictionary> properties(const PropertyFilter& isWanted) const override {
        const AutoreleaseScope scope;
        CFMutableDictionaryRef created = nullptr;
        const kern_return_t code =
            IORegistryEntryCreateCFProperties(entry_.get(), &created, kCFAllocatorDefault, noOptions);
        const CFOwned dictionary(created);
        if (code != KERN_SUCCESS || !dictionary) return std::nullopt;
        return dictionaryIn(dictionary.get(), isWanted);
    }

  private:
    IOObject entry_;
};

class Iterator final : public IORegistryIterator {
  public:
    explicit Iterator(IOObject iterator) : iterator_(std::move(iterator)) {}

    /// Null as well after the registry has changed, which invalidates the iterator.
    const IORegistryEntry* next() override {
        const AutoreleaseScope scope;
        entry_.emplace(IOIteratorNext(iterator_.get()));
        return entry_->isValid() ? &*entry_ : nullptr;
    }

  private:
    IOObject iterator_;
    std::optional<Entry> entry_;
};

} // namespace

std::unique_ptr<IORegistryIterator> IOKitRegistry::iterateRecursively(std::string_view plane) {
    const AutoreleaseScope scope;
    io_name_t name{};
    if (plane.size() >= sizeof(name)) return nullptr;
    std::ranges::copy(plane, std::begin(name));
    io_iterator_t created = IO_OBJECT_NULL;
    const kern_return_t code =
        IORegistryCreateIterator(mainPort, name, kIORegistryIterateRecursively, &created);
    IOObject iterator(created);
    if (code != KERN_SUCCESS || !iterator) return nullptr;
    return std::make_unique<Iterator>(std::move(iterator));
}

} // namespace kelvinbar
