#include "desktop/linux/TrayItem.h"

#include "desktop/linux/ReadingIcon.h"
#include "tests/desktop/BusPeer.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr TrayStyle withLabels{.showsLabels = true, .isDark = true};
constexpr TrayStyle withoutLabels{.showsLabels = false, .isDark = true};

/// A tray item and its host.
class Tray {
  public:
    explicit Tray(TrayStyle style)
        : handlers_{.pinnedReadings =
                        [this] {
                            if (whenAskedForPins) whenAskedForPins();
                            return pinned;
                        },
                    .openPanel = {},
                    .quit = [this] { ++quits; }}
        , item(bus_.connection(), style, handlers_, recording.log)
        , host(bus_.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem")
        , menu_(bus_.address(), StatusMenu::path, "com.canonical.dbusmenu") {
        item.setAction([this] { ++actions; });
    }

    void setTitle(const std::string& text) {
        item.setTitle({text, {}});
        QCoreApplication::processEvents(); // publishes it
    }

    void setOwnIcon() {
        StatusImage image;
        image.name = "MenuBarIcon";
        item.setImageLeftOfTitle(image);
    }

    StatusNotifierPixmaps icons() {
        return qdbus_cast<StatusNotifierPixmaps>(host.properties()["IconPixmap"].value<QDBusArgument>());
    }

    qsizetype newIcons() { return host.received("NewIcon").size(); }

    /// The entries of the menu; "-" for a separator.
    std::vector<std::string> entries() {
        std::vector<std::string> texts;
        for (const StatusMenuLayout& child : children()) {
            const bool isSeparator = child.properties["type"].toString() == "separator";
            texts.push_back(isSeparator ? "-" : child.properties["label"].toString().toStdString());
        }
        return texts;
    }

    void clickEntry(qsizetype place) {
        const int id = children().at(place).id;
        menu_.call("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(QString())), 0U});
    }

    std::vector<PinnedReading> pinned;
    std::function<void()> whenAskedForPins;
    int actions = 0;
    int quits = 0;
    fakes::RecordingLog recording{"tray=debug"};

  private:
    QList<StatusMenuLayout> children() {
        const QDBusMessage reply = menu_.call("GetLayout", {0, -1, QStringList()});
        EXPECT_EQ(reply.arguments().size(), 2);
        return qdbus_cast<StatusMenuLayout>(reply.arguments().value(1).value<QDBusArgument>()).children;
    }

    PrivateBus bus_;
    DesktopHandlers handlers_;

  public:
    TrayItem item;
    BusPeer host;

  private:
    BusPeer menu_;
};

std::vector<int> widths(const StatusNotifierPixmaps& pixmaps) {
    std::vector<int> widths;
    for (const StatusNotifierPixmap& pixmap : pixmaps) {
        EXPECT_EQ(pixmap.width, pixmap.height);
        EXPECT_EQ(pixmap.pixels.size(), pixmap.width * pixmap.height * 4);
        widths.push_back(pixmap.width);
    }
    return widths;
}

const PinnedReading cpu{"CPU", "49.8 °C", "49.80°"};
const PinnedReading fan{"Fan", "1200 rpm", "1200rpm"};

} // namespace

TEST(TrayStyle, HasLabelsWhereTheTrayShowsThem) {
    for (const auto* const name : {"ubuntu:GNOME", "GNOME", "MATE", "gnome"}) {
        EXPECT_TRUE(trayStyle(name, false).showsLabels) << name;
    }
    for (const auto* const name : {"KDE", "XFCE", "LXQt", "sway", "X-Cinnamon", ""}) {
        EXPECT_FALSE(trayStyle(name, false).showsLabels) << name;
    }
}

TEST(TrayStyle, FollowsTheColoursOfProgramsOnKDE) {
    EXPECT_TRUE(trayStyle("KDE", true).isDark);
    EXPECT_FALSE(trayStyle("KDE", false).isDark);
}

TEST(TrayStyle, IsDarkOnOtherDesktops) {
    for (const auto* const name : {"ubuntu:GNOME", "XFCE", ""}) {
        EXPECT_TRUE(trayStyle(name, false).isDark) << name;
        EXPECT_TRUE(trayStyle(name, true).isDark) << name;
    }
}

TEST(TrayItem, HasItsTitleAsLabelAndTitle) {
    Tray tray(withLabels);
    tray.setTitle(" 50° 1200rpm ");
    const QVariantMap properties = tray.host.properties();
    EXPECT_EQ(properties["XAyatanaLabel"].toString(), "50° 1200rpm");
    EXPECT_EQ(properties["Title"].toString(), "50° 1200rpm");
}

TEST(TrayItem, HasItsNameAsTitleWhereItHasNone) {
    Tray tray(withLabels);
    EXPECT_EQ(tray.host.properties()["Title"].toString(), "Kelvinbar");
    tray.setTitle("50°");
    tray.setTitle("  ");
    const QVariantMap properties = tray.host.properties();
    EXPECT_EQ(properties["Title"].toString(), "Kelvinbar");
    EXPECT_EQ(properties["XAyatanaLabel"].toString(), "");
}

TEST(TrayItem, HasItsToolTip) {
    Tray tray(withoutLabels);
    tray.item.setToolTip("CPU: 49.8 °C\nFan: 1200 rpm");
    const auto toolTip =
        qdbus_cast<StatusNotifierToolTip>(tray.host.properties()["ToolTip"].value<QDBusArgument>());
    EXPECT_EQ(toolTip.title, "Kelvinbar");
    EXPECT_EQ(toolTip.text, "CPU: 49.8 °C\nFan: 1200 rpm");
    EXPECT_EQ(tray.host.received("NewToolTip").size(), 1);
}

TEST(TrayItem, HasOurIconInAllSides) {
    Tray tray(withLabels);
    tray.setOwnIcon();
    EXPECT_THAT(widths(tray.icons()), ElementsAreArray(iconSides));
}

TEST(TrayItem, HasOurIconWhereLabelsAreShown) {
    Tray tray(withLabels);
    tray.setOwnIcon();
    const auto own = tray.icons();
    tray.pinned = {cpu};
    tray.setTitle("49.80°");
    EXPECT_EQ(tray.icons(), own);
    EXPECT_EQ(tray.newIcons(), 1);
}

TEST(TrayItem, HasOurIconWhereNothingIsPinned) {
    Tray tray(withoutLabels);
    tray.setOwnIcon();
    const auto own = tray.icons();
    EXPECT_FALSE(own.isEmpty());
    tray.pinned = {cpu};
    tray.setTitle("49.80°");
    EXPECT_NE(tray.icons(), own);
    tray.pinned.clear();
    tray.setTitle("");
    EXPECT_EQ(tray.icons(), own);
}

TEST(TrayItem, HasTheFirstPinnedReadingAsIconInAllSides) {
    Tray tray(withoutLabels);
    tray.setOwnIcon();
    tray.pinned = {cpu, fan};
    tray.setTitle("49.80° 1200rpm");
    const auto icons = tray.icons();
    EXPECT_THAT(widths(icons), ElementsAreArray(iconSides));
    EXPECT_EQ(icons, ReadingIcons(true).pixmaps("49.80°"));
    EXPECT_NE(icons, ReadingIcons(false).pixmaps("49.80°"));
    EXPECT_NE(icons, ReadingIcons(true).pixmaps("1200rpm"));
}

TEST(TrayItem, DrawsTheReadingInTheColourOfTheTray) {
    Tray tray({.showsLabels = false, .isDark = false});
    tray.pinned = {cpu};
    tray.setTitle("49.80°");
    EXPECT_EQ(tray.icons(), ReadingIcons(false).pixmaps("49.80°"));
}

TEST(TrayItem, DrawsTheReadingAgainOnlyWhenItsTextChanged) {
    Tray tray(withoutLabels);
    tray.pinned = {cpu, fan};
    tray.setTitle("49.80° 1200rpm");
    EXPECT_EQ(tray.newIcons(), 1);
    tray.pinned = {{"CPU", "49.9 °C", "49.90°"}, fan}; // the icon's text is 50° as before
    tray.setTitle("49.90° 1200rpm");
    tray.pinned[1].compactValue = "1300rpm";
    tray.setTitle("49.90° 1300rpm");
    tray.item.setToolTip("CPU: 49.9 °C");
    EXPECT_EQ(tray.newIcons(), 1);
    tray.pinned[0].compactValue = "51.00°";
    tray.setTitle("51.00° 1300rpm");
    EXPECT_EQ(tray.newIcons(), 2);
}

TEST(TrayItem, PublishesTitleAndToolTipTogether) {
    Tray tray(withLabels);
    int questions = 0;
    tray.whenAskedForPins = [&] { ++questions; };
    tray.item.setTitle({"50°", {}});
    tray.item.setToolTip("CPU: 50 °C");
    EXPECT_EQ(questions, 0);
    QCoreApplication::processEvents(); // publishes both
    EXPECT_EQ(tray.host.received("XAyatanaNewLabel").size(), 1);
    EXPECT_EQ(tray.host.received("NewToolTip").size(), 1);
    EXPECT_EQ(questions, 1);
}

TEST(TrayItem, DoesNotPublishAnEqualTitle) {
    Tray tray(withLabels);
    tray.setTitle("50°");
    tray.setTitle("50°");
    EXPECT_EQ(tray.host.received("XAyatanaNewLabel").size(), 1);
    EXPECT_EQ(tray.host.received("NewTitle").size(), 1);
}

TEST(TrayItem, HasAMenuOfThePinnedReadingsAndWhatCanBeDone) {
    Tray tray(withLabels);
    EXPECT_THAT(tray.entries(), ElementsAre("Open Kelvinbar", "Quit Kelvinbar"));
    tray.pinned = {cpu, fan};
    tray.setTitle("50° 1200rpm");
    EXPECT_THAT(tray.entries(),
                ElementsAre("CPU: 49.8 °C", "Fan: 1200 rpm", "-", "Open Kelvinbar", "Quit Kelvinbar"));
    tray.pinned.clear();
    tray.setTitle("");
    EXPECT_THAT(tray.entries(), ElementsAre("Open Kelvinbar", "Quit Kelvinbar"));
}

TEST(TrayItem, OpensFromItsMenu) {
    Tray tray(withLabels);
    tray.pinned = {cpu};
    tray.setTitle("50°");
    tray.clickEntry(0);
    EXPECT_EQ(tray.actions, 1);
    tray.clickEntry(2);
    EXPECT_EQ(tray.actions, 2);
    EXPECT_EQ(tray.quits, 0);
}

TEST(TrayItem, QuitsFromItsMenu) {
    Tray tray(withLabels);
    tray.clickEntry(1);
    EXPECT_EQ(tray.quits, 1);
    EXPECT_EQ(tray.actions, 0);
}

TEST(TrayItem, IsWhereItWasClicked) {
    Tray tray(withoutLabels);
    EXPECT_EQ(tray.item.frameOnScreen(), std::nullopt);
    EXPECT_EQ(tray.item.visibleFrameOfScreen(), std::nullopt);
    tray.host.call("Activate", {300, 20});
    EXPECT_EQ(tray.actions, 1);
    const auto frame = tray.item.frameOnScreen();
    ASSERT_TRUE(frame.has_value());
    EXPECT_EQ(frame->x, 300);
    EXPECT_EQ(frame->y, 20);
    const auto screen = tray.item.visibleFrameOfScreen();
    ASSERT_TRUE(screen.has_value());
    EXPECT_GT(screen->width, 0);
    EXPECT_GT(screen->height, 0);
}

TEST(TrayItem, LogsHowItIsShownAndWhereItIsClicked) {
    Tray tray(withLabels);
    tray.item.activate(QRect(700, 4, 1, 1));
    EXPECT_THAT(tray.recording.lines(),
                ElementsAre("kelvinbar: tray info: no watcher runs",
                            "kelvinbar: tray debug: readings are beside the icon, for a dark panel",
                            "kelvinbar: tray debug: clicked at 700, 4"));
}

TEST(TrayItem, TakesTheOriginForNoPlace) {
    Tray tray(withoutLabels);
    tray.host.call("Activate", {0, 0});
    EXPECT_EQ(tray.actions, 1);
    EXPECT_EQ(tray.item.frameOnScreen(), std::nullopt);
    tray.host.call("Activate", {300, 20});
    tray.host.call("Activate", {0, 0});
    EXPECT_EQ(tray.actions, 3);
    ASSERT_TRUE(tray.item.frameOnScreen().has_value());
    EXPECT_EQ(tray.item.frameOnScreen()->x, 300);
}

TEST(TrayItem, StaysWhereItWasWhenItsMenuOpensThePanel) {
    Tray tray(withoutLabels);
    tray.host.call("Activate", {300, 20});
    tray.clickEntry(0);
    EXPECT_EQ(tray.actions, 2);
    ASSERT_TRUE(tray.item.frameOnScreen().has_value());
    EXPECT_EQ(tray.item.frameOnScreen()->x, 300);
}

TEST(TrayStatusBar, FindsTheImagesInTheProgram) {
    const PrivateBus bus;
    const DesktopHandlers handlers;
    fakes::RecordingLog recording;
    const TrayStatusBar statusBar(bus.connection(), withLabels, handlers, recording.log);
    EXPECT_TRUE(statusBar.hasImageResource("MenuBarIcon"));
    EXPECT_FALSE(statusBar.hasImageResource("NoSuchIcon"));
    EXPECT_FALSE(statusBar.hasImageResource(""));
}

TEST(TrayStatusBar, MakesAnItemOnTheBus) {
    const PrivateBus bus;
    const DesktopHandlers handlers;
    fakes::RecordingLog recording;
    TrayStatusBar statusBar(bus.connection(), withLabels, handlers, recording.log);
    const auto item = statusBar.makeItem();
    ASSERT_NE(item->button(), nullptr);
    item->button()->setTitle({"50°", {}});
    BusPeer host(bus.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    EXPECT_EQ(host.properties()["XAyatanaLabel"].toString(), "50°");
}

/// An item whose action destroys it, and uses what it has captured afterwards.
class MortalItem {
  public:
    MortalItem() {
        item->setAction([this, witness = witness_] {
            item = nullptr;
            ++*witness;
        });
    }

    [[nodiscard]] int actions() const { return *witness_; }

  private:
    std::shared_ptr<int> witness_ = std::make_shared<int>(0);
    fakes::RecordingLog recording_;
    const DesktopHandlers handlers_;

  public:
    PrivateBus bus;
    std::unique_ptr<TrayItem> item =
        std::make_unique<TrayItem>(bus.connection(), withLabels, handlers_, recording_.log);
};

TEST(TrayItem, MayBeDestroyedByItsAction) {
    MortalItem mortal;
    mortal.item->activate(QRect(1, 1, 1, 1));
    EXPECT_EQ(mortal.actions(), 1);
    EXPECT_EQ(mortal.item, nullptr);
}

TEST(TrayItem, MayBeDestroyedByItsActionWhenTheHostActivatesIt) {
    MortalItem mortal;
    BusPeer host(mortal.bus.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    host.call("Activate", {1, 1});
    EXPECT_EQ(mortal.actions(), 1);
    EXPECT_EQ(mortal.item, nullptr);
}

TEST(TrayItem, MayBeDestroyedByItsMenu) {
    MortalItem mortal;
    BusPeer menu(mortal.bus.address(), StatusMenu::path, "com.canonical.dbusmenu");
    menu.call("Event", {1, "clicked", QVariant::fromValue(QDBusVariant(QString())), 0U});
    EXPECT_EQ(mortal.actions(), 1);
    EXPECT_EQ(mortal.item, nullptr);
}

} // namespace kelvinbar
