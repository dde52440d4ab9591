#pragma once

#include "catalogue/KeySet.h"
#include "sensors/SensorSource.h"
#include "store/UserDefaults.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// Keeps pins and hidden keys on the sensors they were chosen for when the key of a sensor changes: after a
/// restart that numbers devices differently, and once when upgrading from version 0.1.
///
/// A place is the device and channel behind a key (see KeyHistory). The places of pinned and hidden keys are
/// stored with the preferences. Main thread.
class KeyContinuity {
  public:
    /// Marks the migration as done in preferences that version 0.1 has not written.
    static void markCarriedOver(UserDefaults& defaults);

    /// Loads the stored places. `defaults` must outlive the object.
    explicit KeyContinuity(UserDefaults& defaults);

    /// Whether keys of version 0.1 still need to be migrated.
    [[nodiscard]] bool needsFormerKeys() const { return !isCarriedOver_; }

    /// Uses the history of the latest discovery from now on. Call before `currentKey`.
    void learn(KeyHistory history) { history_ = std::move(history); }

    /// The current key of the sensor that had `key` when it was stored. Returns `key` if nothing else is
    /// known.
    [[nodiscard]] std::optional<std::string> currentKey(const std::string& key) const;

    /// Stores the places of these keys if they changed, and marks the migration as done. `absent` are keys
    /// that another device has by now; they keep the places that are stored.
    void remember(const std::vector<std::string>& pinned, const KeySet& hidden,
                  const std::vector<std::string>& absent = {});

  private:
    using Places = std::map<std::string, std::string, std::less<>>;

    [[nodiscard]] static Places storedPlaces(const UserDefaults& defaults);
    void note(Places& places, const std::string& key) const;
    void noteStored(Places& places, const std::string& key) const;

    UserDefaults& defaults_;
    Places places_; ///< as stored, by key
    bool isCarriedOver_ = false;
    KeyHistory history_;
};

} // namespace kelvinbar
