#include "shell/StatusMenuItems.h"

#include "base/Text.h"

namespace kelvinbar {

namespace {

StatusMenuItem separator(const char* identity) { return {identity, "", StatusMenuCommand::none}; }

/// A press on a reading opens the panel, where there is more about it.
StatusMenuItem itemOf(const PinnedReading& reading) {
    return {"pin:" + reading.key, directionIsolated(reading.name) + ": " + reading.value,
            StatusMenuCommand::openPanel};
}

} // namespace

std::vector<StatusMenuItem> statusMenuItems(const std::vector<PinnedReading>& pinned) {
    std::vector<StatusMenuItem> items;
    items.reserve(pinned.size() + 7);
    for (const PinnedReading& reading : pinned) items.push_back(itemOf(reading));
    if (!pinned.empty()) items.push_back(separator("separator:pins"));
    items.push_back({"open", "Open Kelvinbar", StatusMenuCommand::openPanel});
    items.push_back({"refresh", "Refresh", StatusMenuCommand::refresh});
    items.push_back({"copy", "Copy", StatusMenuCommand::copy});
    items.push_back(separator(lastSeparatorIdentity));
    items.push_back({"about", "About", StatusMenuCommand::openAbout});
    items.push_back({"quit", "Quit", StatusMenuCommand::quit});
    return items;
}

} // namespace kelvinbar
