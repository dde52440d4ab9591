#include "machines/replay/ReplayRegistry.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "smc/RegistryFans.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::string_view driverClass = "SMCSuperIO";

/// The walk ends after this many fans, but finishes the entry in which that happens. So every place has an
/// entry of its own (two chips may call a fan the same), and the last entry takes all further places.
constexpr std::size_t entriesWithOneFan = 15;
constexpr std::size_t placeCount = 4096;

/// From this place on, a property of any name gives the key "FAN9", which the catalogue does not know.
constexpr std::size_t firstUnnamedPlace = 9;

/// The catalogue knows "FAN0" to "FAN7".
constexpr std::size_t catalogueFanCount = 8;

struct Property {
    std::string name;
    Value value;
};

std::string fillerName(std::size_t place) {
    if (place >= firstUnnamedPlace) return "unused fan " + std::to_string(place);
    // A printable name of four characters that begins with F is its own key. "FRPM" with each of its letters
    // in either case, and "FFAN": enough names for the places before.
    std::string name = place < 8 ? "FRPM" : "FFAN";
    for (std::size_t letter = 0; letter < 3; ++letter) {
        if ((place >> letter & 1U) != 0) name[letter + 1] = asciiLowercased(name[letter + 1]);
    }
    return name;
}

/// The place that `text` names by a number after `prefix`.
std::optional<std::size_t> numberAfter(std::string_view prefix, std::string_view text) {
    if (!text.starts_with(prefix)) return std::nullopt;
    const auto number = wholeNumberIn<std::size_t>(text.substr(prefix.size()));
    return number && *number < placeCount ? number : std::nullopt;
}

/// The key that the walk gives a property of any name at `place`.
std::string numberedKey(std::size_t place) {
    return fanResult("", std::int64_t{0}, 0, place).textOr("key", "");
}

/// Where a fan can stand, and the name that its property then has.
struct Spot {
    std::size_t place = 0;
    std::string propertyName;
};

/// Those in which the walk finds the key and the name of `fan`; at most two.
std::vector<Spot> exactSpots(const RecordedFan& fan) {
    std::vector<Spot> spots;
    const auto add = [&](std::optional<std::size_t> place, const std::string& propertyName) {
        if (!place || !stringContainsFanHint(propertyName)) return;
        const SMCKeyResult seen = fanResult(propertyName, std::int64_t{0}, 0, *place);
        const bool fits = seen.textOr("key", "") == fan.key && seen.textOr("name", "") == fan.name;
        if (fits) spots.push_back({*place, propertyName});
    };
    add(numberAfter("Fan ", fan.name), fan.key);
    add(numberAfter("FAN", fan.key), fan.name);
    return spots;
}

/// Whether the walk shows a property of that name under its own name; it does so at every place.
bool isShownByItsName(const std::string& propertyName) {
    return stringContainsFanHint(propertyName) &&
           fanResult(propertyName, std::int64_t{0}, 0, 0).textOr("name", "") == propertyName;
}

/// Whether the walk shows `value` as the recorded fan was shown: whole RPM, and the same raw text.
bool isShownAs(const Value& value, const RecordedFan& fan) {
    const auto speed = fanSpeed(value);
    return speed && fixedText(std::round(*speed), 0) == fan.speed && fanRawText(value) == fan.raw;
}

/// The property value that was recorded: a number, bytes or a text, whichever shows the same speed and the
/// same raw text. Without such a one (the raw text was edited or left out) the shown number.
Value recordedValue(const RecordedFan& fan) {
    const double shown = leadingNumber(fan.speed);
    if (isShownAs(shown, fan)) return shown;
    std::vector<Value> candidates{shown, shown - 0.5}; // halves are rounded up for display, down in raw text
    if (auto data = bytesOfHexString(fan.raw)) candidates.emplace_back(*std::move(data));
    candidates.emplace_back(fan.raw);
    const auto found = std::ranges::find_if(candidates, [&](const Value& v) { return isShownAs(v, fan); });
    return found == candidates.end() ? candidates.front() : *found;
}

using Places = std::map<std::size_t, Property>;

/// Gives fans their places.
class Placement {
  public:
    /// Whether `fan` has a place now in which the walk finds its key and name. Fans that were placed before
    /// move to another such place if that makes room.
    bool placeExactly(const RecordedFan& fan) {
        std::set<std::size_t> tried;
        return placeExactly(fan, tried);
    }

    /// Whether `fan` has a place now in which the walk finds its name. Nobody moves for it.
    bool placeByName(const RecordedFan& fan) {
        if (!isShownByItsName(fan.name)) return false;
        for (std::size_t place = 0; place < catalogueFanCount; ++place) {
            if (isKeyOfAnotherFan(numberedKey(place)) || tenants_.contains(place)) continue;
            tenants_[place] = {&fan, fan.name};
            return true;
        }
        return false;
    }

    [[nodiscard]] Places places() const {
        Places places;
        for (const auto& [place, tenant] : tenants_) {
            places.emplace(place, Property{tenant.propertyName, recordedValue(*tenant.fan)});
        }
        return places;
    }

  private:
    struct Tenant {
        const RecordedFan* fan = nullptr;
        std::string propertyName;
    };

    [[nodiscard]] bool isKeyOfAnotherFan(const std::string& key) const {
        return std::ranges::any_of(tenants_, [&](const auto& entry) { return entry.second.fan->key == key; });
    }

    /// An augmenting path of a bipartite matching: whoever stands in the way looks for another place first.
    bool placeExactly(const RecordedFan& fan, std::set<std::size_t>& tried) {
        return std::ranges::any_of(exactSpots(fan), [&](const Spot& spot) {
            if (!tried.insert(spot.place).second) return false;
            Tenant& tenant = tenants_[spot.place];
            if (tenant.fan != nullptr && !placeExactly(*tenant.fan, tried)) return false;
            tenant = {&fan, spot.propertyName};
            return true;
        });
    }

    std::map<std::size_t, Tenant> tenants_;
};

class ReplayEntry final : public IORegistryEntry {
  public:
    explicit ReplayEntry(std::string name) : name_(std::move(name)) {}

    void add(Property property) { properties_.append(property.name, std::move(property.value)); }

    [[nodiscard]] std::string className() const override { return std::string(driverClass); }

    [[nodiscard]] std::string name() const override { return name_; }

    [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
        const auto* text = properties_.find<std::string>(name);
        return text == nullptr ? std::nullopt : std::optional(*text);
    }

    [[nodiscard]] std::optional<Dictionary> properties() const override { return properties_; }

  private:
    std::string name_;
    Dictionary properties_;
};

class ReplayIterator final : public IORegistryIterator {
  public:
    explicit ReplayIterator(const std::vector<ReplayEntry>& entries) : entries_(entries) {}

    const IORegistryEntry* next() override { return next_ < entries_.size() ? &entries_[next_++] : nullptr; }

  private:
    const std::vector<ReplayEntry>& entries_;
    std::size_t next_ = 0;
};

class ReplayRegistry final : public IORegistry {
  public:
    explicit ReplayRegistry(Places places) {
        const std::size_t end = places.empty() ? 0 : places.rbegin()->first + 1;
        for (std::size_t place = 0; place < end; ++place) {
            if (place <= entriesWithOneFan) entries_.emplace_back("fan " + std::to_string(place));
            const auto found = places.find(place);
            entries_.back().add(found != places.end() ? std::move(found->second)
                                                      : Property{fillerName(place), std::int64_t{0}});
        }
    }

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view /*plane*/) override {
        return std::make_unique<ReplayIterator>(entries_);
    }

  private:
    std::vector<ReplayEntry> entries_;
};

/// Why no registry can show `fan`; empty when one can.
std::string_view reasonAgainst(const RecordedFan& fan) {
    if (!fanSpeed(recordedValue(fan))) return "the fan's speed is not from 0 to 30000";
    if (!isShownByItsName(fan.name) && exactSpots(fan).empty()) return "no registry fan can have this name";
    return {};
}

} // namespace

ReplayRegistryResult makeReplayRegistry(const std::vector<RecordedFan>& fans) {
    ReplayRegistryResult result;
    const auto report = [&](const RecordedFan& fan, std::string_view reason) {
        result.problems.push_back({fan.lineNumber, reason});
    };
    Placement placement;
    std::unordered_set<std::string_view> keys;
    std::vector<const RecordedFan*> waiting;
    for (const RecordedFan& fan : fans) {
        if (keys.contains(fan.key)) {
            report(fan, repeatedKey);
        } else if (const auto reason = reasonAgainst(fan); !reason.empty()) {
            report(fan, reason);
        } else {
            keys.insert(fan.key);
            if (!placement.placeExactly(fan)) waiting.push_back(&fan);
        }
    }
    for (const RecordedFan* const fan : waiting) {
        if (!placement.placeByName(*fan)) report(*fan, "there is no place left for the fan");
    }
    result.registry = std::make_shared<ReplayRegistry>(placement.places());
    return result;
}

} // namespace kelvinbar
