#pragma once

#include "catalogue/KeySet.h"
#include "sensors/SensorSource.h"
#include "store/UserDefaults.h"

#include <map>
#include <string>
#include <vector>

namespace kelvinbar {

/// Keeps pinned and hidden keys on the sensors they were chosen for, where the text of a key may change: when
/// a device gets another number after a restart, and once when keys of version 0.1 are read.
///
/// The place of each such key is stored with the preferences. Main thread.
class KeyContinuity {
  public:
    /// Reads what was stored. `defaults` outlives the object.
    explicit KeyContinuity(UserDefaults& defaults);

    /// Whether the keys of version 0.1 are still to be carried over.
    [[nodiscard]] bool needsFormerKeys() const { return !isCarriedOver_; }

    /// Takes what a discovery found. Call before `currentKey`.
    void learn(KeyHistory history) { history_ = std::move(history); }

    /// The key that the sensor behind a stored key has now; `key` itself when nothing else is known.
    [[nodiscard]] std::string currentKey(const std::string& key) const;

    /// Stores the places of the chosen keys when they have changed, and that former keys were carried over.
    void remember(const std::vector<std::string>& pinned, const KeySet& hidden);

  private:
    using Places = std::map<std::string, std::string, std::less<>>;

    [[nodiscard]] static Places storedPlaces(const UserDefaults& defaults);
    void note(Places& places, const std::string& key) const;

    UserDefaults& defaults_;
    Places places_; ///< as stored, by key
    bool isCarriedOver_ = false;
    KeyHistory history_;
};

} // namespace kelvinbar
