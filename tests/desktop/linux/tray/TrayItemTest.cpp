#include "desktop/linux/tray/TrayItem.h"

#include "desktop/linux/tray/ReadingIcon.h"
#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/linux/tray/PlasmaSettings.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/fakes/RecordingUserDefaults.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QEvent>
#include <algorithm>
#include <chrono>
#include <memory>
#include <pthread.h>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::tray_item_test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

/// Without a watcher, the desktop's name decides whether labels are shown.
constexpr auto withLabels = "MATE";
constexpr auto withoutLabels = "XFCE";

/// Gives the process another name while it exists.
class ProcessName {
  public:
    explicit ProcessName(const char* name) { EXPECT_EQ(pthread_setname_np(pthread_self(), name), 0); }

    ProcessName(const ProcessName&) = delete;
    ProcessName& operator=(const ProcessName&) = delete;

    ~ProcessName() { pthread_setname_np(pthread_self(), "kelvinbar_deskt"); }
};

constexpr std::chrono::milliseconds turn{10};

/// The preferences of a user who has chosen to see the readings by turns.
const fakes::RecordingUserDefaults alternating = [] {
    fakes::RecordingUserDefaults defaults;
    defaults.values.setNumber(TrayItem::alternatesKey, 1);
    return defaults;
}();

/// What an icon in an XEmbed tray shows.
struct XEmbedState {
    bool isShown = false;
    qsizetype sizes = 0;
    int icons = 0; ///< how often it was set
    QString toolTip;
    bool hasTray = true;
    XEmbedTrayHandlers handlers;
};

class FakeXEmbedIcon final : public XEmbedTrayIcon {
  public:
    explicit FakeXEmbedIcon(XEmbedState& state) : state_(state) {}

    void setIcon(const QList<QImage>& sizes) override {
        state_.sizes = sizes.size();
        ++state_.icons;
    }

    void setToolTip(const QString& text) override { state_.toolTip = text; }

    void setShown(bool isShown) override { state_.isShown = isShown; }

    [[nodiscard]] bool hasTray() const override { return state_.hasTray; }

  private:
    XEmbedState& state_;
};

/// A tray item and its host.
class Tray {
  public:
    /// With `xembedState`, XEmbed trays are supported.
    explicit Tray(const std::string& desktopNames, fakes::RecordingUserDefaults stored = {},
                  XEmbedState* xembedState = nullptr)
        : defaults(std::move(stored))
        , handlers_{.pinnedReadings =
                        [this] {
                            if (whenAskedForPins) whenAskedForPins();
                            return pinned;
                        },
                    .openPanel = note("open"),
                    .refresh = note("refresh"),
                    .copy = note("copy"),
                    .openAbout = note("about"),
                    .quit = note("quit")}
        , colors_(desktopNames, bus_.connection(), plasma.folders())
        , context_{.desktopNames = desktopNames,
                   .colors = colors_,
                   .userDefaults = defaults,
                   .busKeeper = keeper_,
                   .surroundings = {.placeOfClick = [this](QPoint reported) -> std::optional<QPoint> {
                                        if (reported.isNull()) return std::nullopt;
                                        return reported + clickOffset;
                                    },
                                    .visibleFrameAround = [](const Rect&) { return Rect{0, 28, 1280, 772}; },
                                    .takesClick = [this] { return takesClick; }},
                   .makeXEmbedIcon =
                       [xembedState](XEmbedTrayHandlers handlers) -> std::unique_ptr<XEmbedTrayIcon> {
                       if (xembedState == nullptr) return nullptr;
                       xembedState->handlers = std::move(handlers);
                       return std::make_unique<FakeXEmbedIcon>(*xembedState);
                   },
                   .desktopEntries = [this] { return desktopEntries; },
                   .focusRightGiven =
                       [this](const FocusRight& right) {
                           rights.push_back(right);
                           done.emplace_back("focus");
                       },
                   .turn = turn}
        , item(bus_.connection(), context_, handlers_, recording.log)
        , host(bus_.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem")
        , menu_(bus_.address(), StatusMenu::path, "com.canonical.dbusmenu") {
        item.setAction(note("toggle"));
    }

    /// Waits until it is known whether there is a tray.
    void settle() {
        EXPECT_TRUE(waitFor([this] { return item.hasTray().has_value(); }));
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

    StatusNotifierToolTip toolTip() {
        return qdbus_cast<StatusNotifierToolTip>(host.properties()["ToolTip"].value<QDBusArgument>());
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

    /// Clicks the entry whose label begins with `text`, at a time of the display server.
    void clickEntry(const QString& text, uint timestamp = 0) {
        for (const StatusMenuLayout& child : children()) {
            if (!child.properties["label"].toString().startsWith(text)) continue;
            menu_.call("Event",
                       {child.id, "clicked", QVariant::fromValue(QDBusVariant(QString())), timestamp});
            return;
        }
        ADD_FAILURE() << "no entry is called " << text.toStdString();
    }

    void pin(std::vector<PinnedReading> readings) {
        pinned = std::move(readings);
        setTitle("title " + std::to_string(++pins_));
    }

    [[nodiscard]] auto toggles() const { return std::ranges::count(done, "toggle"); }

    /// Whether the menu has the entry, marked or not.
    bool isOffered(const QString& label, bool isChecked) {
        return std::ranges::any_of(children(), [&](const StatusMenuLayout& child) {
            return child.properties["label"] == label && child.properties["toggle-state"] == int{isChecked};
        });
    }

    /// Whether the item does anything without a reason from outside, for several turns.
    bool wakesUp() {
        int questions = 0;
        whenAskedForPins = [&] { ++questions; };
        runEventLoop(10 * turn);
        whenAskedForPins = {};
        return questions > 0;
    }

    /// Waits until the icon shows this value.
    bool comesToShow(const QString& value) {
        return waitFor([&] { return shows(value); });
    }

    /// Reports a palette that is as it was, after which colours are looked at.
    static void reportPalette() {
        QEvent event(QEvent::ApplicationPaletteChange);
        QCoreApplication::sendEvent(qApp, &event);
        QCoreApplication::processEvents(); // publishes the icon
    }

    void removeHandlers() { handlers_ = {}; }

    /// Whether the icon shows this value.
    bool shows(const QString& value, bool isDark = true) {
        return icons() == ReadingIcons(isDark).pixmaps(value);
    }

    PlasmaSettings plasma;
    fakes::RecordingUserDefaults defaults;
    std::vector<PinnedReading> pinned;
    std::function<void()> whenAskedForPins;
    std::vector<StatusMenuEntry> desktopEntries;
    std::vector<std::string> done; ///< what the item asked for, in order
    std::vector<FocusRight> rights;
    fakes::RecordingLog recording{"tray=debug"};

  private:
    std::function<void()> note(const char* what) {
        return [this, what] { done.emplace_back(what); };
    }

    QList<StatusMenuLayout> children() {
        const QDBusMessage reply = menu_.call("GetLayout", {0, -1, QStringList()});
        EXPECT_EQ(reply.arguments().size(), 2);
        return qdbus_cast<StatusMenuLayout>(reply.arguments().value(1).value<QDBusArgument>()).children;
    }

    int pins_ = 0;
    PrivateBus bus_;
    DesktopHandlers handlers_;
    BarColors colors_;
    BusKeeper keeper_{bus_.connection(), QDBusConnection::SessionBus, recording.log};
    TrayContext context_;

  public:
    QPoint clickOffset; ///< of the believed place from the reported one
    bool takesClick = false;
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

const PinnedReading cpu{"TC0P", "CPU", "49.8 °C", "49.80°"};
const PinnedReading fan{"F0Ac", "Fan", "1200 rpm", "1200rpm"};
const PinnedReading charging{"BAT0/status", "Battery Status", "Charging", "Charging"};

const std::vector<std::string> commands{"Open Kelvinbar", "Refresh", "Copy", "-", "About", "Quit"};

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
    tray.item.setToolTip("Kelvinbar • TC0P • CPU: 49.8 °C  |  F0Ac • Fan: 1200 rpm");
    const StatusNotifierToolTip toolTip = tray.toolTip();
    EXPECT_EQ(toolTip.title, "Kelvinbar");
    EXPECT_EQ(toolTip.text, "TC0P • CPU: 49.8 °C  |  F0Ac • Fan: 1200 rpm");
    EXPECT_EQ(tray.host.received("NewToolTip").size(), 1);
}

TEST(TrayItem, HasTheProgramsNameOnceInTheToolTipThatSaysHowToPin) {
    Tray tray(withoutLabels);
    tray.item.setToolTip("Kelvinbar - double-click up to 6 sensors to show them here");
    EXPECT_EQ(tray.toolTip().title, "Kelvinbar");
    EXPECT_EQ(tray.toolTip().text, "double-click up to 6 sensors to show them here");
}

TEST(TrayItem, EscapesTheToolTipWhichHostsReadAsMarkup) {
    Tray tray(withoutLabels);
    tray.item.setToolTip("Kelvinbar • F1Ac • SYS & CPU: <b>1200</b> rpm");
    EXPECT_EQ(tray.toolTip().text, "F1Ac • SYS &amp; CPU: &lt;b&gt;1200&lt;/b&gt; rpm");
}

TEST(TrayItem, KeepsAToolTipThatOnlyBeginsLikeTheProgramsName) {
    Tray tray(withoutLabels);
    tray.item.setToolTip("Kelvinbars: 2");
    EXPECT_EQ(tray.toolTip().text, "Kelvinbars: 2");
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
    Tray tray("KDE");
    tray.pin({cpu});
    tray.plasma.write("config/kdeglobals", PlasmaSettings::lightWindows);
    tray.reportPalette();
    EXPECT_TRUE(tray.shows("49.80°", false));
}

TEST(TrayItem, DrawsTheReadingAgainWhenTheColourOfTheTrayChanges) {
    Tray tray("KDE");
    tray.pin({cpu});
    tray.plasma.write("config/kdeglobals", PlasmaSettings::lightWindows);
    tray.reportPalette();
    const qsizetype before = tray.newIcons();
    tray.plasma.write("config/kdeglobals", PlasmaSettings::darkWindows);
    tray.reportPalette();
    EXPECT_TRUE(tray.shows("49.80°", true));
    EXPECT_EQ(tray.newIcons(), before + 1);
    tray.reportPalette(); // nothing has changed
    EXPECT_EQ(tray.newIcons(), before + 1);
}

TEST(TrayItem, DrawsTheFirstPinnedReadingThatHasANumber) {
    Tray tray(withoutLabels);
    tray.setOwnIcon();
    tray.pin({charging, fan, cpu});
    EXPECT_TRUE(tray.shows("1200rpm"));
}

TEST(TrayItem, HasOurIconWhereNoPinnedReadingHasANumber) {
    Tray tray(withoutLabels);
    tray.setOwnIcon();
    const auto own = tray.icons();
    tray.pin({charging});
    EXPECT_EQ(tray.icons(), own);
}

// Entries of the desktop

TEST(TrayItem, HasTheEntriesOfTheDesktopAboveTheLastSeparator) {
    Tray tray(withoutLabels);
    const auto before = tray.entries();
    tray.desktopEntries = {{.identity = "here", .text = "Here", .action = [](uint) {}, .isChecked = true}};
    tray.setTitle("new");
    auto expected = before;
    expected.insert(expected.end() - 3, "Here");
    EXPECT_EQ(tray.entries(), expected);
}

TEST(TrayItem, AsksForTheEntriesOfTheDesktopAgainWhenOneIsChosen) {
    Tray tray(withoutLabels);
    tray.desktopEntries = {{.identity = "here",
                            .text = "Here",
                            .action = [&tray](uint) { tray.desktopEntries.front().isChecked = true; },
                            .isChecked = false}};
    tray.setTitle("new");
    EXPECT_TRUE(tray.isOffered("Here", false));
    tray.clickEntry("Here");
    EXPECT_TRUE(waitFor([&] { return tray.isOffered("Here", true); }));
}

// Readings by turns

TEST(TrayItem, DoesNotAlternateAtFirst) {
    Tray tray(withoutLabels);
    tray.pin({cpu, fan});
    EXPECT_TRUE(tray.isOffered("Alternate Readings in Icon", false));
    EXPECT_FALSE(tray.wakesUp());
    EXPECT_TRUE(tray.shows("49.80°"));
}

TEST(TrayItem, AlternatesBetweenReadingsWithNumbersWhenThatIsChosen) {
    Tray tray(withoutLabels);
    tray.pin({cpu, charging, fan});
    tray.clickEntry("Alternate");
    EXPECT_TRUE(tray.comesToShow("1200rpm"));
    EXPECT_TRUE(tray.comesToShow("49.80°"));
    EXPECT_TRUE(tray.comesToShow("1200rpm"));
    EXPECT_TRUE(tray.isOffered("Alternate Readings in Icon", true));
}

TEST(TrayItem, ShowsTheFirstReadingAgainWhenAlternatingIsSwitchedOff) {
    Tray tray(withoutLabels);
    tray.pin({cpu, fan});
    tray.clickEntry("Alternate");
    EXPECT_TRUE(tray.comesToShow("1200rpm"));
    tray.clickEntry("Alternate");
    EXPECT_TRUE(tray.comesToShow("49.80°"));
    EXPECT_FALSE(tray.wakesUp());
    EXPECT_TRUE(tray.shows("49.80°"));
}

TEST(TrayItem, RemembersThatItAlternates) {
    Tray tray(withoutLabels);
    tray.clickEntry("Alternate");
    EXPECT_EQ(tray.defaults.number(TrayItem::alternatesKey), 1);
    tray.clickEntry("Alternate");
    EXPECT_THAT(tray.defaults.writes, ElementsAre("KelvinbarAlternatesIcon", "-KelvinbarAlternatesIcon"));
}

TEST(TrayItem, AlternatesFromTheStartIfItDidBefore) {
    Tray tray(withoutLabels, alternating);
    EXPECT_TRUE(tray.isOffered("Alternate Readings in Icon", true));
    tray.pin({cpu, fan});
    EXPECT_TRUE(tray.comesToShow("1200rpm"));
}

TEST(TrayItem, DoesNotWakeUpWhereThereIsNothingToAlternate) {
    Tray tray(withoutLabels, alternating);
    tray.settle();
    EXPECT_FALSE(tray.wakesUp());
    tray.pin({cpu, charging});
    EXPECT_FALSE(tray.wakesUp());
    tray.pin({cpu, fan});
    EXPECT_TRUE(tray.wakesUp());
    tray.pin({fan});
    EXPECT_FALSE(tray.wakesUp());
}

TEST(TrayItem, DoesNotAlternateWhereLabelsAreShown) {
    Tray tray(withLabels, alternating);
    tray.settle();
    tray.pin({cpu, fan});
    EXPECT_FALSE(tray.wakesUp());
    EXPECT_THAT(tray.entries(), Not(Contains("Alternate Readings in Icon")));
}

// Labels

TEST(TrayItem, DecidesAnewWhetherLabelsAreShownWhenAWatcherAppears) {
    Tray tray(withoutLabels);
    tray.setOwnIcon();
    const auto own = tray.icons();
    tray.pin({cpu});
    EXPECT_TRUE(tray.shows("49.80°"));
    FakeWatcher watcher;
    {
        const ProcessName name("gnome-shell");
        watcher.appear();
        EXPECT_TRUE(waitFor([&] { return tray.icons() == own; }));
        watcher.vanish();
    }
    EXPECT_TRUE(waitFor([&] { return tray.shows("49.80°"); }));
}

TEST(TrayItem, BelievesTheWatcherRatherThanTheDesktop) {
    FakeWatcher watcher;
    watcher.appear(); // in a process that shows no labels
    Tray tray(withLabels);
    tray.pin({cpu});
    EXPECT_TRUE(tray.shows("49.80°"));
}

// Whether there is a tray

TEST(TrayItem, KnowsThatThereIsNoTray) {
    Tray tray(withoutLabels);
    tray.settle();
    EXPECT_EQ(tray.item.hasTray(), false);
}

TEST(TrayItem, KnowsATrayThatComesAndGoes) {
    FakeWatcher watcher;
    Tray tray(withoutLabels);
    tray.settle();
    watcher.appear();
    EXPECT_TRUE(waitFor([&] { return tray.item.hasTray() == true; }));
    watcher.vanish();
    EXPECT_TRUE(waitFor([&] { return tray.item.hasTray() == false; }));
}

TEST(TrayItem, DoesNotKnowOfATrayBeforeTheWatcherHasReplied) {
    FakeWatcher watcher;
    watcher.appear();
    Tray tray(withoutLabels);
    EXPECT_EQ(tray.item.hasTray(), std::nullopt);
    tray.settle();
    EXPECT_EQ(tray.item.hasTray(), true);
}

TEST(TrayItem, CountsAWatcherWithoutAHostAsNoTray) {
    FakeWatcher watcher;
    watcher.host = false;
    watcher.appear();
    Tray tray(withoutLabels);
    tray.settle();
    EXPECT_EQ(tray.item.hasTray(), false);
}

TEST(TrayItem, DrawsTheReadingAgainOnlyWhenItsTextChanged) {
    Tray tray(withoutLabels);
    tray.pinned = {cpu, fan};
    tray.setTitle("49.80° 1200rpm");
    EXPECT_EQ(tray.newIcons(), 1);
    tray.pinned = {{"TC0P", "CPU", "49.9 °C", "49.90°"}, fan}; // the icon's text is 50° as before
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
    tray.settle();
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

// XEmbed trays

class XEmbedTrayTest : public testing::Test {
  protected:
    void makeTray(const char* desktopNames = withoutLabels) {
        tray = std::make_unique<Tray>(desktopNames, fakes::RecordingUserDefaults(), &xembed);
        tray->setOwnIcon();
        QCoreApplication::processEvents();
    }

    FakeWatcher watcher;
    XEmbedState xembed;
    std::unique_ptr<Tray> tray;
};

TEST_F(XEmbedTrayTest, HasTheIconWhereNoWatcherRuns) {
    makeTray();
    EXPECT_TRUE(xembed.isShown);
    EXPECT_EQ(xembed.sizes, static_cast<qsizetype>(iconSides.size()));
    EXPECT_EQ(tray->item.hasTray(), true);
}

TEST_F(XEmbedTrayTest, KeepsTheIconWhereAWatcherHasNoHost) {
    watcher.host = false;
    makeTray();
    watcher.appear();
    ASSERT_TRUE(waitFor([&] { return watcher.items().size() == 1; }));
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_TRUE(xembed.isShown);
    EXPECT_EQ(tray->item.hasTray(), true);
}

TEST_F(XEmbedTrayTest, GivesTheIconUpAsSoonAsThereIsAHost) {
    watcher.host = false;
    watcher.appear();
    makeTray();
    ASSERT_TRUE(waitFor([&] { return xembed.isShown; }));
    watcher.host = true;
    emit watcher.StatusNotifierHostRegistered();
    EXPECT_TRUE(waitFor([&] { return !xembed.isShown; }));
    watcher.vanish();
    EXPECT_TRUE(waitFor([&] { return xembed.isShown; }));
}

TEST_F(XEmbedTrayTest, DoesNotShowTheIconBeforeTheWatcherHasReplied) {
    watcher.appear();
    makeTray();
    EXPECT_FALSE(xembed.isShown);
    ASSERT_TRUE(waitFor([&] { return tray->item.hasTray().has_value(); }));
    EXPECT_FALSE(xembed.isShown);
    EXPECT_EQ(xembed.icons, 0);
}

TEST_F(XEmbedTrayTest, HasNoTrayWithoutOneOfEitherKind) {
    xembed.hasTray = false;
    makeTray();
    EXPECT_EQ(tray->item.hasTray(), false);
}

TEST_F(XEmbedTrayTest, KnowsOfATrayThatStartsLater) {
    xembed.hasTray = false;
    makeTray();
    xembed.hasTray = true;
    EXPECT_EQ(tray->item.hasTray(), true);
}

TEST_F(XEmbedTrayTest, DrawsTheReadingAlsoWhereTheDesktopUsuallyShowsLabels) {
    makeTray(withLabels);
    tray->pin({cpu});
    EXPECT_TRUE(tray->shows("49.80°"));
    EXPECT_TRUE(tray->isOffered("Alternate Readings in Icon", false));
}

TEST_F(XEmbedTrayTest, LeavesTheReadingToTheLabelOfAHostThatShowsLabels) {
    const ProcessName name("gnome-shell");
    makeTray(withLabels);
    tray->pin({cpu});
    watcher.appear();
    EXPECT_TRUE(waitFor([&] { return !tray->isOffered("Alternate Readings in Icon", false); }));
    EXPECT_FALSE(tray->shows("49.80°"));
}

TEST_F(XEmbedTrayTest, HasTheWholeToolTipAsPlainText) {
    makeTray();
    tray->item.setToolTip("Kelvinbar • F1Ac • SYS & CPU: 1200 rpm");
    QCoreApplication::processEvents();
    EXPECT_EQ(xembed.toolTip, "Kelvinbar • F1Ac • SYS & CPU: 1200 rpm");
}

TEST_F(XEmbedTrayTest, OpensThePanelByAClickAndByItsMenu) {
    makeTray();
    tray->pin({cpu});
    xembed.handlers.activated(QRect(4, 2, 22, 22));
    ASSERT_TRUE(tray->item.frameOnScreen().has_value());
    EXPECT_EQ(tray->item.frameOnScreen()->x, 4);
    const std::vector<StatusMenuEntry> entries = xembed.handlers.menuEntries();
    EXPECT_EQ(entries.front().text, "CPU: 49.8 °C");
    entries.front().action(0);
    EXPECT_THAT(tray->done, ElementsAre("focus", "toggle", "focus", "open"));
}

// The menu

TEST(TrayItem, HasAMenuOfThePinnedReadingsAndWhatCanBeDone) {
    Tray tray(withLabels);
    EXPECT_THAT(tray.entries(), ElementsAreArray(commands));
    tray.pin({cpu, fan});
    std::vector<std::string> all{"CPU: 49.8 °C", "Fan: 1200 rpm", "-"};
    all.insert(all.end(), commands.begin(), commands.end());
    EXPECT_THAT(tray.entries(), ElementsAreArray(all));
    tray.pin({});
    EXPECT_THAT(tray.entries(), ElementsAreArray(commands));
}

TEST(TrayItem, OffersToAlternateWhereNoLabelsAreShown) {
    Tray tray(withoutLabels);
    EXPECT_THAT(tray.entries(), ElementsAre("Open Kelvinbar", "Refresh", "Copy", "Alternate Readings in Icon",
                                            "-", "About", "Quit"));
}

TEST(TrayItem, OpensFromItsMenuAndNeverCloses) {
    Tray tray(withLabels);
    tray.pin({cpu});
    tray.clickEntry("CPU");
    tray.clickEntry("Open Kelvinbar");
    EXPECT_THAT(tray.done, ElementsAre("focus", "open", "focus", "open"));
}

TEST(TrayItem, DoesWhatIsChosenInItsMenu) {
    Tray tray(withLabels);
    for (const auto* const entry : {"Refresh", "Copy", "About", "Quit"}) tray.clickEntry(entry);
    EXPECT_THAT(tray.done, ElementsAre("refresh", "copy", "focus", "about", "quit"));
}

TEST(TrayItem, DoesNothingInItsMenuWithoutHandlers) {
    Tray tray(withLabels);
    tray.removeHandlers();
    for (const auto* const entry : {"Open", "Refresh", "Copy", "About", "Quit"}) tray.clickEntry(entry);
    EXPECT_THAT(tray.done, ElementsAre("focus", "focus"));
}

TEST(TrayItem, PassesOnTheTimeOfAChoiceBeforeItOpens) {
    Tray tray(withLabels);
    tray.clickEntry("Open", 4711);
    ASSERT_EQ(tray.rights.size(), 1U);
    EXPECT_EQ(tray.rights[0].timestamp, 4711U);
    EXPECT_EQ(tray.rights[0].activationToken, "");
}

TEST(TrayItem, PassesOnATokenOnceBeforeItTogglesOrOpens) {
    Tray tray(withLabels);
    tray.host.call("ProvideXdgActivationToken", {"token-1"});
    EXPECT_THAT(tray.done, IsEmpty());
    tray.host.call("Activate", {300, 20});
    tray.host.call("Activate", {300, 20});
    tray.host.call("ProvideXdgActivationToken", {"token-2"});
    tray.clickEntry("Open");
    EXPECT_THAT(tray.done, ElementsAre("focus", "toggle", "focus", "toggle", "focus", "open"));
    ASSERT_EQ(tray.rights.size(), 3U);
    EXPECT_EQ(tray.rights[0].activationToken, "token-1");
    EXPECT_EQ(tray.rights[0].timestamp, 0U);
    EXPECT_EQ(tray.rights[1].activationToken, "");
    EXPECT_EQ(tray.rights[2].activationToken, "token-2");
}

// The place

TEST(TrayItem, IsWhereItWasClicked) {
    Tray tray(withoutLabels);
    EXPECT_EQ(tray.item.frameOnScreen(), std::nullopt);
    EXPECT_EQ(tray.item.visibleFrameOfScreen(), std::nullopt);
    tray.host.call("Activate", {300, 20});
    EXPECT_EQ(tray.toggles(), 1);
    EXPECT_EQ(tray.item.frameOnScreen(), (Rect{300, 20, 1, 1}));
    EXPECT_EQ(tray.item.visibleFrameOfScreen(), (Rect{0, 28, 1280, 772}));
}

TEST(TrayItem, IsWhereTheReportedClickIsBelievedToBe) {
    Tray tray(withoutLabels);
    tray.clickOffset = {100, 2};
    tray.host.call("Activate", {300, 20});
    EXPECT_EQ(tray.item.frameOnScreen(), (Rect{400, 22, 1, 1}));
}

TEST(TrayItem, AClickThatHasDismissedThePanelDoesNotOpenItAgain) {
    Tray tray(withoutLabels);
    tray.takesClick = true;
    tray.host.call("Activate", {300, 20});
    EXPECT_EQ(tray.toggles(), 0);
    EXPECT_EQ(tray.item.frameOnScreen(), (Rect{300, 20, 1, 1}));
}

TEST(TrayItem, LogsHowItIsShownAndWhereItIsClicked) {
    Tray tray(withLabels);
    tray.settle();
    tray.item.activate(QRect(700, 4, 1, 1));
    EXPECT_THAT(tray.recording.lines(),
                ElementsAre("kelvinbar: tray debug: readings are beside the icon, for a dark panel",
                            "kelvinbar: tray info: no watcher runs",
                            "kelvinbar: tray debug: clicked at 700, 4"));
}

TEST(TrayItem, StaysWhereItWasWithAClickSomewhere) {
    Tray tray(withoutLabels);
    tray.host.call("Activate", {0, 0});
    EXPECT_EQ(tray.toggles(), 1);
    EXPECT_EQ(tray.item.frameOnScreen(), std::nullopt);
    tray.host.call("Activate", {300, 20});
    tray.host.call("Activate", {0, 0});
    EXPECT_EQ(tray.toggles(), 3);
    ASSERT_TRUE(tray.item.frameOnScreen().has_value());
    EXPECT_EQ(tray.item.frameOnScreen()->x, 300);
}

TEST(TrayItem, StaysWhereItWasWhenItsMenuOpensThePanel) {
    Tray tray(withoutLabels);
    tray.host.call("Activate", {300, 20});
    tray.clickEntry("Open");
    ASSERT_TRUE(tray.item.frameOnScreen().has_value());
    EXPECT_EQ(tray.item.frameOnScreen()->x, 300);
}

class TrayStatusBarTest : public testing::Test {
  protected:
    PrivateBus bus_;
    const DesktopHandlers handlers_{};
    fakes::RecordingLog recording_;
    fakes::RecordingUserDefaults defaults_;
    BarColors colors_{withLabels, bus_.connection(), {}};
    BusKeeper keeper_{bus_.connection(), QDBusConnection::SessionBus, recording_.log};
    TrayStatusBar statusBar_{bus_.connection(),
                             {.desktopNames = withLabels,
                              .colors = colors_,
                              .userDefaults = defaults_,
                              .busKeeper = keeper_,
                              .surroundings = {},
                              .makeXEmbedIcon = {},
                              .desktopEntries = {},
                              .focusRightGiven = {}},
                             handlers_,
                             recording_.log};
};

TEST_F(TrayStatusBarTest, FindsTheImagesInTheProgram) {
    EXPECT_TRUE(statusBar_.hasImageResource("MenuBarIcon"));
    EXPECT_FALSE(statusBar_.hasImageResource("NoSuchIcon"));
    EXPECT_FALSE(statusBar_.hasImageResource(""));
}

TEST_F(TrayStatusBarTest, MakesAnItemOnTheBus) {
    const auto item = statusBar_.makeItem();
    ASSERT_NE(item->button(), nullptr);
    item->button()->setTitle({"50°", {}});
    BusPeer host(bus_.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    EXPECT_EQ(host.properties()["XAyatanaLabel"].toString(), "50°");
}

TEST_F(TrayStatusBarTest, KnowsOfATrayOnlyWhileThereIsAnItem) {
    EXPECT_EQ(statusBar_.hasTray(), std::nullopt);
    auto item = statusBar_.makeItem();
    EXPECT_TRUE(waitFor([this] { return statusBar_.hasTray() == false; }));
    item = nullptr;
    EXPECT_EQ(statusBar_.hasTray(), std::nullopt);
}

/// An item that what it calls destroys, with a witness in the handler that is looked at afterwards.
class MortalItem {
  public:
    MortalItem() { item->setAction(destruction()); }

    [[nodiscard]] int actions() const { return *witness_; }

  private:
    std::function<void()> destruction() {
        return [this, witness = witness_] {
            item = nullptr;
            ++*witness;
        };
    }

    std::shared_ptr<int> witness_ = std::make_shared<int>(0);
    fakes::RecordingLog recording_;
    fakes::RecordingUserDefaults defaults_;
    const DesktopHandlers handlers_{.pinnedReadings = {},
                                    .openPanel = destruction(),
                                    .refresh = {},
                                    .copy = {},
                                    .openAbout = {},
                                    .quit = {}};

  public:
    PrivateBus bus;

  private:
    BarColors colors_{withLabels, bus.connection(), {}};
    BusKeeper keeper_{bus.connection(), QDBusConnection::SessionBus, recording_.log};
    const TrayContext context_{.desktopNames = withLabels,
                               .colors = colors_,
                               .userDefaults = defaults_,
                               .busKeeper = keeper_,
                               .surroundings = {.placeOfClick = [](QPoint reported) { return reported; },
                                                .visibleFrameAround = [](const Rect&) { return Rect(); },
                                                .takesClick = [] { return false; }},
                               .makeXEmbedIcon = {},
                               .desktopEntries = {},
                               .focusRightGiven = {}};

  public:
    std::unique_ptr<TrayItem> item =
        std::make_unique<TrayItem>(bus.connection(), context_, handlers_, recording_.log);
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

} // namespace
} // namespace kelvinbar::tray_item_test
