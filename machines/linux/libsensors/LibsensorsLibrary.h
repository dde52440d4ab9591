#pragma once

#include "machines/linux/libsensors/CallLock.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <sensors/sensors.h>
#include <string>
#include <vector>

namespace kelvinbar {

/// A feature in the library's view.
struct LibraryFeature {
    std::string name;
    std::string label;
    std::optional<int> valueNumber; ///< of the subfeature with the value; empty without one
};

/// A chip in the library's view.
struct LibraryChip {
    const sensors_chip_name* name = nullptr; ///< owned by the library; valid until its next start
    std::string folder;                      ///< "/sys/class/hwmon/hwmon3"
    std::vector<LibraryFeature> features;    ///< without ignored ones
};

/// libsensors, loaded at run time, so that it is no dependency of the program. One lock serialises its calls:
/// when a chip does not answer, the other chips cannot be read through the library either. Calls then fail at
/// once when the chip has been set aside, else after the first has waited a second. Pointers that the library
/// returned dangle after its next start; `generation` guards against their use. Any thread.
class LibsensorsLibrary {
  public:
    /// Loads the library. Null when it or one of its functions is missing; `reason` then holds the message.
    static std::shared_ptr<LibsensorsLibrary> load(const std::filesystem::path& path, std::string& reason);

    LibsensorsLibrary(const LibsensorsLibrary&) = delete;
    LibsensorsLibrary& operator=(const LibsensorsLibrary&) = delete;
    ~LibsensorsLibrary();

    /// Makes the library read its configuration and detect chips; restarts it if it is running. Errors in the
    /// configuration are added to `parseErrors`, with file and line. Nothing on success, else the library's
    /// error message.
    [[nodiscard]] std::optional<std::string> start(std::vector<std::string>& parseErrors);

    /// The number of starts. Results from before the last start are no longer valid.
    [[nodiscard]] std::uint64_t generation() const { return generation_; }

    /// Whether a call does not come back. Waits up to a second to find out.
    [[nodiscard]] bool isBlocked() const { return !locked(); }

    /// Whether the last call failed because another does not come back.
    [[nodiscard]] bool isSilent() const { return isBlocked_; }

    /// All detected chips; empty before the first start.
    [[nodiscard]] std::vector<LibraryChip> chips() const;

    /// The value of a subfeature, in volts, °C and so on. Nothing when it cannot be read, when it is not
    /// finite, and when the library was started again after `generation`.
    [[nodiscard]] std::optional<double> value(std::uint64_t generation, const sensors_chip_name* chip,
                                              int number) const;

    /// "3.6.0"; empty when the library does not export it.
    [[nodiscard]] std::string version() const;

  private:
    struct Functions {
        decltype(&sensors_init) init = nullptr;
        decltype(&sensors_cleanup) cleanup = nullptr;
        decltype(&sensors_get_detected_chips) getDetectedChips = nullptr;
        decltype(&sensors_get_features) getFeatures = nullptr;
        decltype(&sensors_get_subfeature) getSubfeature = nullptr;
        decltype(&sensors_get_label) getLabel = nullptr;
        decltype(&sensors_get_value) getValue = nullptr;
    };

    using Handle = std::unique_ptr<void, int (*)(void*)>;

    using Lock = std::unique_lock<CallLock>;

    /// Not locked if another call does not come back.
    [[nodiscard]] Lock locked() const;

    explicit LibsensorsLibrary(Handle handle) : handle_(std::move(handle)) {}

    /// Looks up all functions. The name of the first one that is missing; null if all are present.
    [[nodiscard]] const char* missingFunction();
    [[nodiscard]] std::string errorText(int error) const;
    [[nodiscard]] std::vector<LibraryFeature> featuresOf(const sensors_chip_name& chip) const;
    [[nodiscard]] std::string labelOf(const sensors_chip_name& chip, const sensors_feature& feature) const;
    [[nodiscard]] std::optional<int> valueNumber(const sensors_chip_name& chip,
                                                 const sensors_feature& feature) const;

    Handle handle_;
    Functions functions_;
    mutable CallLock mutex_; ///< guards `isStarted_` and all calls
    bool isStarted_ = false;
    std::atomic<std::uint64_t> generation_ = 0;
    mutable std::atomic<bool> isBlocked_ = false; ///< the last attempt to lock failed
};

} // namespace kelvinbar
