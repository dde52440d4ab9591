#include "desktop/linux/tray/TrayFindings.h"

#include "desktop/linux/session/DesktopNames.h"
#include "desktop/linux/tray/LabelSupport.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

/// What a desktop needs for a tray.
struct TrayRow {
    std::string_view desktop; ///< name in XDG_CURRENT_DESKTOP, in lower case
    std::string_view advice;
};

/// Budgie and others also call themselves GNOME, so they come first.
constexpr std::array trayRows{
    TrayRow{"budgie", "Add the applet \"System Tray\" to the panel, in Budgie Desktop Settings"},
    TrayRow{"gnome", "Install the package gnome-shell-extension-appindicator, log out and in again, and run "
                     "\"gnome-extensions enable ubuntu-appindicators@ubuntu.com\""},
    TrayRow{"kde", "Add the widget \"System Tray\" to the panel"},
    TrayRow{"xfce", "Add the item \"Status Tray Plugin\" to the panel"},
    TrayRow{"mate", "Add the applet \"Notification Area\" to the panel"},
    TrayRow{"lxqt", "Add the plugin \"Status Notifier Plugin\" to the panel"},
    TrayRow{"x-cinnamon", "Add the applet \"XApp Status Applet\" to the panel, and install the package "
                          "xapp-sn-watcher"},
    TrayRow{"sway", "Add the module \"tray\" to Waybar, or a bar that has a tray"},
    TrayRow{"hyprland", "Add the module \"tray\" to Waybar, or a bar that has a tray"},
};

constexpr std::string_view usualAdvice =
    "Start a tray that knows StatusNotifierItem or XEmbed, such as the module \"tray\" of Waybar";

std::string trayAdvice(const std::string& desktopNames) {
    const auto* const row = std::ranges::find_if(
        trayRows, [&](const TrayRow& each) { return hasDesktopName(desktopNames, each.desktop); });
    return std::string(row == trayRows.end() ? usualAdvice : row->advice);
}

Finding desktopFinding(const TrayFacts& facts) {
    const bool isKnown = !facts.desktopNames.empty();
    return {.subject = "desktop",
            .state = isKnown ? FindingState::good : FindingState::note,
            .found = isKnown ? facts.desktopNames : "not known: XDG_CURRENT_DESKTOP is not set"};
}

Finding busFinding(const TrayFacts& facts) {
    if (facts.hasBus) return {.subject = "session bus", .found = "connected"};
    // The address itself may have the name of the host.
    const std::string reason =
        facts.hasBusAddress ? "the one at DBUS_SESSION_BUS_ADDRESS cannot be reached" : "none";
    return {.subject = "session bus",
            .state = FindingState::problem,
            .found = reason + ", so that only XEmbed trays can show the item",
            .advice = "Start the program from the desktop, or with \"dbus-run-session kelvinbar\""};
}

std::string watcherText(const TrayFacts& facts) {
    const std::string& process = *facts.watcherProcess;
    return "the items are kept by " + (process.empty() ? "an unknown process" : process);
}

/// Of the protocol StatusNotifierItem, which the program prefers.
bool hasItemTray(const TrayFacts& facts) { return facts.watcherProcess && facts.hasHost; }

/// Without a bus, nobody can be asked for the other protocol.
Finding trayFindingWithoutBus(const TrayFacts& facts) {
    if (facts.hasXEmbedTray) return {.subject = "tray", .state = FindingState::note, .found = "XEmbed"};
    return {.subject = "tray", .state = FindingState::problem, .found = "no XEmbed tray on an X server"};
}

Finding trayFinding(const TrayFacts& facts) {
    if (!facts.hasBus) return trayFindingWithoutBus(facts);
    Finding finding{.subject = "tray", .found = {}};
    if (hasItemTray(facts)) {
        finding.found = "StatusNotifierItem; " + watcherText(facts);
        return finding;
    }
    const std::string reason = facts.watcherProcess
                                   ? "no host shows StatusNotifierItem; " + watcherText(facts)
                                   : "none for StatusNotifierItem: nobody has the name of its watcher";
    if (facts.hasXEmbedTray) {
        finding.state = FindingState::note;
        finding.found = "XEmbed; " + reason;
        return finding;
    }
    finding.state = FindingState::problem;
    finding.found = reason + ", and no XEmbed tray on an X server";
    finding.advice = trayAdvice(facts.desktopNames);
    return finding;
}

Finding labelFinding(const TrayFacts& facts) {
    const bool hasLabels = hasItemTray(facts) && showsLabels(*facts.watcherProcess, facts.desktopNames);
    return {.subject = "pinned readings",
            .found = hasLabels ? "shown as text beside the icon"
                               : "one of them is drawn into the icon, since the tray shows no text"};
}

/// Nobody can be asked whether the program runs.
Finding itemFindingWithoutBus(const TrayFacts& facts) {
    return {.subject = "status item",
            .state = FindingState::note,
            .found = facts.hasXEmbedTray ? "an icon in the XEmbed tray while the program runs"
                                         : "none, since there is neither a session bus nor an XEmbed tray"};
}

Finding itemFinding(const TrayFacts& facts) {
    if (!facts.hasBus) return itemFindingWithoutBus(facts);
    const auto problem = [](std::string found, std::string advice) {
        return Finding{.subject = "status item",
                       .state = FindingState::problem,
                       .found = std::move(found),
                       .advice = std::move(advice)};
    };
    if (!facts.isRunning) {
        return {.subject = "status item",
                .state = FindingState::note,
                .found = "the program does not run on this session bus",
                .advice = "Start \"kelvinbar\""};
    }
    if (!hasItemTray(facts) && !facts.hasXEmbedTray) {
        return problem("cannot be seen: the program runs, and no tray shows it",
                       "Start \"kelvinbar\" again to open its panel");
    }
    if (!hasItemTray(facts)) {
        return {.subject = "status item",
                .state = FindingState::note,
                .found = "offered to the XEmbed tray, if no other tray ran when the program was started"};
    }
    if (facts.isRegistered == false) {
        return problem("the program runs, but the tray does not know its item",
                       "Quit it and start it again; \"kelvinbar --verbose\" says what the tray answers");
    }
    return {.subject = "status item",
            .found = facts.isRegistered ? "in the tray; the bar may hide it among others"
                                        : "offered to the tray, which does not tell its items"};
}

} // namespace

std::vector<Finding> trayFindings(const TrayFacts& facts) {
    std::vector<Finding> findings{desktopFinding(facts), busFinding(facts), trayFinding(facts)};
    if (hasItemTray(facts) || facts.hasXEmbedTray) findings.push_back(labelFinding(facts));
    findings.push_back(itemFinding(facts));
    return findings;
}

} // namespace kelvinbar
