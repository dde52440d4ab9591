#include "machines/linux/sources/KernelSensorSource.h"

#include "base/NumberText.h"
#include "catalogue/SMCKeyDatabase.h"
#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/applesmc/ControllerCoverage.h"
#include "machines/linux/libsensors/ConfiguredChips.h"
#include "machines/linux/migration/FormerKeys.h"
#include "machines/linux/naming/SensorNames.h"
#include "machines/linux/naming/SensorPlaces.h"
#include "machines/linux/sources/SensorChips.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

namespace kelvinbar {

namespace {

template <typename Sensors>
auto placeOf(const Sensors& sensors, std::string_view key) {
    const auto keyOf = [](const auto& sensor) -> std::string_view { return sensor.prototype.key; };
    return std::ranges::lower_bound(sensors, key, {}, keyOf);
}

/// Appends the chip to names that the controller's own readings have.
void tellFromController(std::vector<std::vector<std::optional<SensorName>>>& names,
                        const KeySet& controllerKeys) {
    std::set<std::string> taken;
    for (const std::string& key : controllerKeys) {
        const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
        if (definition) taken.insert(definition->name);
    }
    for (auto& namesOfChip : names) {
        for (std::optional<SensorName>& name : namesOfChip) {
            if (name && taken.contains(name->name)) name->name.append(" (").append(name->type).append(")");
        }
    }
}

} // namespace

/// Builds the list of sensors and opens their files.
class KernelSensorSource::ListBuilder {
  public:
    ListBuilder(const Sensors& earlier, const SensorConfiguration* configuration, SensorFiles& files,
                std::shared_ptr<const MonotonicClock> clock)
        : earlier_(earlier), configuration_(configuration), files_(files), clock_(std::move(clock)) {}

    void add(const SensorChip& chip, const std::vector<std::optional<SensorName>>& names,
             const KeySet& controllerKeys) {
        const auto power = powerOf(chip);
        for (std::size_t index = 0; index < chip.channels.size(); ++index) {
            const SensorChannel& channel = chip.channels[index];
            if (!names[index] || isMeasuredByController(chip, channel, controllerKeys)) continue;
            if (auto place = sensorPlace(chip, channel))
                places_.emplace(names[index]->key, *std::move(place));
            append(prototypeOf(*names[index]), {}, channel, power, configured(chip, channel));
        }
    }

    void addControllerChip(const SensorChip& chip) {
        const auto power = powerOf(chip);
        for (const SensorChannel& channel : chip.channels) {
            auto key = controllerKeyOf(channel);
            if (!key) continue;
            RawReading prototype;
            prototype.key = std::move(key->key);
            append(std::move(prototype), key->type, channel, power, nullptr);
            const bool isFan = channel.kind == SensorKind::fan;
            auto name = isFan ? fanNameReading(channel) : std::nullopt;
            if (name) sensors_.push_back({*std::move(name), {}, std::nullopt});
        }
    }

    std::map<std::string, std::string> takePlaces() {
        makeUnique(places_);
        return std::move(places_);
    }

    Sensors finish() && {
        const auto keyOf = [](const Sensor& sensor) -> std::string_view { return sensor.prototype.key; };
        std::ranges::stable_sort(sensors_, {}, keyOf);
        const auto haveOneKey = [](const Sensor& left, const Sensor& right) {
            return left.prototype.key == right.prototype.key;
        };
        sensors_.erase(std::unique(sensors_.begin(), sensors_.end(), haveOneKey), sensors_.end());
        return std::move(sensors_);
    }

  private:
    static RawReading prototypeOf(const SensorName& name) {
        RawReading prototype;
        prototype.key = name.key;
        prototype.type = name.type;
        prototype.name = name.name;
        prototype.category = rawValue(name.category);
        prototype.unit = name.unit;
        return prototype;
    }

    [[nodiscard]] std::shared_ptr<const DevicePower> powerOf(const SensorChip& chip) const {
        if (chip.powerStates.empty()) return nullptr;
        return std::make_shared<DevicePower>(chip.powerStates, files_, clock_);
    }

    [[nodiscard]] std::shared_ptr<const ConfiguredValue> configured(const SensorChip& chip,
                                                                    const SensorChannel& channel) const {
        return configuration_ == nullptr ? nullptr : configuredValue(*configuration_, chip, channel);
    }

    void append(RawReading prototype, std::string_view controllerType, const SensorChannel& channel,
                const std::shared_ptr<const DevicePower>& power,
                std::shared_ptr<const ConfiguredValue> configured) {
        LiveSensor live(channel, possibleRange(channel.kind, prototype.type), files_, power, clock_);
        live.configure(std::move(configured));
        const auto earlier = placeOf(earlier_, prototype.key);
        const bool wasThere = earlier != earlier_.end() && earlier->prototype.key == prototype.key;
        live.meter(wasThere && earlier->live ? &*earlier->live : nullptr);
        sensors_.push_back({std::move(prototype), controllerType, std::move(live)});
    }

    const Sensors& earlier_;
    const SensorConfiguration* configuration_;
    SensorFiles& files_;
    std::shared_ptr<const MonotonicClock> clock_;
    Sensors sensors_;
    std::map<std::string, std::string> places_;
};

KernelSensorSource::KernelSensorSource(std::filesystem::path root,
                                       std::shared_ptr<const MonotonicClock> clock, Log& log,
                                       std::shared_ptr<SensorConfiguration> configuration)
    : root_(std::move(root)), clock_(std::move(clock)), log_(log), configuration_(std::move(configuration)) {}

SourceStatus KernelSensorSource::status() {
    const std::lock_guard lock(mutex_);
    const bool isSearchDue = !builtAt_ || clock_->now() - *builtAt_ > searchInterval;
    if (sensors_->empty() && isSearchDue) {
        rebuild(listedBefore_);
        isUnlisted_ = true;
    }
    if (sensors_->empty()) return {.isAvailable = false, .message = "No sensors"};
    return {.isAvailable = true, .message = "Sensors of the kernel"};
}

/// The first pass calls `status` and `discoverKeys` in a row, which should search once.
bool KernelSensorSource::isCurrent(const KeySet& listedBefore) const {
    constexpr std::chrono::seconds moment{1};
    return isUnlisted_ && listedBefore == listedBefore_ && clock_->now() - *builtAt_ <= moment;
}

std::vector<std::string> KernelSensorSource::discoverKeys(const KeySet& listedBefore) {
    const std::lock_guard lock(mutex_);
    if (!isCurrent(listedBefore)) rebuild(listedBefore);
    isUnlisted_ = false;
    std::vector<std::string> keys;
    keys.reserve(sensors_->size());
    for (const Sensor& sensor : *sensors_) keys.push_back(sensor.prototype.key);
    return keys;
}

void KernelSensorSource::rebuild(KeySet listedBefore) {
    const std::vector<SensorChip> chips = sensorChips(root_, configuration_.get(), log_);
    auto names = sensorNames(chips);
    listedBefore_ = std::move(listedBefore);
    controllerKeys_ = listedBefore_.empty() ? keysOfControllerChips(chips) : listedBefore_;
    tellFromController(names, controllerKeys_);
    ListBuilder builder(*sensors_, configuration_.get(), files_, clock_);
    for (std::size_t place = 0; place < chips.size(); ++place) {
        const SensorChip& chip = chips[place];
        if (chip.name != appleSMCChip) {
            builder.add(chip, names[place], controllerKeys_);
        } else if (listedBefore_.empty()) {
            builder.addControllerChip(chip);
        }
    }
    places_ = builder.takePlaces();
    sensors_ = std::make_shared<const Sensors>(std::move(builder).finish());
    builtAt_ = clock_->now();
    log_.write(LogCategory::sourceKernel, LogLevel::debug,
               [this] { return std::to_string(sensors_->size()) + " sensors found"; });
}

KeyHistory KernelSensorSource::keyHistory(bool withFormerKeys) {
    const std::lock_guard lock(mutex_);
    KeyHistory history{.places = places_, .formerKeys = std::nullopt};
    if (!withFormerKeys) return history;
    // Version 0.1 used the kernel's labels.
    const std::vector<SensorChip> chips = sensorChips(root_, nullptr, log_);
    const auto names = sensorNames(chips);
    history.formerKeys.emplace();
    for (const auto& [key, place] : formerKeys(chips, controllerKeys_)) {
        const auto& name = names[place.chip][place.channel];
        if (name) history.formerKeys->emplace(key, name->key);
    }
    return history;
}

std::vector<RawReading> KernelSensorSource::readCandidateKeys(std::span<const std::string> keys) {
    std::shared_ptr<const Sensors> sensors;
    {
        const std::lock_guard lock(mutex_);
        sensors = sensors_;
    }
    std::vector<RawReading> readings;
    readings.reserve(keys.size());
    std::vector<bool> isDone(sensors->size());
    auto next = sensors->begin(); // usually all keys, in ascending order
    for (const std::string& key : keys) {
        if (next == sensors->end() || next->prototype.key != key) next = placeOf(*sensors, key);
        if (next == sensors->end() || next->prototype.key != key) continue;
        auto done = isDone[static_cast<std::size_t>(next - sensors->begin())];
        if (!done && !read(*next, readings.emplace_back())) readings.pop_back();
        done = true;
        ++next;
    }
    return readings;
}

bool KernelSensorSource::read(const Sensor& sensor, RawReading& reading) {
    if (!sensor.live) {
        reading = sensor.prototype;
        return true;
    }
    auto sample = sensor.live->read();
    if (!sample) return false;
    if (!sensor.controllerType.empty()) return readController(sensor, *sample, reading);
    reading = sensor.prototype;
    reading.numericValue = sample->number;
    reading.value = sample->number ? plainNumberText(*sample->number) : std::move(sample->text);
    reading.raw = std::move(sample->raw);
    if (sample->isAsleep) reading.unit = "";
    return true;
}

bool KernelSensorSource::readController(const Sensor& sensor, const SensorSample& sample,
                                        RawReading& reading) {
    auto read = sample.number ? controllerReading(sensor.prototype.key, sensor.controllerType, *sample.number)
                              : std::nullopt;
    if (!read) return false;
    reading = *std::move(read);
    return true;
}

void KernelSensorSource::close() {
    const std::lock_guard lock(mutex_);
    sensors_ = std::make_shared<const Sensors>();
    builtAt_.reset();
    isUnlisted_ = false;
}

} // namespace kelvinbar
