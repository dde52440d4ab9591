#pragma once

#include "machines/linux/applesmc/AppleSMCRegisters.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar::fakes {

/// An SMC behind the kernel's driver: one key at a time, the one that any program has selected last. Counts
/// calls, and lets another program act before any of them.
struct FakeAppleSMC {
    struct Key {
        std::string name;
        std::string type;
        std::vector<std::uint8_t> bytes;
        bool isRefused = false;
    };

    void add(std::string name, std::string type, std::vector<std::uint8_t> bytes) {
        keys.push_back({std::move(name), std::move(type), std::move(bytes)});
    }

    Key& key(std::string_view name) { return *std::ranges::find(keys, name, &Key::name); }

    std::vector<Key> keys;
    std::optional<std::uint32_t> announcedCount; ///< instead of the number of keys
    std::uint32_t selected = 0;
    bool canLock = true;
    bool isLocked = false;
    bool canSelect = true;

    /// What another program does before a call of that name. Not called for the lock and the number of keys.
    std::function<void(std::string_view call)> beforeCall;

    int callCount = 0; ///< calls for which `beforeCall` runs
    int selectCount = 0;
    int dataCount = 0;
    int lockCount = 0;
    int unlockCount = 0;
    int unlockedSelectCount = 0; ///< selections made without the lock
};

/// The driver's files over a fake that outlives them.
class FakeAppleSMCRegisters final : public AppleSMCRegisters {
  public:
    explicit FakeAppleSMCRegisters(FakeAppleSMC& controller) : controller_(controller) {}

    bool lock() override {
        ++controller_.lockCount;
        if (controller_.canLock) controller_.isLocked = true;
        return controller_.canLock;
    }

    void unlock() override {
        ++controller_.unlockCount;
        controller_.isLocked = false;
    }

    std::optional<std::uint32_t> keyCount() override {
        return controller_.announcedCount.value_or(static_cast<std::uint32_t>(controller_.keys.size()));
    }

    bool select(std::uint32_t index) override {
        begin("select");
        ++controller_.selectCount;
        if (!controller_.isLocked) ++controller_.unlockedSelectCount;
        if (!controller_.canSelect || index >= controller_.keys.size()) return false;
        controller_.selected = index;
        return true;
    }

    std::optional<std::uint32_t> selectedIndex() override {
        begin("selectedIndex");
        return controller_.selected;
    }

    std::optional<std::string> keyName() override {
        begin("keyName");
        return key().name;
    }

    std::optional<std::string> typeName() override {
        begin("typeName");
        return key().type;
    }

    std::optional<std::uint32_t> dataLength() override {
        begin("dataLength");
        return static_cast<std::uint32_t>(key().bytes.size());
    }

    bool data(SMCBytes& bytes) override {
        begin("data");
        ++controller_.dataCount;
        if (key().isRefused) return false;
        const auto size = std::min(key().bytes.size(), bytes.size());
        std::copy_n(key().bytes.begin(), size, bytes.begin());
        return size > 0;
    }

  private:
    void begin(std::string_view call) {
        ++controller_.callCount;
        if (controller_.beforeCall) controller_.beforeCall(call);
    }

    [[nodiscard]] const FakeAppleSMC::Key& key() const { return controller_.keys.at(controller_.selected); }

    FakeAppleSMC& controller_;
};

} // namespace kelvinbar::fakes
