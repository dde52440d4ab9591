#include "tools/FollowedPreferences.h"

#include "machines/Platform.h"

namespace kelvinbar {

/// The stamp comes first: what is stored in between is read again.
std::optional<Dictionary> FollowedPreferences::read() {
    stamp_ = storedPreferencesStamp();
    return storedPreferenceLists();
}

std::optional<Dictionary> FollowedPreferences::changed() {
    return storedPreferencesStamp() == stamp_ ? std::nullopt : read();
}

} // namespace kelvinbar
