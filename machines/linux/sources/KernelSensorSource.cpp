#include "machines/linux/sources/KernelSensorSource.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/applesmc/ControllerCoverage.h"
#include "machines/linux/libsensors/ConfiguredChips.h"
#include "machines/linux/migration/FormerKeys.h"
#include "machines/linux/naming/LeftOut.h"
#include "machines/linux/naming/SensorNames.h"
#include "machines/linux/naming/SensorPlaces.h"
#include "machines/linux/sources/SensorChips.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
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

/// Whether `silent` is the device or the folder of its class, whose name ends with a slash.
bool isDeviceOrItsClass(std::string_view silent, std::string_view device) {
    return silent == device || (silent.ends_with('/') && device.starts_with(silent));
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

/// Sorts channels by the kernel's class of their device.
class ReportBuilder {
  public:
    void add(LeftOutChannel channel) {
        SourceReport& report = reportOn(channel.device);
        report.leftOut.push_back(std::move(channel));
    }

    void addReading(const std::string& device) { ++reportOn(device).readings; }

    /// `configuration` is that of the hardware monitors.
    std::vector<SourceReport> finish(ConfigurationReport configuration) && {
        std::vector<SourceReport> reports;
        for (Class& each : classes_) {
            each.report.devices = each.devices.size();
            reports.push_back(std::move(each.report));
        }
        reports.back().configuration = std::move(configuration);
        return reports;
    }

  private:
    struct Class {
        std::string_view folder;
        SourceReport report;
        std::set<std::string> devices{};
    };

    SourceReport& reportOn(const std::string& device) {
        const auto folder = [&](const Class& each) { return contains(device, each.folder); };
        Class& found = *std::ranges::find_if(classes_, folder);
        found.devices.insert(device);
        return found.report;
    }

    static SourceReport named(std::string name) { return {.name = std::move(name)}; }

    /// The last takes what no other does.
    std::array<Class, 3> classes_{{{"/class/power_supply/", named("batteries and chargers")},
                                   {"/class/powercap/", named("energy counters")},
                                   {"", named("hardware monitors")}}};
};

} // namespace

/// Builds the list of sensors and opens their files.
class KernelSensorSource::ListBuilder {
  public:
    /// `leftOut` may be null.
    ListBuilder(const Listing& earlier, SensorFiles& files, std::shared_ptr<const MonotonicClock> clock,
                LeftOutChannels* leftOut)
        : earlier_(earlier), files_(files), clock_(std::move(clock)), leftOut_(leftOut) {}

    void add(const SensorChip& chip, const std::vector<std::optional<SensorName>>& names,
             const ConfiguredChannels& configured, const KeySet& controllerKeys) {
        const auto power = powerOf(chip);
        for (std::size_t index = 0; index < chip.channels.size(); ++index) {
            const SensorChannel& channel = chip.channels[index];
            if (!names[index]) continue;
            if (isMeasuredByController(chip, channel, controllerKeys)) {
                leaveOut(leftOut_, chip, channel, LeftOutReason::repeated);
                continue;
            }
            if (auto place = sensorPlace(chip, channel))
                places_.emplace(names[index]->key, *std::move(place));
            append(chip, prototypeOf(*names[index]), {}, channel, power, configured[index]);
        }
    }

    void addControllerChip(const SensorChip& chip) {
        const auto power = powerOf(chip);
        for (const SensorChannel& channel : chip.channels) {
            auto key = controllerKeyOf(channel);
            if (!key) continue;
            RawReading prototype;
            prototype.key = std::move(key->key);
            append(chip, std::move(prototype), key->type, channel, power, nullptr);
            const bool isFan = channel.kind == SensorKind::fan;
            auto name = isFan ? fanNameReading(channel) : std::nullopt;
            if (name) sensors_.push_back({chip.entry.native(), *std::move(name), {}, std::nullopt});
        }
    }

    /// Adds what the earlier list holds of devices that could not be searched.
    void keep(const std::vector<SilentDevice>& silent) {
        for (const Sensor& sensor : *earlier_.sensors) {
            const auto isSilent = [&](const SilentDevice& each) {
                return isDeviceOrItsClass(each.device, sensor.device);
            };
            if (std::ranges::none_of(silent, isSilent)) continue;
            sensors_.push_back(sensor);
            const auto place = earlier_.places.find(sensor.prototype.key);
            if (place != earlier_.places.end()) places_.insert(*place);
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

    void append(const SensorChip& chip, RawReading prototype, std::string_view controllerType,
                const SensorChannel& channel, const std::shared_ptr<const DevicePower>& power,
                std::shared_ptr<const ConfiguredValue> configured) {
        LiveSensor live(channel, possibleRange(channel.kind, prototype.type), files_, power, clock_);
        live.configure(std::move(configured));
        const auto earlier = placeOf(*earlier_.sensors, prototype.key);
        const bool wasThere = earlier != earlier_.sensors->end() && earlier->prototype.key == prototype.key;
        live.meter(wasThere && earlier->live ? &*earlier->live : nullptr);
        sensors_.push_back({chip.entry.native(), std::move(prototype), controllerType, std::move(live)});
    }

    const Listing& earlier_;
    SensorFiles& files_;
    std::shared_ptr<const MonotonicClock> clock_;
    LeftOutChannels* leftOut_;
    Sensors sensors_;
    std::map<std::string, std::string> places_;
};

KernelSensorSource::KernelSensorSource(std::filesystem::path root,
                                       std::shared_ptr<const MonotonicClock> clock, Log& log,
                                       std::shared_ptr<SensorConfiguration> configuration)
    : root_(std::move(root)), clock_(std::move(clock)), log_(log), configuration_(std::move(configuration)) {}

KernelSensorSource::Listing KernelSensorSource::listing() const {
    const std::lock_guard lock(mutex_);
    return listing_;
}

SourceStatus KernelSensorSource::status() {
    const auto sensors = [this] {
        const std::lock_guard lock(mutex_);
        return listing_.sensors;
    };
    if (sensors()->empty()) searchIfDue();
    if (sensors()->empty()) return {.isAvailable = false, .message = "No sensors"};
    return {.isAvailable = true, .message = "Sensors of the kernel"};
}

void KernelSensorSource::searchIfDue() {
    const Listing last = listing();
    if (!last.builtAt || clock_->now() - *last.builtAt > searchInterval) search(last.listedBefore, true);
}

/// The first pass calls `status` and `discoverKeys` in a row, which should search once.
bool KernelSensorSource::isCurrent(const Listing& listing, const KeySet& listedBefore,
                                   std::chrono::nanoseconds now) {
    constexpr std::chrono::seconds moment{1};
    return listing.isUnlisted && listedBefore == listing.listedBefore && now - *listing.builtAt <= moment;
}

std::vector<std::string> KernelSensorSource::discoverKeys(const KeySet& listedBefore) {
    if (!isCurrent(listing(), listedBefore, clock_->now())) search(listedBefore, false);
    const std::lock_guard lock(mutex_);
    listing_.isUnlisted = false;
    std::vector<std::string> keys;
    keys.reserve(listing_.sensors->size());
    for (const Sensor& sensor : *listing_.sensors) keys.push_back(sensor.prototype.key);
    return keys;
}

/// By chip and channel.
std::vector<KernelSensorSource::ConfiguredChannels>
KernelSensorSource::configuredChannels(const std::vector<SensorChip>& chips) const {
    std::vector<ConfiguredChannels> configured;
    configured.reserve(chips.size());
    for (const SensorChip& chip : chips) configured.emplace_back(chip.channels.size());
    if (configuration_ == nullptr) return configured;
    const DeviceVisit visit(configurationName, LogCategory::sourceKernel);
    if (!visit.isAllowed()) return configured;
    for (std::size_t place = 0; place < chips.size(); ++place) {
        std::ranges::transform(chips[place].channels, configured[place].begin(),
                               [&](const SensorChannel& channel) {
                                   return configuredValue(*configuration_, chips[place], channel);
                               });
    }
    return configured;
}

KernelSensorSource::Listing KernelSensorSource::currentListing(const KeySet& listedBefore,
                                                               LeftOutChannels* leftOut) {
    const Listing earlier = listing();
    const std::vector<SensorChip> chips = sensorChips(root_, configuration_.get(), log_, leftOut);
    auto names = sensorNames(chips, leftOut);
    const auto configured = configuredChannels(chips);
    Listing found;
    found.listedBefore = listedBefore;
    found.controllerKeys = listedBefore.empty() ? keysOfControllerChips(chips) : listedBefore;
    tellFromController(names, found.controllerKeys);
    ListBuilder builder(earlier, files_, clock_, leftOut);
    for (std::size_t place = 0; place < chips.size(); ++place) {
        const SensorChip& chip = chips[place];
        const DeviceVisit visit(chip.entry.native(), LogCategory::sourceKernel);
        if (!visit.isAllowed()) continue;
        if (chip.name != appleSMCChip) {
            builder.add(chip, names[place], configured[place], found.controllerKeys);
        } else if (listedBefore.empty()) {
            builder.addControllerChip(chip);
        }
    }
    const WatchedPass* const pass = WatchedPass::current();
    if (pass != nullptr) builder.keep(pass->silentDevices());
    found.places = builder.takePlaces();
    found.sensors = std::make_shared<const Sensors>(std::move(builder).finish());
    found.builtAt = clock_->now();
    return found;
}

/// Searches without the lock, which a chip that does not answer would hold for ever. The result of an
/// abandoned pass is dropped: the pass after it has searched since.
void KernelSensorSource::search(const KeySet& listedBefore, bool isUnlisted) {
    Listing next = currentListing(listedBefore, nullptr);
    next.isUnlisted = isUnlisted;
    log_.write(LogCategory::sourceKernel, LogLevel::debug,
               [&] { return std::to_string(next.sensors->size()) + " sensors found"; });
    const WatchedPass* const pass = WatchedPass::current();
    if (pass != nullptr && pass->isAbandoned()) return;
    const std::lock_guard lock(mutex_);
    listing_ = std::move(next);
}

KeyHistory KernelSensorSource::keyHistory(bool withFormerKeys) {
    const Listing last = listing();
    KeyHistory history{.places = last.places, .formerKeys = std::nullopt};
    if (!withFormerKeys) return history;
    // Version 0.1 used the kernel's labels.
    const std::vector<SensorChip> chips = sensorChips(root_, nullptr, log_);
    const auto names = sensorNames(chips);
    history.formerKeys.emplace();
    for (const auto& [key, place] : formerKeys(chips, last.controllerKeys)) {
        const auto& name = names[place.chip][place.channel];
        if (name) history.formerKeys->emplace(key, name->key);
    }
    return history;
}

std::vector<RawReading> KernelSensorSource::readCandidateKeys(std::span<const std::string> keys) {
    std::shared_ptr<const Sensors> sensors;
    {
        const std::lock_guard lock(mutex_);
        sensors = listing_.sensors;
    }
    std::vector<RawReading> readings;
    readings.reserve(keys.size());
    std::vector<bool> isDone(sensors->size());
    auto next = sensors->begin(); // usually all keys, in ascending order
    std::string_view device;
    std::optional<DeviceVisit> visit;
    for (const std::string& key : keys) {
        if (next == sensors->end() || next->prototype.key != key) next = placeOf(*sensors, key);
        if (next == sensors->end() || next->prototype.key != key) continue;
        auto done = isDone[static_cast<std::size_t>(next - sensors->begin())];
        if (std::exchange(device, next->device) != next->device) {
            visit.emplace(next->device, LogCategory::sourceKernel);
        }
        if (!done && !read(*next, visit->isAllowed(), readings.emplace_back())) readings.pop_back();
        done = true;
        ++next;
    }
    return readings;
}

bool KernelSensorSource::read(const Sensor& sensor, bool isAllowed, RawReading& reading) {
    if (!isAllowed) {
        reading = unansweredReading(sensor.prototype);
        return true;
    }
    if (!sensor.live) {
        reading = sensor.prototype;
        return true;
    }
    auto sample = sensor.live->read();
    if (!sample) return false;
    if (sample->isSilent) {
        reading = unansweredReading(sensor.prototype);
        return true;
    }
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

/// No value for a sensor with a value.
std::optional<LeftOutReason> KernelSensorSource::reasonAgainst(const Sensor& sensor, bool isAllowed) {
    if (!isAllowed) return LeftOutReason::silent;
    if (!sensor.live) return std::nullopt;
    auto reason = LeftOutReason::unreadable;
    const auto sample = sensor.live->read(reason);
    if (!sample) return reason;
    if (sample->isSilent) return LeftOutReason::silent;
    return sample->isAsleep ? std::optional(LeftOutReason::asleep) : std::nullopt;
}

std::vector<SourceReport> KernelSensorSource::report() {
    ReportBuilder builder;
    LeftOutChannels leftOut;
    const Listing now = currentListing(listing().listedBefore, &leftOut);
    for (LeftOutChannel& channel : leftOut) builder.add(std::move(channel));
    for (const Sensor& sensor : *now.sensors) {
        const DeviceVisit visit(sensor.device, LogCategory::sourceKernel);
        if (auto reason = reasonAgainst(sensor, visit.isAllowed())) {
            builder.add({sensor.device, sensor.prototype.key, *reason});
        } else {
            builder.addReading(sensor.device);
        }
    }
    return std::move(builder).finish(configuration_ == nullptr ? ConfigurationReport()
                                                               : configuration_->report());
}

void KernelSensorSource::close() {
    auto sensors = std::make_shared<const Sensors>();
    const std::lock_guard lock(mutex_);
    listing_.sensors.swap(sensors); // whose files are closed after the lock
    listing_.builtAt.reset();
    listing_.isUnlisted = false;
}

} // namespace kelvinbar
