#pragma once

#include "smc/IORegistry.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fakes {

/// An entry that a test fills in. No properties: they cannot be read.
struct FakeEntry final : public IORegistryEntry {
    std::string entryClass;
    std::string entryName;
    std::optional<Dictionary> entryProperties = Dictionary{};

    FakeEntry(std::string className, std::string name, std::optional<Dictionary> properties)
        : entryClass(std::move(className))
        , entryName(std::move(name))
        , entryProperties(std::move(properties)) {}

    [[nodiscard]] std::string className() const override { return entryClass; }

    [[nodiscard]] std::string name() const override { return entryName; }

    [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
        const auto* text = entryProperties ? entryProperties->find<std::string>(name) : nullptr;
        return text == nullptr ? std::nullopt : std::optional(*text);
    }

    [[nodiscard]] std::optional<Dictionary> properties(const PropertyFilter& isWanted) const override {
        if (!entryProperties) return std::nullopt;
        Dictionary wanted;
        for (const auto& [name, value] : *entryProperties) {
            if (isWanted(name)) wanted.append(name, value);
        }
        return wanted;
    }
};

/// A registry over a list of entries. Counts how it is used.
class FakeIORegistry final : public IORegistry {
  public:
    std::vector<FakeEntry> entries;
    bool canIterate = true;
    std::vector<std::string> walkedPlanes;
    std::size_t visitedEntries = 0;

    void add(std::string className, std::string name, std::optional<Dictionary> properties) {
        entries.emplace_back(std::move(className), std::move(name), std::move(properties));
    }

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        walkedPlanes.emplace_back(plane);
        return canIterate ? std::make_unique<Iterator>(*this) : nullptr;
    }

  private:
    class Iterator final : public IORegistryIterator {
      public:
        explicit Iterator(FakeIORegistry& registry) : registry_(registry) {}

        const IORegistryEntry* next() override {
            if (next_ == registry_.entries.size()) return nullptr;
            ++registry_.visitedEntries;
            return &registry_.entries[next_++];
        }

      private:
        FakeIORegistry& registry_;
        std::size_t next_ = 0;
    };
};

} // namespace kelvinbar::fakes
