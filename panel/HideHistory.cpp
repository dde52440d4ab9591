#include "panel/HideHistory.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "store/KelvinbarStore.h"
#include "store/MenuBarText.h"

#include <algorithm>

namespace kelvinbar {

namespace {

std::optional<std::size_t> placeOfPin(const KelvinbarStore& store, const std::string& key) {
    const auto& pins = store.menuBarKeys().value();
    const auto found = std::ranges::find(pins, key);
    if (found == pins.end()) return std::nullopt;
    return static_cast<std::size_t>(found - pins.begin());
}

void pinAt(KelvinbarStore& store, const std::string& key, std::size_t place) {
    auto pins = store.menuBarKeys().value();
    if (pins.size() >= maximumPinnedKeys) return;
    pins.insert(pins.begin() + static_cast<std::ptrdiff_t>(std::min(place, pins.size())), key);
    store.setMenuBarKeys(pins);
}

} // namespace

void HideHistory::hide(KelvinbarStore& store, const SMCReading& reading) {
    forgetShown(store);
    const std::string key(trimmed(reading.key));
    entries_.push_back({key, placeOfPin(store, key)});
    store.hideReading(reading);
}

void HideHistory::undo(KelvinbarStore& store) {
    forgetShown(store);
    if (entries_.empty()) return;
    const Entry last = entries_.back();
    entries_.pop_back();
    store.showReading(last.key);
    if (last.pin) pinAt(store, last.key, *last.pin);
}

void HideHistory::forgetShown(const KelvinbarStore& store) {
    std::erase_if(entries_,
                  [&](const Entry& entry) { return !store.hiddenKeys().value().contains(entry.key); });
}

std::vector<const SMCReading*> hiddenReadings(const KelvinbarStore& store) {
    std::vector<const SMCReading*> hidden;
    for (const SMCReading& reading : store.readings().value()) {
        if (store.hiddenKeys().value().contains(reading.key)) hidden.push_back(&reading);
    }
    std::ranges::stable_sort(hidden, [](const SMCReading* left, const SMCReading* right) {
        return comesBeforeNaturally(left->name, right->name);
    });
    return hidden;
}

} // namespace kelvinbar
