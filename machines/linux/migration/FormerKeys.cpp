#include "machines/linux/migration/FormerKeys.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/migration/KeyPattern.h"
#include "machines/linux/migration/SensorRules.h"
#include "machines/linux/naming/SupplyMonitors.h"
#include "smc/RegistryFans.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

/// Fans from registry-like chips had the keys FAN0 to FAN7.
constexpr std::size_t mostRegistryFans = 8;

/// The last decimal number in a label such as "Core 12" or "TSI0_TEMP".
std::optional<int> lastNumber(std::string_view label) {
    while (!label.empty() && !isDecimalDigit(label.back())) label.remove_suffix(1);
    std::size_t first = label.size();
    while (first > 0 && isDecimalDigit(label[first - 1])) --first;
    return wholeNumberIn<int>(label.substr(first));
}

class Assignment {
  public:
    Assignment(const std::vector<SensorChip>& chips, KeySet controllerKeys)
        : chips_(chips), monitors_(chips), controllerKeys_(std::move(controllerKeys)) {}

    Assignment(const Assignment&) = delete;
    Assignment& operator=(const Assignment&) = delete;
    ~Assignment() = default;

    std::map<std::string, ChannelPlace> make() && {
        leaveOutController();
        leaveOutRepeated();
        leaveOutCovered();
        placeRegistryFans();
        for (const SensorRule& rule : sensorRules()) apply(rule);
        for (const FanAttributeRule& rule : fanAttributeRules()) apply(rule);
        moveToMonitors();
        return std::move(keys_);
    }

  private:
    [[nodiscard]] const SensorChannel& at(ChannelPlace place) const {
        return chips_[place.chip].channels[place.channel];
    }

    /// Visits the open channels of one kind in the chips of a family, with the number of the chip in its
    /// family, from 0.
    template <typename Visit>
    void forEachOpenChannel(std::string_view family, SensorKind kind, Visit visit) {
        int chipIndex = 0;
        for (std::size_t chip = 0; chip < chips_.size(); ++chip) {
            if (!fitsPattern(family, chips_[chip].name)) continue;
            for (std::size_t channel = 0; channel < chips_[chip].channels.size(); ++channel) {
                const ChannelPlace place{chip, channel};
                if (!done_.contains(place) && at(place).kind == kind) visit(place, chipIndex);
            }
            ++chipIndex;
        }
    }

    void give(ChannelPlace place, const std::string& key) {
        done_.insert(place);
        keys_.emplace(key, place);
    }

    [[nodiscard]] bool isFree(const std::string& key) const {
        return !keys_.contains(key) && !controllerKeys_.contains(key);
    }

    /// Apple's SMC has keys of its own, even if only its driver's channels can be read.
    void leaveOutController() {
        for (std::size_t chip = 0; chip < chips_.size(); ++chip) {
            if (chips_[chip].name != appleSMCChip) continue;
            for (std::size_t channel = 0; channel < chips_[chip].channels.size(); ++channel) {
                done_.insert({chip, channel});
                if (auto key = controllerKeyOf(at({chip, channel})))
                    controllerKeys_.insert(std::move(key->key));
            }
        }
    }

    /// The first matching rule decided whether the SMC already measures the channel.
    void leaveOutCovered() {
        std::set<ChannelPlace> decided;
        for (const SensorRule& rule : sensorRules()) {
            const bool isCovered = !rule.coveredBy.empty() && hasKeyLike(rule.coveredBy);
            forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place, int) {
                if (!fitsPattern(rule.labels, at(place).label) || !decided.insert(place).second) return;
                if (isCovered) done_.insert(place);
            });
        }
    }

    /// Keys are case-sensitive, unlike the names of chips and labels.
    [[nodiscard]] bool hasKeyLike(std::string_view pattern) const {
        return fitsAnyAlternative(pattern, [&](std::string_view alternative) {
            return std::ranges::any_of(controllerKeys_, [&](const std::string& key) {
                return std::ranges::equal(alternative, key,
                                          [](char left, char right) { return left == '?' || left == right; });
            });
        });
    }

    // Supplies that also have a hwmon chip

    /// The channels of one kind in a chip of the list, in their order.
    [[nodiscard]] std::vector<ChannelPlace> placesOf(const SensorChip& chip, SensorKind kind) const {
        std::vector<ChannelPlace> places;
        for (std::size_t channel = 0; channel < chip.channels.size(); ++channel) {
            if (chip.channels[channel].kind != kind) continue;
            places.push_back({static_cast<std::size_t>(&chip - chips_.data()), channel});
        }
        return places;
    }

    /// In version 0.1 the supply had the key, and the hwmon chip had none.
    void leaveOutRepeated() {
        for (const SensorChip& supply : chips_) {
            for (const SensorChannel& channel : supply.channels) {
                const SensorChip* const monitor = monitors_.find(supply, channel.kind);
                if (monitor == nullptr) continue;
                for (const ChannelPlace place : placesOf(*monitor, channel.kind)) done_.insert(place);
            }
        }
    }

    /// Now the hwmon chip has the reading. Both list the channels of a kind in the same order.
    void moveToMonitors() {
        for (auto& [key, place] : keys_) {
            const SensorKind kind = at(place).kind;
            const SensorChip* const monitor = monitors_.find(chips_[place.chip], kind);
            if (monitor == nullptr) continue;
            const auto own = placesOf(chips_[place.chip], kind);
            const auto theirs = placesOf(*monitor, kind);
            const auto index = static_cast<std::size_t>(std::ranges::find(own, place) - own.begin());
            if (index < theirs.size()) place = theirs[index];
        }
    }

    // Fans from registry-like chips

    /// Whether version 0.1 recognised the channel as one fan by its label.
    [[nodiscard]] bool isNamedFan(ChannelPlace place) const {
        const SensorChannel& fan = at(place);
        const auto hasThisName = [&](const SensorChannel& other) {
            return other.kind == fan.kind && other.label == fan.label;
        };
        const bool isKeyOfAFan = isPrintableSMCKey(fan.label) && fan.label.front() == 'F';
        return stringContainsFanHint(fan.label) && !isKeyOfAFan &&
               std::ranges::count_if(chips_[place.chip].channels, hasThisName) == 1;
    }

    /// They were numbered chip by chip.
    void placeRegistryFans() {
        std::vector<ChannelPlace> fans;
        for (const std::string_view chips : registryChips()) {
            forEachOpenChannel(chips, SensorKind::fan, [&](ChannelPlace place, int) {
                if (fans.size() < mostRegistryFans && isNamedFan(place)) fans.push_back(place);
            });
        }
        std::sort(fans.begin(), fans.end());
        for (std::size_t index = 0; index < fans.size(); ++index) {
            give(fans[index], "FAN" + std::to_string(index));
        }
    }

    // Keys assigned by rules

    void apply(const SensorRule& rule) {
        forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place, int chipIndex) {
            if (!fitsPattern(rule.labels, at(place).label)) return;
            if (const auto key = freeKey(rule, place, chipIndex)) give(place, *key);
        });
    }

    [[nodiscard]] std::optional<std::string> freeKey(const SensorRule& rule, ChannelPlace place,
                                                     int chipIndex) {
        const KeyDigits digits{.chipIndex = chipIndex,
                               .labelNumber = lastNumber(at(place).label),
                               .channelNumber = at(place).number};
        for (std::string_view rest = rule.keys; !rest.empty();) {
            if (auto key = search_.find(rest.substr(0, 4), digits)) return key;
            rest.remove_prefix(std::min<std::size_t>(5, rest.size()));
        }
        return std::nullopt;
    }

    // Attributes of fans

    /// The start of a fan's key ("F0"), if the fan has a key.
    [[nodiscard]] std::optional<std::string> fanKeyFront(std::size_t chip, int number) const {
        for (const auto& [key, place] : keys_) {
            const bool isFan = place.chip == chip && key.ends_with("Ac") && at(place).kind == SensorKind::fan;
            if (isFan && at(place).number == number) return key.substr(0, 2);
        }
        return std::nullopt;
    }

    void apply(const FanAttributeRule& rule) {
        forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place, int) {
            const auto front = fanKeyFront(place.chip, at(place).number);
            if (front && isFree(*front + std::string(rule.keyEnd)))
                give(place, *front + std::string(rule.keyEnd));
        });
    }

    const std::vector<SensorChip>& chips_;
    const SupplyMonitors monitors_;
    KeySet controllerKeys_;
    std::set<ChannelPlace> done_;
    std::map<std::string, ChannelPlace> keys_;
    KeySearch search_{[this](const std::string& key) { return isFree(key); }};
};

} // namespace

std::map<std::string, ChannelPlace> formerKeys(const std::vector<SensorChip>& chips,
                                               const KeySet& controllerKeys) {
    return Assignment(chips, controllerKeys).make();
}

} // namespace kelvinbar
