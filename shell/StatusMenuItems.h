#pragma once

#include <string>
#include <vector>

/// The status item's menu on every desktop: which entries it has, their texts and their order. A desktop
/// shows the list in its own kind of menu and runs the commands. Plain functions; any thread.
namespace kelvinbar {

/// A pinned reading, for status items that show more than their title, such as a menu.
struct PinnedReading {
    std::string key; ///< of the sensor; no two pinned readings have the same
    std::string name;
    std::string value;        ///< with unit
    std::string compactValue; ///< short form, as in the title

    friend bool operator==(const PinnedReading&, const PinnedReading&) = default;
};

/// What the choice of an entry does.
enum class StatusMenuCommand {
    none, ///< the entry is a separator
    openPanel,
    refresh,
    copy,
    openAbout,
    quit
};

/// An entry of the menu.
struct StatusMenuItem {
    /// Names the entry for as long as it means the same: a reading keeps its identity when its value changes.
    /// No two entries have the same.
    std::string identity;
    std::string text; ///< empty for a separator
    StatusMenuCommand command = StatusMenuCommand::none;

    friend bool operator==(const StatusMenuItem&, const StatusMenuItem&) = default;
};

/// The identity of the separator above the last entries. A desktop may put entries of its own in front of it.
inline constexpr auto lastSeparatorIdentity = "separator:last";

/// The entries from top to bottom, the pinned readings first.
std::vector<StatusMenuItem> statusMenuItems(const std::vector<PinnedReading>& pinned);

} // namespace kelvinbar
