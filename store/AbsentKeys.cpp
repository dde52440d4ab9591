#include "store/AbsentKeys.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "catalogue/KeySet.h"
#include "store/MenuBarText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvinbar {

namespace {

constexpr char fieldSeparator = '\t'; // not part of any key

/// Removes a whole number and the fieldSeparator after it from the start of `text`.
template <typename Integer>
std::optional<Integer> takeField(std::string_view& text) {
    const std::size_t end = text.find(fieldSeparator);
    if (end == std::string_view::npos) return std::nullopt;
    const auto number = wholeNumberIn<Integer>(text.substr(0, end));
    text.remove_prefix(end + 1);
    return number;
}

} // namespace

AbsentKeys::AbsentKeys(UserDefaults& defaults, Storage storage, const WallClock& wallClock, Log& log)
    : defaults_(&defaults), wallClock_(&wallClock), storage_(storage) {
    for (const std::string& entry : defaults.textList(storage.entry).value_or(TextList{})) {
        if (auto absence = parsed(entry)) {
            absences_.push_back(*std::move(absence));
        } else {
            log.write(LogCategory::preferences, LogLevel::info, [&] {
                return std::string(storage.entry) + ": \"" + entry + "\" is no absent key and is dropped";
            });
        }
    }
    std::ranges::stable_sort(absences_, {}, &Absence::place);
}

/// An entry is a place, a day as its number since 1970, and a key.
std::optional<AbsentKeys::Absence> AbsentKeys::parsed(std::string_view entry) const {
    const auto place = takeField<std::size_t>(entry);
    const auto day = takeField<unsigned>(entry);
    const bool isKey = !entry.empty() && trimmed(entry) == entry;
    const auto keyOf = [](const Absence& each) -> const std::string& { return each.slot.key; };
    const bool isNew = std::ranges::find(absences_, entry, keyOf) == absences_.end();
    if (!place || *place >= storage_.room || !day || !isKey || !isNew) return std::nullopt;
    const Slot slot{
        .key = std::string(entry), .isChosen = false, .absentSince = Day(std::chrono::days(*day))};
    return Absence{.slot = slot, .place = *place};
}

AbsentKeys::Keys AbsentKeys::settled(const Keys& chosen, const KeyViews& found) {
    const auto isFound = [&](const std::string& key) { return found.contains(key); };
    if (absences_.empty() && std::ranges::all_of(chosen, isFound)) return chosen;
    std::vector<Slot> order = slotsWith(chosen);
    for (Slot& slot : order) slot.isChosen = !slot.isTaken && isFound(slot.key);
    return keep(std::move(order));
}

AbsentKeys::Keys AbsentKeys::moved(const Keys& chosen, const CurrentKey& currentKey) {
    std::vector<Slot> order = slotsWith(chosen);
    for (Slot& slot : order) {
        auto current = currentKey(slot.key);
        slot.isTaken = !current.has_value();
        slot.isChosen = slot.isChosen && !slot.isTaken;
        if (current) slot.key = *std::move(current);
    }
    return keep(std::move(order));
}

void AbsentKeys::changed(const Keys& before, const Keys& after) {
    std::vector<Slot> order;
    for (const std::string& key : after) order.push_back({.key = key});
    const std::vector<Slot> earlier = slotsWith(before);
    for (auto slot = earlier.begin(); slot != earlier.end(); ++slot) {
        if (!slot->isChosen) insertBehindNeighbour(order, {earlier.begin(), slot}, *slot);
    }
    keep(std::move(order));
}

void AbsentKeys::forget(std::string_view key) {
    std::vector<Absence> rest = absences_;
    std::erase_if(rest, [key](const Absence& each) { return each.slot.key == key; });
    assign(std::move(rest));
}

void AbsentKeys::forgetAll() { assign({}); }

AbsentKeys::Keys AbsentKeys::rememberedKeys(bool areTaken) const {
    Keys keys;
    for (const Absence& each : absences_) {
        if (each.slot.isTaken == areTaken) keys.push_back(each.slot.key);
    }
    return keys;
}

std::vector<AbsentKeys::Slot> AbsentKeys::slotsWith(const Keys& chosen) const {
    std::vector<Slot> order;
    for (const std::string& key : chosen) order.push_back({.key = key});
    for (const auto& [slot, place] : absences_) {
        if (std::ranges::find(chosen, slot.key) != chosen.end()) continue;
        order.insert(order.begin() + static_cast<std::ptrdiff_t>(std::min(place, order.size())), slot);
    }
    return order;
}

/// A slot stays behind the nearest one that was before it and is left.
void AbsentKeys::insertBehindNeighbour(std::vector<Slot>& order, std::span<const Slot> before,
                                       const Slot& slot) {
    const auto placeOf = [&](const Slot& each) { return std::ranges::find(order, each.key, &Slot::key); };
    const auto isLeft = [&](const Slot& each) { return placeOf(each) != order.end(); };
    const auto neighbour = std::find_if(before.rbegin(), before.rend(), isLeft);
    order.insert(neighbour == before.rend() ? order.begin() : std::next(placeOf(*neighbour)), slot);
}

/// A chosen key counts more than a remembered one, and the first of two more than the second.
void AbsentKeys::removeRepeatedKeys(std::vector<Slot>& order) {
    KeySet seen;
    for (const bool areChosen : {true, false}) {
        std::erase_if(order, [&](const Slot& slot) {
            return slot.isChosen == areChosen && !seen.insert(slot.key).second;
        });
    }
}

TextList AbsentKeys::entriesOf(const std::vector<Absence>& absences) {
    TextList entries;
    for (const auto& [slot, place] : absences) {
        const auto day = slot.absentSince.time_since_epoch().count();
        entries.push_back(std::to_string(place) + fieldSeparator + std::to_string(day) + fieldSeparator +
                          slot.key);
    }
    return entries;
}

/// Remembers the keys in `order` that are not chosen. Returns those that are.
AbsentKeys::Keys AbsentKeys::keep(std::vector<Slot> order) {
    removeRepeatedKeys(order);
    Keys chosen;
    for (const Slot& slot : order) {
        if (slot.isChosen) chosen.push_back(slot.key);
    }
    if (defaults_ != nullptr) remember(std::move(order));
    return chosen;
}

void AbsentKeys::remember(std::vector<Slot> order) {
    const Day today = std::chrono::floor<std::chrono::days>(wallClock_->now());
    for (Slot& slot : order) {
        if (slot.absentSince == Day()) slot.absentSince = today;
    }
    std::erase_if(order, [today](const Slot& slot) {
        return !slot.isChosen && today - slot.absentSince > longestAbsence;
    });
    while (order.size() > storage_.room) {
        order.erase(std::ranges::min_element(
            order, {}, [](const Slot& slot) { return std::pair(slot.isChosen, slot.absentSince); }));
    }
    std::vector<Absence> absences;
    for (std::size_t place = 0; place < order.size(); ++place) {
        if (!order[place].isChosen) absences.push_back({std::move(order[place]), place});
    }
    assign(std::move(absences));
}

void AbsentKeys::assign(std::vector<Absence> absences) {
    const TextList before = entriesOf(absences_);
    absences_ = std::move(absences);
    const TextList entries = entriesOf(absences_);
    if (entries == before) return;
    if (entries.empty()) {
        defaults_->remove(storage_.entry);
    } else {
        defaults_->setTextList(storage_.entry, entries);
    }
}

AbsentSelections::AbsentSelections(UserDefaults& defaults, const WallClock& wallClock, Log& log)
    : pins(defaults, {.entry = "KelvinbarAbsentPins", .room = maximumPinnedKeys}, wallClock, log)
    , hidden(defaults, {.entry = "KelvinbarAbsentHiddenKeys"}, wallClock, log) {}

} // namespace kelvinbar
