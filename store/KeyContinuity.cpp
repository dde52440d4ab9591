#include "store/KeyContinuity.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::string_view keyPlacesKey = "KelvinbarKeyPlaces";
constexpr std::string_view keysCarriedOverKey = "KelvinbarKeysCarriedOver";

constexpr char separator = '\t'; // not part of any key

} // namespace

void KeyContinuity::markCarriedOver(UserDefaults& defaults) { defaults.setNumber(keysCarriedOverKey, 1); }

KeyContinuity::KeyContinuity(UserDefaults& defaults)
    : defaults_(defaults)
    , places_(storedPlaces(defaults))
    , isCarriedOver_(defaults.number(keysCarriedOverKey) > 0) {}

KeyContinuity::Places KeyContinuity::storedPlaces(const UserDefaults& defaults) {
    Places places;
    for (const std::string& entry : defaults.textList(keyPlacesKey).value_or(TextList{})) {
        const std::size_t end = entry.find(separator);
        if (end != std::string::npos) places.emplace(entry.substr(0, end), entry.substr(end + 1));
    }
    return places;
}

std::optional<std::string> KeyContinuity::currentKey(const std::string& key) const {
    if (const auto stored = places_.find(key); stored != places_.end()) {
        const auto isThere = [&](const auto& entry) { return entry.second == stored->second; };
        const auto found = std::ranges::find_if(history_.places, isThere);
        if (found != history_.places.end()) return found->first;
        if (history_.places.contains(key)) return std::nullopt; // another device has the key now
    }
    if (isCarriedOver_ || !history_.formerKeys) return key;
    const auto former = history_.formerKeys->find(key);
    return former == history_.formerKeys->end() ? key : former->second;
}

/// Adds the place of `key`. If its device is absent, keeps the stored one.
void KeyContinuity::note(Places& places, const std::string& key) const {
    if (const auto now = history_.places.find(key); now != history_.places.end()) {
        places.insert_or_assign(key, now->second);
    } else {
        noteStored(places, key);
    }
}

void KeyContinuity::noteStored(Places& places, const std::string& key) const {
    if (const auto stored = places_.find(key); stored != places_.end()) {
        places.insert_or_assign(key, stored->second);
    }
}

void KeyContinuity::remember(const std::vector<std::string>& pinned, const KeySet& hidden,
                             const std::vector<std::string>& absent) {
    Places places;
    for (const std::string& key : absent) noteStored(places, key);
    for (const std::string& key : pinned) note(places, key);
    for (const std::string& key : hidden) note(places, key);
    if (history_.formerKeys && !isCarriedOver_) {
        markCarriedOver(defaults_);
        isCarriedOver_ = true;
    }
    if (places == places_) return;
    TextList entries;
    for (const auto& [key, place] : places) entries.push_back(std::string(key) + separator + place);
    if (entries.empty()) {
        defaults_.remove(keyPlacesKey);
    } else {
        defaults_.setTextList(keyPlacesKey, entries);
    }
    places_ = std::move(places);
}

} // namespace kelvinbar
