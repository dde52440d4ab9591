#include "machines/linux/naming/KeyAssignment.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/naming/KeyPattern.h"
#include "smc/RegistryFans.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <optional>

namespace kelvinbar {

namespace {

constexpr std::string_view labelItself = "????";

/// As many as a hex digit tells.
constexpr std::ptrdiff_t mostIndices = 16;

/// Fans of the registry that the catalogue has keys for (FAN0 to FAN7).
constexpr std::size_t mostRegistryFans = 8;

/// The last decimal number in a label such as "Core 12" or "TSI0_TEMP".
std::optional<int> lastNumber(std::string_view label) {
    while (!label.empty() && !isDecimalDigit(label.back())) label.remove_suffix(1);
    std::size_t first = label.size();
    while (first > 0 && isDecimalDigit(label[first - 1])) --first;
    return wholeNumberIn<int>(label.substr(first));
}

bool isFanAttribute(SensorKind kind) {
    return std::ranges::any_of(fanAttributeRules(),
                               [=](const FanAttributeRule& rule) { return rule.kind == kind; });
}

std::string identityOf(const SensorChip& chip) { return chip.device + "\n" + chip.stableName; }

std::string identityOf(const SensorChannel& channel) {
    std::string identity = "\n";
    identity.append(std::to_string(static_cast<int>(channel.kind))).append(" ");
    return identity.append(std::to_string(channel.number)).append(" ").append(channel.label);
}

/// `identities` with a count added to those that came before, so that each is there once.
void makeUnique(std::vector<std::string>& identities) {
    std::unordered_map<std::string, int> seen;
    for (std::string& identity : identities) {
        const int count = seen[identity]++;
        if (count > 0) identity.append("\n").append(std::to_string(count));
    }
}

} // namespace

/// One plan in the making.
class KeyPlanner {
  public:
    KeyPlanner(KeyAssignment& assignment, const std::vector<SensorChip>& chips,
               const KeyAssignment::KeySet& controllerKeys)
        : assignment_(assignment), chips_(chips), controllerKeys_(controllerKeys), taken_(controllerKeys) {
        for (const SensorChip& chip : chips) {
            chipIdentities_.push_back(identityOf(chip));
            isDone_.emplace_back(chip.channels.size(), false);
            for (const SensorChannel& channel : chip.channels) noteOwnKey(chip, channel);
        }
        makeUnique(chipIdentities_);
        for (const SensorRule& rule : sensorRules()) countFamily(rule);
    }

    KeyPlan make() {
        leaveOutCovered();
        for (const RegistryRule& rule : registryRules()) placeInRegistry(rule);
        keepRememberedKeys();
        isReserving_ = true;
        for (const SensorRule& rule : sensorRules()) apply(rule);
        // Keys that wait for a device to return are given away before a channel is lost.
        isReserving_ = false;
        for (const SensorRule& rule : sensorRules()) apply(rule);
        for (const FanAttributeRule& rule : fanAttributeRules()) apply(rule);
        collectUnplaced();
        std::ranges::sort(plan_.keys, {}, &AssignedKey::key);
        return std::move(plan_);
    }

  private:
    /// The keys that a real controller has are those that it lists, or those it labels its channels with.
    void noteOwnKey(const SensorChip& chip, const SensorChannel& channel) {
        if (chip.name == "applesmc" && channel.isLabelled) ownKeys_.insert(channel.label);
    }

    [[nodiscard]] const SensorChannel& at(ChannelPlace place) const {
        return chips_[place.chip].channels[place.channel];
    }

    [[nodiscard]] std::string identity(ChannelPlace place) const {
        return chipIdentities_[place.chip] + identityOf(at(place));
    }

    template <typename Visit>
    void forEachOpenChannel(std::string_view chips, SensorKind kind, Visit visit) {
        for (std::size_t chip = 0; chip < chips_.size(); ++chip) {
            if (!fitsPattern(chips, chips_[chip].name)) continue;
            for (std::size_t channel = 0; channel < chips_[chip].channels.size(); ++channel) {
                const ChannelPlace place{chip, channel};
                if (!isDone_[chip][channel] && at(place).kind == kind) visit(place);
            }
        }
    }

    // Registry

    /// Whether the registry's walk would take the channel for a fan under its label, and for one fan.
    [[nodiscard]] bool isNamedFan(ChannelPlace place) const {
        const SensorChannel& fan = at(place);
        const auto hasThisName = [&](const SensorChannel& other) {
            return other.kind == fan.kind && other.label == fan.label;
        };
        return stringContainsFanHint(fan.label) &&
               !(isPrintableSMCKey(fan.label) && fan.label.front() == 'F') &&
               std::ranges::count_if(chips_[place.chip].channels, hasThisName) == 1;
    }

    void placeInRegistry(const RegistryRule& rule) {
        forEachOpenChannel(rule.chips, SensorKind::fan, [&](ChannelPlace place) {
            const bool hasKey = assignment_.remembered_.contains(identity(place));
            if (plan_.registryFans.size() == mostRegistryFans || hasKey || !isNamedFan(place)) return;
            plan_.registryFans.push_back({rule.className, place});
            isDone_[place.chip][place.channel] = true;
        });
    }

    // Keys

    /// The first rule that fits a channel says whether the controller tells it already.
    void leaveOutCovered() {
        std::set<std::pair<std::size_t, std::size_t>> decided;
        for (const SensorRule& rule : sensorRules()) {
            const bool covered = isCovered(rule);
            forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place) {
                if (!fitsPattern(rule.labels, at(place).label)) return;
                if (!decided.emplace(place.chip, place.channel).second) return;
                isDone_[place.chip][place.channel] = covered;
            });
        }
    }

    void keepRememberedKeys() {
        for (const SensorRule& rule : sensorRules()) {
            forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place) {
                if (!fitsPattern(rule.labels, at(place).label)) return;
                const auto known = assignment_.remembered_.find(identity(place));
                if (known == assignment_.remembered_.end()) return;
                const KeyAssignment::Given given = known->second;
                if (!taken_.contains(given.key)) give(place, given.key, given.type);
            });
        }
        for (const auto& [channel, given] : assignment_.remembered_) reserved_.insert(given.key);
    }

    [[nodiscard]] bool isCovered(const SensorRule& rule) const {
        const auto covers = [&](const std::string& key) { return fitsKeys(rule.coveredBy, key); };
        return !rule.coveredBy.empty() &&
               (std::ranges::any_of(controllerKeys_, covers) || std::ranges::any_of(ownKeys_, covers));
    }

    /// Keys differ by letter case, unlike the names of chips and labels.
    static bool fitsKeys(std::string_view pattern, std::string_view key) {
        return fitsAnyAlternative(pattern, [&](std::string_view alternative) {
            return std::ranges::equal(alternative, key,
                                      [](char left, char right) { return left == '?' || left == right; });
        });
    }

    void apply(const SensorRule& rule) {
        forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place) {
            if (!fitsPattern(rule.labels, at(place).label)) return;
            if (auto key = freeKey(rule, place)) give(place, *std::move(key), rule.type);
        });
    }

    [[nodiscard]] std::optional<std::string> freeKey(const SensorRule& rule, ChannelPlace place) {
        const KeyDigits digits{.chipIndex = chipIndex(rule.chips, place.chip),
                               .labelNumber = lastNumber(at(place).label),
                               .channelNumber = at(place).number};
        const auto isFree = [this](const std::string& key) {
            return !taken_.contains(key) && !(isReserving_ && reserved_.contains(key));
        };
        for (std::string_view rest = rule.keys; !rest.empty();) {
            const std::string_view pattern = rest.substr(0, 4);
            rest.remove_prefix(std::min<std::size_t>(5, rest.size()));
            auto key = pattern == labelItself ? ownKey(place) : keyByPattern(pattern, digits, isFree);
            if (key) return key;
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::string> ownKey(ChannelPlace place) const {
        const std::string& label = at(place).label;
        const bool isKey = isPrintableSMCKey(label) && !taken_.contains(label);
        return isKey ? std::optional(label) : std::nullopt;
    }

    /// Gives the chips of a family their indices in the order of their devices: the one that a chip has had,
    /// or the first that no chip has had. When all are given, those of absent chips are given anew.
    void countFamily(const SensorRule& rule) {
        if (!contains(rule.keys, "@")) return;
        auto& indices = assignment_.indices_;
        const auto isOfFamily = [&](const auto& member) { return member.first.first == rule.chips; };
        if (std::ranges::count_if(indices, isOfFamily) >= mostIndices) {
            std::erase_if(indices, [&](const auto& member) {
                return isOfFamily(member) &&
                       std::ranges::find(chipIdentities_, member.first.second) == chipIdentities_.end();
            });
        }
        for (std::size_t chip = 0; chip < chips_.size(); ++chip) {
            if (!fitsPattern(rule.chips, chips_[chip].name)) continue;
            indices.try_emplace({rule.chips, chipIdentities_[chip]}, firstFreeIndex(rule.chips));
        }
    }

    [[nodiscard]] int firstFreeIndex(std::string_view family) const {
        std::set<int> given;
        for (const auto& [member, index] : assignment_.indices_) {
            if (member.first == family) given.insert(index);
        }
        int index = 0;
        while (given.contains(index)) ++index;
        return index;
    }

    [[nodiscard]] int chipIndex(std::string_view family, std::size_t chip) const {
        const auto known = assignment_.indices_.find({family, chipIdentities_[chip]});
        return known == assignment_.indices_.end() ? 0 : known->second;
    }

    void give(ChannelPlace place, std::string key, std::string_view type) {
        isDone_[place.chip][place.channel] = true;
        taken_.insert(key);
        remember(identity(place), {key, type});
        plan_.keys.push_back({std::move(key), type, place});
    }

    void remember(const std::string& channel, const KeyAssignment::Given& given) {
        std::string& owner = assignment_.owners_[given.key];
        if (owner != channel) assignment_.remembered_.erase(owner);
        owner = channel;
        assignment_.remembered_[channel] = given;
    }

    // Attributes of fans

    /// The front of a fan's key ("F0") when that is one of those whose attributes have keys.
    [[nodiscard]] std::optional<std::string> fanKeyFront(std::size_t chip, int number) const {
        for (const AssignedKey& assigned : plan_.keys) {
            if (assigned.place.chip != chip || !assigned.key.ends_with("Ac")) continue;
            const SensorChannel& fan = at(assigned.place);
            if (fan.kind == SensorKind::fan && fan.number == number) return assigned.key.substr(0, 2);
        }
        return std::nullopt;
    }

    void apply(const FanAttributeRule& rule) {
        forEachOpenChannel(rule.chips, rule.kind, [&](ChannelPlace place) {
            const auto front = fanKeyFront(place.chip, at(place).number);
            if (!front) return;
            std::string key = *front + std::string(rule.keyEnd);
            if (!taken_.contains(key)) give(place, std::move(key), rule.type);
        });
    }

    void collectUnplaced() {
        for (std::size_t chip = 0; chip < chips_.size(); ++chip) {
            for (std::size_t channel = 0; channel < chips_[chip].channels.size(); ++channel) {
                const bool isOpen = !isDone_[chip][channel];
                if (isOpen && !isFanAttribute(at({chip, channel}).kind))
                    plan_.unplaced.push_back({chip, channel});
            }
        }
    }

    KeyAssignment& assignment_;
    const std::vector<SensorChip>& chips_;
    const KeyAssignment::KeySet& controllerKeys_;
    KeyAssignment::KeySet ownKeys_;
    KeyAssignment::KeySet taken_;
    KeyAssignment::KeySet reserved_;
    bool isReserving_ = false;
    std::vector<std::string> chipIdentities_;
    std::vector<std::vector<bool>> isDone_;
    KeyPlan plan_;
};

KeyPlan KeyAssignment::plan(const std::vector<SensorChip>& chips, const KeySet& controllerKeys) {
    return KeyPlanner(*this, chips, controllerKeys).make();
}

} // namespace kelvinbar
