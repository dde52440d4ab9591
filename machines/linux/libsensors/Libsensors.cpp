#include "machines/linux/libsensors/Libsensors.h"

#include "machines/linux/libsensors/ConfigurationFiles.h"
#include "machines/linux/libsensors/LibsensorsLibrary.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// A value that is read and computed by the library.
class LibraryValue final : public ComputedValue {
  public:
    LibraryValue(std::shared_ptr<const LibsensorsLibrary> library, const sensors_chip_name* chip, int number)
        : library_(std::move(library)), generation_(library_->generation()), chip_(chip), number_(number) {}

    [[nodiscard]] std::optional<double> read() const override {
        return library_->value(generation_, chip_, number_);
    }

    [[nodiscard]] bool isSilent() const override { return library_->isSilent(); }

  private:
    std::shared_ptr<const LibsensorsLibrary> library_;
    std::uint64_t generation_;
    const sensors_chip_name* chip_;
    int number_;
};

/// Changes when chips or their features come or go.
std::string stampOf(const std::vector<SensorChip>& chips) {
    std::string stamp;
    for (const SensorChip& chip : chips) {
        stamp.append(chip.folder.native()).append(" ").append(chip.sensorsName);
        for (const SensorChannel& channel : chip.channels) stamp.append(" ").append(channel.feature);
        stamp.append("\n");
    }
    return stamp;
}

std::string listText(const std::vector<fs::path>& files) {
    std::string text;
    for (const fs::path& file : files) text.append(text.empty() ? "" : ", ").append(file.native());
    return text.empty() ? "no configuration" : text;
}

class LibsensorsConfiguration final : public SensorConfiguration {
  public:
    LibsensorsConfiguration(Log& log, LibsensorsPlace place) : log_(log), place_(std::move(place)) {}

    void refresh(const std::vector<SensorChip>& chips) override {
        if (!isLoaded()) return;
        const auto files = configurationFiles(place_.configuration);
        std::string stamp = kelvinbar::stampOf(files).append(stampOf(chips));
        if (stamp == stamp_ || library_->isBlocked()) return;
        stamp_ = std::move(stamp);
        start(files);
    }

    [[nodiscard]] const ConfiguredChip* find(const SensorChip& chip) const override {
        const auto found = chips_.find(chip.folder.native());
        return found == chips_.end() ? nullptr : &found->second;
    }

    [[nodiscard]] ConfigurationReport report() const override { return report_; }

  private:
    bool isLoaded() {
        if (library_ != nullptr || isMissing_) return library_ != nullptr;
        std::string reason;
        library_ = LibsensorsLibrary::load(place_.sharedObject, reason);
        isMissing_ = library_ == nullptr;
        if (isMissing_) refuse(reason);
        return !isMissing_;
    }

    void start(const std::vector<fs::path>& files) {
        chips_.clear();
        report_ = {};
        const auto error = library_->start(report_.errors);
        for (const std::string& line : report_.errors) {
            log_.write(LogCategory::sourceKernel, LogLevel::warning, [&] { return "libsensors: " + line; });
        }
        if (error) {
            refuse(*error);
            return;
        }
        const std::string version = library_->version();
        describe(std::string("libsensors ")
                     .append(version)
                     .append(version.empty() ? "" : " ")
                     .append("is used with ")
                     .append(listText(files)));
        for (const LibraryChip& chip : library_->chips()) chips_[chip.folder] = configured(chip);
    }

    [[nodiscard]] ConfiguredChip configured(const LibraryChip& chip) const {
        ConfiguredChip configured;
        for (const LibraryFeature& feature : chip.features) {
            std::shared_ptr<const ConfiguredValue> value;
            if (feature.valueNumber) {
                value = std::make_shared<const ConfiguredValue>(
                    std::make_unique<LibraryValue>(library_, chip.name, *feature.valueNumber));
            }
            configured[feature.name] = {feature.label, std::move(value)};
        }
        return configured;
    }

    void refuse(const std::string& reason) {
        report_.isUsed = false;
        report_.hasFiles = !configurationFiles(place_.configuration).empty();
        describe("libsensors is not used: " + reason);
    }

    void describe(std::string text) {
        report_.description = std::move(text);
        log_.write(LogCategory::sourceKernel, LogLevel::info, [&] { return report_.description; });
    }

    Log& log_;
    const LibsensorsPlace place_;
    bool isMissing_ = false;
    std::shared_ptr<LibsensorsLibrary> library_; ///< null until it is loaded
    ConfigurationReport report_;
    std::string stamp_;                                     ///< of the files and chips at the last start
    std::unordered_map<std::string, ConfiguredChip> chips_; ///< by folder
};

} // namespace

std::shared_ptr<SensorConfiguration> libsensorsConfiguration(Log& log, const LibsensorsPlace& place) {
    return std::make_shared<LibsensorsConfiguration>(log, place);
}

} // namespace kelvinbar
