#include "machines/linux/libsensors/LibsensorsLibrary.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <dlfcn.h>
#include <sensors/error.h>
#include <utility>

namespace kelvinbar {

namespace {

/// The subfeature with the value of a feature. If a feature has two of them, the first row wins.
struct ValueRow {
    sensors_feature_type feature;
    sensors_subfeature_type value;
};

constexpr std::array valueRows{
    ValueRow{SENSORS_FEATURE_IN, SENSORS_SUBFEATURE_IN_INPUT},
    ValueRow{SENSORS_FEATURE_FAN, SENSORS_SUBFEATURE_FAN_INPUT},
    ValueRow{SENSORS_FEATURE_TEMP, SENSORS_SUBFEATURE_TEMP_INPUT},
    ValueRow{SENSORS_FEATURE_POWER, SENSORS_SUBFEATURE_POWER_INPUT},
    ValueRow{SENSORS_FEATURE_POWER, SENSORS_SUBFEATURE_POWER_AVERAGE},
    ValueRow{SENSORS_FEATURE_ENERGY, SENSORS_SUBFEATURE_ENERGY_INPUT},
    ValueRow{SENSORS_FEATURE_CURR, SENSORS_SUBFEATURE_CURR_INPUT},
    ValueRow{SENSORS_FEATURE_HUMIDITY, SENSORS_SUBFEATURE_HUMIDITY_INPUT},
};

template <typename Symbol>
bool find(void* library, const char* name, Symbol& symbol) {
    symbol = reinterpret_cast<Symbol>(::dlsym(library, name));
    return symbol != nullptr;
}

/// Where this thread's call of `start` notes errors: the library's error handler has no user data.
thread_local std::vector<std::string>* errorsOfStart = nullptr;

void noteParseError(const char* error, const char* file, int line) {
    if (errorsOfStart == nullptr) return;
    std::string text;
    if (file != nullptr) text.append(file).append(":");
    if (line > 0) text.append(std::to_string(line)).append(":");
    text.append(text.empty() ? "" : " ").append(error != nullptr ? error : "error");
    errorsOfStart->push_back(std::move(text));
}

/// Redirects the library's errors from standard error to a list while it exists.
class ParseErrors {
  public:
    ParseErrors(void* library, std::vector<std::string>& errors) {
        errorsOfStart = &errors;
        if (find(library, "sensors_parse_error_wfn", handler_)) {
            earlier_ = std::exchange(*handler_, &noteParseError);
        }
    }

    ParseErrors(const ParseErrors&) = delete;
    ParseErrors& operator=(const ParseErrors&) = delete;

    ~ParseErrors() {
        if (handler_ != nullptr) *handler_ = earlier_;
        errorsOfStart = nullptr;
    }

  private:
    decltype(&sensors_parse_error_wfn) handler_ = nullptr;
    decltype(sensors_parse_error_wfn) earlier_ = nullptr;
};

} // namespace

std::shared_ptr<LibsensorsLibrary> LibsensorsLibrary::load(const std::filesystem::path& path,
                                                           std::string& reason) {
    Handle handle(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL), &::dlclose);
    if (handle == nullptr) {
        const char* const error = ::dlerror(); // NOLINT(concurrency-mt-unsafe): the C library's is per thread
        reason = error != nullptr ? error : "it cannot be loaded";
        return nullptr;
    }
    std::shared_ptr<LibsensorsLibrary> library(new LibsensorsLibrary(std::move(handle)));
    const char* const missing = library->missingFunction();
    if (missing == nullptr) return library;
    reason = std::string(missing).append(" is missing");
    return nullptr;
}

const char* LibsensorsLibrary::missingFunction() {
    void* const library = handle_.get();
    if (!find(library, "sensors_init", functions_.init)) return "sensors_init";
    if (!find(library, "sensors_cleanup", functions_.cleanup)) return "sensors_cleanup";
    if (!find(library, "sensors_get_detected_chips", functions_.getDetectedChips)) {
        return "sensors_get_detected_chips";
    }
    if (!find(library, "sensors_get_features", functions_.getFeatures)) return "sensors_get_features";
    if (!find(library, "sensors_get_subfeature", functions_.getSubfeature)) return "sensors_get_subfeature";
    if (!find(library, "sensors_get_label", functions_.getLabel)) return "sensors_get_label";
    if (!find(library, "sensors_get_value", functions_.getValue)) return "sensors_get_value";
    return nullptr;
}

LibsensorsLibrary::~LibsensorsLibrary() {
    if (isStarted_) functions_.cleanup();
}

std::optional<std::string> LibsensorsLibrary::start(std::vector<std::string>& parseErrors) {
    const auto lock = locked();
    if (!lock) return "one of its chips does not answer";
    if (std::exchange(isStarted_, false)) functions_.cleanup();
    ++generation_;
    const ParseErrors redirected(handle_.get(), parseErrors);
    const int error = functions_.init(nullptr);
    isStarted_ = error == 0; // on failure the library cleans up itself
    return isStarted_ ? std::nullopt : std::optional(errorText(error));
}

std::string LibsensorsLibrary::errorText(int error) const {
    decltype(&sensors_strerror) text = nullptr;
    if (!find(handle_.get(), "sensors_strerror", text)) return "error " + std::to_string(error);
    const char* const found = text(error);
    return found != nullptr ? found : "error " + std::to_string(error);
}

LibsensorsLibrary::Lock LibsensorsLibrary::locked() const {
    constexpr std::chrono::milliseconds patience{1000};
    Lock lock(mutex_, isBlocked_ ? std::chrono::milliseconds(0) : patience);
    isBlocked_ = !lock.owns_lock();
    return lock;
}

std::vector<LibraryChip> LibsensorsLibrary::chips() const {
    const auto lock = locked();
    std::vector<LibraryChip> chips;
    if (!lock || !isStarted_) return chips;
    int next = 0;
    while (const sensors_chip_name* const chip = functions_.getDetectedChips(nullptr, &next)) {
        chips.push_back({chip, chip->path != nullptr ? chip->path : "", featuresOf(*chip)});
    }
    return chips;
}

std::vector<LibraryFeature> LibsensorsLibrary::featuresOf(const sensors_chip_name& chip) const {
    std::vector<LibraryFeature> features;
    int next = 0;
    while (const sensors_feature* const feature = functions_.getFeatures(&chip, &next)) {
        features.push_back({feature->name, labelOf(chip, *feature), valueNumber(chip, *feature)});
    }
    return features;
}

std::string LibsensorsLibrary::labelOf(const sensors_chip_name& chip, const sensors_feature& feature) const {
    const std::unique_ptr<char, void (*)(void*)> label(functions_.getLabel(&chip, &feature), &std::free);
    return label != nullptr ? label.get() : "";
}

std::optional<int> LibsensorsLibrary::valueNumber(const sensors_chip_name& chip,
                                                  const sensors_feature& feature) const {
    for (const ValueRow& row : valueRows) {
        if (row.feature != feature.type) continue;
        const sensors_subfeature* const value = functions_.getSubfeature(&chip, &feature, row.value);
        if (value != nullptr) return value->number;
    }
    return std::nullopt;
}

std::optional<double> LibsensorsLibrary::value(std::uint64_t generation, const sensors_chip_name* chip,
                                               int number) const {
    const auto lock = locked();
    if (!lock || !isStarted_ || generation != generation_) return std::nullopt;
    double value = 0;
    const bool isRead = functions_.getValue(chip, number, &value) == 0;
    return isRead && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string LibsensorsLibrary::version() const {
    const char* const* version = nullptr;
    if (!find(handle_.get(), "libsensors_version", version) || *version == nullptr) return {};
    return *version;
}

} // namespace kelvinbar
