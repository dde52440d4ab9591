#pragma once

#include "base/Clock.h"
#include "machines/linux/files/OnceLog.h"
#include "machines/linux/naming/KeyAssignment.h"
#include "machines/linux/sources/LiveSensor.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// A key with the sensor behind it.
struct SensorKey {
    std::uint32_t code = 0;
    std::uint32_t typeCode = 0; ///< the packed name of `type`
    const SensorType* type = nullptr;
    LiveSensor sensor;
};

/// A chip as the registry shows it.
struct RegistryChip {
    std::string_view className;
    std::string name;
    std::string device;
    std::vector<std::pair<std::string, LiveSensor>> fans; ///< by label
};

/// The sensors of a moment, their files open.
struct SensorInventoryList {
    std::vector<SensorKey> keys; ///< in ascending order of key
    std::unordered_map<std::uint32_t, std::size_t> places;
    std::vector<RegistryChip> chips;

    [[nodiscard]] const SensorKey* find(std::uint32_t code) const;
    [[nodiscard]] bool isEmpty() const;
};

/// All sensors that the kernel publishes, for the emulated controller and the registry alike. Callable from
/// any thread.
class SensorInventory {
  public:
    /// `root` is the directory that holds sys/.
    SensorInventory(std::filesystem::path root, std::shared_ptr<const MonotonicClock> clock,
                    OnceLog::Sink log);

    /// The last list, or the first one; never null.
    [[nodiscard]] std::shared_ptr<const SensorInventoryList> current();

    /// How long ago the last list was made.
    [[nodiscard]] std::chrono::nanoseconds age() const;

    /// Looks for sensors anew. With `controllerKeys` of a real controller, its own chip is left out and so is
    /// what it tells itself; without, they are empty.
    void rebuild(const KeyAssignment::KeySet& controllerKeys);

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    void say(const std::string& message);

  private:
    void build(const KeyAssignment::KeySet& controllerKeys);
    std::vector<SensorChip> chips(bool hasController);

    const std::filesystem::path root_;
    const std::shared_ptr<const MonotonicClock> clock_;
    mutable std::mutex mutex_; ///< guards what follows
    OnceLog log_;
    KeyAssignment assignment_;
    std::shared_ptr<const SensorInventoryList> current_; ///< null before the first one
    std::chrono::nanoseconds builtAt_{0};
};

} // namespace kelvinbar
