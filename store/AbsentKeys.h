#pragma once

#include "base/Clock.h"
#include "base/Log.h"
#include "store/UserDefaults.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Chosen keys - pins or hidden keys - that lost their reading, on a system whose devices come and go: a disk
/// is asleep, a dock is not connected yet, a driver fails once. They are not chosen any more, but remembered,
/// and chosen again when a pass finds their reading. Until then nobody sees them.
///
/// The chosen keys and the remembered ones together are slots in one order. A remembered key keeps its slot
/// while the user changes others. If the user needs its slot for another key, the key that has been absent
/// longest is forgotten.
///
/// Limits: a key is forgotten after 90 days. Days are those of the wall clock; one that is still to come, by
/// a clock that was wrong, counts as today.
///
/// Pitfall: a remembered key that another device has by now cannot be chosen for both. The user's choice
/// wins.
namespace kelvinbar {

/// What one list of chosen keys has lost. Writes preferences only when something changed. Main thread.
class AbsentKeys {
  public:
    using Keys = std::vector<std::string>;
    using KeyViews = std::unordered_set<std::string_view>;
    using CurrentKey = std::function<std::optional<std::string>(const std::string& key)>;

    static constexpr std::chrono::days longestAbsence{90};

    /// Where the keys are stored.
    struct Storage {
        std::string_view entry;                                     ///< in the preferences
        std::size_t room = std::numeric_limits<std::size_t>::max(); ///< for chosen and remembered keys
    };

    /// Remembers nothing: what a pass does not find is lost.
    AbsentKeys() = default;

    /// Loads the stored keys. Logs those that are broken, and drops them. The references must outlive the
    /// object.
    AbsentKeys(UserDefaults& defaults, Storage storage, const WallClock& wallClock, Log& log);

    /// The chosen keys after a pass that found the readings of `found`: without those that have none, and
    /// with remembered ones that have one. Remembers and forgets accordingly.
    Keys settled(const Keys& chosen, const KeyViews& found);

    /// The chosen keys after devices got other keys. No value from `currentKey`: another device has the key,
    /// so it is remembered until its own device is back.
    Keys moved(const Keys& chosen, const CurrentKey& currentKey);

    /// The user changed the chosen keys. Forgets those that the user chose anew, or took the slot of.
    void changed(const Keys& before, const Keys& after);

    void forget(std::string_view key);
    void forgetAll();

    /// The remembered keys that may come back at any time.
    [[nodiscard]] Keys waitingKeys() const { return rememberedKeys(false); }

    /// The remembered keys that another device has.
    [[nodiscard]] Keys takenKeys() const { return rememberedKeys(true); }

  private:
    using Day = std::chrono::sys_days;

    /// A chosen or a remembered key.
    struct Slot {
        std::string key;
        bool isChosen = true;
        bool isTaken = false; ///< another device has the key; known after a discovery
        Day absentSince{};    ///< of a remembered key; the epoch for one that has just lost its reading
    };

    /// A remembered key, and where it is among all slots.
    struct Absence {
        Slot slot;
        std::size_t place = 0;
    };

    [[nodiscard]] std::optional<Absence> parsed(std::string_view entry) const;
    [[nodiscard]] std::vector<Slot> slotsWith(const Keys& chosen) const;
    static void insertBehindNeighbour(std::vector<Slot>& order, std::span<const Slot> before,
                                      const Slot& slot);
    static void removeRepeatedKeys(std::vector<Slot>& order);
    static TextList entriesOf(const std::vector<Absence>& absences);
    Keys keep(std::vector<Slot> order);
    void remember(std::vector<Slot> order);
    void assign(std::vector<Absence> absences);
    [[nodiscard]] Keys rememberedKeys(bool areTaken) const;

    UserDefaults* defaults_ = nullptr; ///< null: remembers nothing
    const WallClock* wallClock_ = nullptr;
    Storage storage_;
    std::vector<Absence> absences_; ///< in the order of their places
};

/// The store's two lists of chosen keys. By default, both remember nothing.
struct AbsentSelections {
    AbsentSelections() = default;

    /// Remembers, in the preferences. See AbsentKeys.
    AbsentSelections(UserDefaults& defaults, const WallClock& wallClock, Log& log);

    AbsentKeys pins;
    AbsentKeys hidden;
};

} // namespace kelvinbar
