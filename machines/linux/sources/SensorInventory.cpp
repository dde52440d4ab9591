#include "machines/linux/sources/SensorInventory.h"

#include "machines/linux/sources/HwmonChips.h"
#include "machines/linux/sources/HybridCores.h"
#include "machines/linux/sources/PowerSupplies.h"
#include "machines/linux/sources/ProcessorPower.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvinbar {

namespace {

/// Drops what the class of hardware monitors repeats of a supply that tells it itself.
void dropRepeatedSupplies(std::vector<SensorChip>& chips, const std::vector<SensorChip>& supplies) {
    for (const SensorChip& supply : supplies) {
        const std::string name = hwmonNameOfSupply(supply);
        for (SensorChip& chip : chips) {
            if (chip.name != name) continue;
            std::erase_if(chip.channels, [&](const SensorChannel& channel) {
                return std::ranges::find(supply.channels, channel.kind, &SensorChannel::kind) !=
                       supply.channels.end();
            });
        }
    }
}

/// Counters that only the administrator can read are no channels of an ordinary user.
void dropUnreadableCounters(std::vector<SensorChip>& chips, OnceLog& log) {
    std::size_t unreadable = 0;
    for (SensorChip& chip : chips) {
        unreadable += std::erase_if(chip.channels, [](const SensorChannel& channel) {
            return channel.kind == SensorKind::energy && !SensorFile(channel.file).isOpen();
        });
    }
    if (unreadable > 0) {
        log.say("energy counters are left out: the kernel shows them to the administrator only");
    }
}

void sayWhatIsUnplaced(const std::vector<SensorChip>& chips, const KeyPlan& plan, OnceLog& log) {
    if (plan.unplaced.empty()) return;
    const ChannelPlace& first = plan.unplaced.front();
    const SensorChip& chip = chips[first.chip];
    std::string message = std::to_string(plan.unplaced.size());
    message.append(plan.unplaced.size() == 1 ? " channel has" : " channels have");
    message.append(" no key and no reading: ").append(chip.channels[first.channel].label);
    message.append(" of ").append(chip.name.empty() ? "a chip without a name" : chip.name);
    if (plan.unplaced.size() > 1) message.append(" and others");
    log.say(message);
}

/// Opens the files of a plan.
class ListBuilder {
  public:
    ListBuilder(const std::vector<SensorChip>& chips, const SensorInventoryList& earlier,
                std::shared_ptr<const MonotonicClock> clock)
        : chips_(chips), earlier_(earlier), clock_(std::move(clock)) {
        for (const SensorChip& chip : chips) powers_.push_back(powerOf(chip));
    }

    std::shared_ptr<const SensorInventoryList> build(const KeyPlan& plan) {
        auto list = std::make_shared<SensorInventoryList>();
        list->keys.reserve(plan.keys.size());
        for (const AssignedKey& assigned : plan.keys) appendKey(*list, assigned);
        for (const SensorChip& chip : chips_) {
            list->chips.push_back({plainRegistryClass, entryName(chip, list->chips.size()), chip.device, {}});
        }
        for (const RegistryFanPlace& fan : plan.registryFans) {
            RegistryChip& chip = list->chips[fan.place.chip];
            chip.className = fan.className;
            chip.fans.emplace_back(channelAt(fan.place).label, sensorAt(fan.place));
        }
        return list;
    }

  private:
    /// Of its own, since the walk takes fans of one name, entry and speed for one; short, since the walk
    /// reads no more than 127 characters of it.
    static std::string entryName(const SensorChip& chip, std::size_t place) {
        return std::string(chip.name).append("@").append(std::to_string(place));
    }

    [[nodiscard]] std::shared_ptr<const DevicePower> powerOf(const SensorChip& chip) const {
        if (chip.powerStates.empty()) return nullptr;
        return std::make_shared<DevicePower>(chip.powerStates, clock_);
    }

    [[nodiscard]] const SensorChannel& channelAt(ChannelPlace place) const {
        return chips_[place.chip].channels[place.channel];
    }

    [[nodiscard]] LiveSensor sensorAt(ChannelPlace place) const {
        return {channelAt(place), powers_[place.chip], clock_};
    }

    void appendKey(SensorInventoryList& list, const AssignedKey& assigned) {
        const std::uint32_t code = packedSMCKey(assigned.key);
        LiveSensor sensor = sensorAt(assigned.place);
        const SensorKey* const earlier = earlier_.find(code);
        sensor.meter(earlier == nullptr ? nullptr : &earlier->sensor);
        list.places.emplace(code, list.keys.size());
        list.keys.push_back(
            {code, packedSMCKey(assigned.type), &sensorType(assigned.type), std::move(sensor)});
    }

    const std::vector<SensorChip>& chips_;
    const SensorInventoryList& earlier_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::vector<std::shared_ptr<const DevicePower>> powers_;
};

} // namespace

const SensorKey* SensorInventoryList::find(std::uint32_t code) const {
    const auto place = places.find(code);
    return place == places.end() ? nullptr : &keys[place->second];
}

bool SensorInventoryList::isEmpty() const {
    return keys.empty() &&
           std::ranges::all_of(chips, [](const RegistryChip& chip) { return chip.fans.empty(); });
}

SensorInventory::SensorInventory(std::filesystem::path root, std::shared_ptr<const MonotonicClock> clock,
                                 OnceLog::Sink log)
    : root_(std::move(root)), clock_(std::move(clock)), log_(std::move(log)) {}

std::shared_ptr<const SensorInventoryList> SensorInventory::current() {
    const std::lock_guard lock(mutex_);
    if (current_ == nullptr) build({});
    return current_;
}

std::chrono::nanoseconds SensorInventory::age() const {
    const std::lock_guard lock(mutex_);
    return clock_->now() - builtAt_;
}

void SensorInventory::rebuild(const KeyAssignment::KeySet& controllerKeys) {
    const std::lock_guard lock(mutex_);
    build(controllerKeys);
}

void SensorInventory::build(const KeyAssignment::KeySet& controllerKeys) {
    const std::vector<SensorChip> found = chips(!controllerKeys.empty());
    const KeyPlan plan = assignment_.plan(found, controllerKeys);
    sayWhatIsUnplaced(found, plan, log_);
    const SensorInventoryList none;
    current_ = ListBuilder(found, current_ == nullptr ? none : *current_, clock_).build(plan);
    builtAt_ = clock_->now();
}

void SensorInventory::say(const std::string& message) {
    const std::lock_guard lock(mutex_);
    log_.say(message);
}

std::vector<SensorChip> SensorInventory::chips(bool hasController) {
    std::vector<SensorChip> chips = hwmonChips(root_);
    if (hasController) std::erase_if(chips, [](const SensorChip& chip) { return chip.name == "applesmc"; });
    std::vector<SensorChip> supplies = powerSupplyChips(root_);
    dropRepeatedSupplies(chips, supplies);
    std::vector<SensorChip> counters = processorPowerChips(root_);
    std::ranges::move(supplies, std::back_inserter(chips));
    std::ranges::move(counters, std::back_inserter(chips));
    dropUnreadableCounters(chips, log_);
    nameHybridCores(root_, chips);
    return chips;
}

} // namespace kelvinbar
