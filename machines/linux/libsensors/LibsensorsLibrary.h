#pragma once

#include "base/Log.h"

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

/// A feature as the library knows it.
struct LibraryFeature {
    std::string name;
    std::string label;
    std::optional<int> valueNumber; ///< of the subfeature that is the feature's value; nothing without one
};

/// A chip as the library knows it.
struct LibraryChip {
    const sensors_chip_name* name = nullptr; ///< the library's; valid until it is started anew
    std::string folder;                      ///< "/sys/class/hwmon/hwmon3"
    std::vector<LibraryFeature> features;    ///< those that are not ignored
};

/// libsensors, loaded at run time. One lock serialises its calls. Any thread.
class LibsensorsLibrary {
  public:
    /// Null when the library or one of its functions is missing; `reason` then says what.
    static std::shared_ptr<LibsensorsLibrary> load(const std::filesystem::path& path, std::string& reason);

    LibsensorsLibrary(const LibsensorsLibrary&) = delete;
    LibsensorsLibrary& operator=(const LibsensorsLibrary&) = delete;
    ~LibsensorsLibrary();

    /// Has the library read its configuration and look for chips, anew if it did before. Errors in the
    /// configuration go to the log. Nothing on success, else what the library says.
    [[nodiscard]] std::optional<std::string> start(Log& log);

    /// How often the library was started: what it returned before the last start is no longer valid.
    [[nodiscard]] std::uint64_t generation() const;

    /// All chips it found; none before it started.
    [[nodiscard]] std::vector<LibraryChip> chips() const;

    /// The value of a subfeature. Nothing when it cannot be read, or after a start later than `generation`.
    [[nodiscard]] std::optional<double> value(std::uint64_t generation, const sensors_chip_name* chip,
                                              int number) const;

    /// "3.6.0"; empty when the library does not tell.
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

    explicit LibsensorsLibrary(Handle handle) : handle_(std::move(handle)) {}

    [[nodiscard]] const char* missingFunction();
    [[nodiscard]] std::string errorText(int error) const;
    [[nodiscard]] std::vector<LibraryFeature> featuresOf(const sensors_chip_name& chip) const;
    [[nodiscard]] std::string labelOf(const sensors_chip_name& chip, const sensors_feature& feature) const;
    [[nodiscard]] std::optional<int> valueNumber(const sensors_chip_name& chip,
                                                 const sensors_feature& feature) const;

    Handle handle_;
    Functions functions_;
    mutable std::mutex mutex_; ///< guards what follows, and the library
    bool isStarted_ = false;
    std::uint64_t generation_ = 0;
};

} // namespace kelvinbar
