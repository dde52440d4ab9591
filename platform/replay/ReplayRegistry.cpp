#include "platform/replay/ReplayRegistry.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "smc/RegistryFans.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::string_view driverClass = "SMCSuperIO";

/// The walk ends after this many fans, but finishes the entry in which that happens. So every place has an
/// entry of its own (two chips may call a fan the same), and the last entry takes all further places.
constexpr std::size_t entriesWithOneFan = 15;
constexpr std::size_t placeCount = 64;

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

std::optional<std::size_t> placeNumber(std::string_view text) {
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool complete = error == std::errc() && stop == text.data() + text.size();
    return complete && number < placeCount ? std::optional(number) : std::nullopt;
}

std::optional<std::size_t> numberAfter(std::string_view prefix, std::string_view text) {
    return text.starts_with(prefix) ? placeNumber(text.substr(prefix.size())) : std::nullopt;
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

/// Those in which the walk finds at least the name of `fan`, under a key that the catalogue knows.
std::vector<Spot> spotsByName(const RecordedFan& fan) {
    std::vector<Spot> spots;
    if (!stringContainsFanHint(fan.name)) return spots;
    for (std::size_t place = 0; place < catalogueFanCount; ++place) {
        const SMCKeyResult seen = fanResult(fan.name, std::int64_t{0}, 0, place);
        if (seen.textOr("name", "") == fan.name) spots.push_back({place, fan.name});
    }
    return spots;
}

/// Whether the walk shows `value` as the recorded fan was shown: whole RPM, and the same raw text.
bool isShownAs(const Value& value, const RecordedFan& fan) {
    const auto speed = fanSpeed(value);
    return speed && fixedText(std::round(*speed), 0) == fan.speed && fanRawText(value) == fan.raw;
}

std::optional<Data> dataOfHex(std::string_view hex) {
    Data data;
    for (; hex.size() >= 2; hex.remove_prefix(2)) {
        const int high = hexDigitValue(hex[0]);
        const int low = hexDigitValue(hex[1]);
        if (high < 0 || low < 0) return std::nullopt;
        data.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return hex.empty() ? std::optional(data) : std::nullopt;
}

/// The property value that was recorded: a number, bytes or a text, whichever shows the same speed and the
/// same raw text. Without such a one (the raw text was edited or left out) the shown number.
Value recordedValue(const RecordedFan& fan) {
    const double shown = leadingNumber(fan.speed);
    std::vector<Value> candidates{shown, shown - 0.5}; // halves are rounded up for display, down in raw text
    if (auto data = dataOfHex(fan.raw)) candidates.emplace_back(*std::move(data));
    candidates.emplace_back(fan.raw);
    const auto found = std::ranges::find_if(candidates, [&](const Value& v) { return isShownAs(v, fan); });
    return found == candidates.end() ? candidates.front() : *found;
}

using Places = std::map<std::size_t, Property>;

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

/// Gives `fan` the first of `spots` that is free.
bool takeSpot(Places& places, const std::vector<Spot>& spots, const RecordedFan& fan) {
    return std::ranges::any_of(spots, [&](const Spot& spot) {
        return places.try_emplace(spot.place, Property{spot.propertyName, recordedValue(fan)}).second;
    });
}

} // namespace

ReplayRegistryResult makeReplayRegistry(const std::vector<RecordedFan>& fans) {
    ReplayRegistryResult result;
    std::vector<const RecordedFan*> waiting;
    for (const RecordedFan& fan : fans) {
        if (fanSpeed(recordedValue(fan))) {
            waiting.push_back(&fan);
        } else {
            result.problems.push_back({fan.lineNumber, "the fan's speed is not from 0 to 30000"});
        }
    }
    // Fans that have one spot choose before those that have two, and those come last that no walk over a
    // registry can have given: edited lines keep their name and speed under another key.
    Places places;
    std::ranges::stable_sort(waiting, {}, [](const auto* fan) { return exactSpots(*fan).size(); });
    std::erase_if(waiting, [&](const auto* fan) { return takeSpot(places, exactSpots(*fan), *fan); });
    std::erase_if(waiting, [&](const auto* fan) { return takeSpot(places, spotsByName(*fan), *fan); });
    for (const RecordedFan* const fan : waiting) {
        result.problems.push_back({fan->lineNumber, "no registry can show a fan with this name here"});
    }
    result.registry = std::make_shared<ReplayRegistry>(std::move(places));
    return result;
}

} // namespace kelvinbar
