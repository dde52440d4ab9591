#include "desktop/linux/tray/TrayFindings.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::tray_findings_test {

namespace {

/// A session of GNOME with its extension, in which the program runs.
TrayFacts gnome() {
    return {.desktopNames = "GNOME",
            .hasBusAddress = true,
            .hasBus = true,
            .watcherProcess = "gnome-shell",
            .hasHost = true,
            .hasXEmbedTray = false,
            .isRunning = true,
            .isRegistered = true};
}

/// The same without a tray.
TrayFacts plainGnome() {
    TrayFacts facts = gnome();
    facts.watcherProcess.reset();
    facts.hasHost = false;
    facts.isRegistered.reset();
    return facts;
}

Finding find(const TrayFacts& facts, std::string_view subject) {
    const auto findings = trayFindings(facts);
    const auto found = std::ranges::find(findings, subject, &Finding::subject);
    if (found != findings.end()) return *found;
    ADD_FAILURE() << "nothing is said of " << subject;
    return {};
}

bool isSaid(const TrayFacts& facts, std::string_view subject) {
    return std::ranges::count(trayFindings(facts), subject, &Finding::subject) > 0;
}

TEST(TrayFindings, NothingIsWrongWhereTheTrayHasTheItem) {
    for (const Finding& finding : trayFindings(gnome())) {
        EXPECT_EQ(finding.state, FindingState::good) << finding.subject;
        EXPECT_EQ(finding.advice, "") << finding.subject;
    }
    EXPECT_EQ(find(gnome(), "desktop").found, "GNOME");
    EXPECT_EQ(find(gnome(), "tray").found, "StatusNotifierItem; the items are kept by gnome-shell");
    EXPECT_EQ(find(gnome(), "status item").found, "in the tray; the bar may hide it among others");
}

TEST(TrayFindings, TellsWhetherReadingsAreShownAsText) {
    EXPECT_EQ(find(gnome(), "pinned readings").found, "shown as text beside the icon");
    TrayFacts plasma = gnome();
    plasma.desktopNames = "KDE";
    plasma.watcherProcess = "kded5";
    EXPECT_TRUE(find(plasma, "pinned readings").found.starts_with("one of them is drawn into the icon"));
    EXPECT_FALSE(isSaid(plainGnome(), "pinned readings"));
}

TEST(TrayFindings, GnomeNeedsAnExtension) {
    const Finding tray = find(plainGnome(), "tray");
    EXPECT_EQ(tray.state, FindingState::problem);
    EXPECT_TRUE(contains(tray.advice, "gnome-shell-extension-appindicator")) << tray.advice;
    const Finding item = find(plainGnome(), "status item");
    EXPECT_EQ(item.state, FindingState::problem);
    EXPECT_EQ(item.advice, "Start \"kelvinbar\" again to open its panel");
}

TEST(TrayFindings, EveryDesktopHasItsOwnAdvice) {
    constexpr std::array<std::pair<const char*, const char*>, 8> advice{{{"Budgie:GNOME", "Budgie"},
                                                                         {"ubuntu:GNOME", "extension"},
                                                                         {"KDE", "widget"},
                                                                         {"XFCE", "Status Tray Plugin"},
                                                                         {"MATE", "Notification Area"},
                                                                         {"LXQt", "Status Notifier"},
                                                                         {"X-Cinnamon", "xapp-sn-watcher"},
                                                                         {"sway", "Waybar"}}};
    for (const auto& [names, word] : advice) {
        TrayFacts facts = plainGnome();
        facts.desktopNames = names;
        EXPECT_TRUE(contains(find(facts, "tray").advice, word)) << names;
    }
}

TEST(TrayFindings, AnUnknownDesktopHasGeneralAdvice) {
    TrayFacts facts = plainGnome();
    facts.desktopNames.clear();
    EXPECT_EQ(find(facts, "desktop").state, FindingState::note);
    EXPECT_TRUE(contains(find(facts, "tray").advice, "StatusNotifierItem or XEmbed"));
}

TEST(TrayFindings, AWatcherWithoutAHostShowsNothing) {
    TrayFacts facts = gnome();
    facts.hasHost = false;
    const Finding tray = find(facts, "tray");
    EXPECT_EQ(tray.state, FindingState::problem);
    EXPECT_TRUE(contains(tray.found, "no host")) << tray.found;
    EXPECT_EQ(find(facts, "status item").state, FindingState::problem);
}

TEST(TrayFindings, AnXEmbedTrayIsNoProblem) {
    TrayFacts facts = plainGnome();
    facts.hasXEmbedTray = true;
    EXPECT_EQ(find(facts, "tray").state, FindingState::note);
    EXPECT_TRUE(find(facts, "tray").found.starts_with("XEmbed; "));
    EXPECT_TRUE(find(facts, "status item").found.starts_with("offered to the XEmbed tray"));
    EXPECT_TRUE(isSaid(facts, "pinned readings"));
}

/// A session without a bus.
TrayFacts busless() {
    return {.desktopNames = "i3", .watcherProcess = std::nullopt, .isRegistered = std::nullopt};
}

TEST(TrayFindings, WithoutABusThereIsOnlyXEmbed) {
    const Finding bus = find(busless(), "session bus");
    EXPECT_EQ(bus.state, FindingState::problem);
    EXPECT_EQ(bus.found, "none, so that only XEmbed trays can show the item");
    EXPECT_TRUE(contains(bus.advice, "dbus-run-session")) << bus.advice;
}

TEST(TrayFindings, ABusThatCannotBeReachedIsNotNone) {
    TrayFacts facts = busless();
    facts.hasBusAddress = true;
    const Finding bus = find(facts, "session bus");
    EXPECT_EQ(bus.state, FindingState::problem);
    EXPECT_EQ(bus.found, "the one at DBUS_SESSION_BUS_ADDRESS cannot be reached, so that only XEmbed trays "
                         "can show the item");
}

TEST(TrayFindings, WithoutABusNothingIsSaidOfAWatcher) {
    EXPECT_EQ(find(busless(), "tray").found, "no XEmbed tray on an X server");
    EXPECT_EQ(find(busless(), "tray").state, FindingState::problem);
    TrayFacts facts = busless();
    facts.hasXEmbedTray = true;
    EXPECT_EQ(find(facts, "tray").found, "XEmbed");
    EXPECT_EQ(find(facts, "tray").state, FindingState::note);
}

TEST(TrayFindings, WithoutABusTheItemIsAtMostAnXEmbedIcon) {
    EXPECT_EQ(find(busless(), "status item").found,
              "none, since there is neither a session bus nor an XEmbed tray");
    TrayFacts facts = busless();
    facts.hasXEmbedTray = true;
    EXPECT_EQ(find(facts, "status item").found, "an icon in the XEmbed tray while the program runs");
}

TEST(TrayFindings, AProgramThatDoesNotRunIsNoProblem) {
    TrayFacts facts = gnome();
    facts.isRunning = false;
    facts.isRegistered.reset();
    EXPECT_EQ(find(facts, "status item").state, FindingState::note);
    EXPECT_EQ(find(facts, "status item").advice, "Start \"kelvinbar\"");
}

TEST(TrayFindings, AnItemThatTheTrayHasLostIsAProblem) {
    TrayFacts facts = gnome();
    facts.isRegistered = false;
    EXPECT_EQ(find(facts, "status item").state, FindingState::problem);
    EXPECT_NE(find(facts, "status item").advice, "");
    facts.isRegistered.reset(); // the watcher does not tell
    EXPECT_EQ(find(facts, "status item").state, FindingState::good);
}

} // namespace

} // namespace kelvinbar::tray_findings_test
