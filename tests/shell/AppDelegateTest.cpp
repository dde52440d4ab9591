#include "shell/AppDelegate.h"

#include "catalogue/NotificationNames.h"
#include "tests/fakes/FakeShell.h"
#include "tests/store/StoreFixture.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::app_delegate_test {

namespace {

using fakes::discoveryCount;
using fakes::FakeShell;
using fakes::keysRead;
using fakes::setKeys;
using fakes::ShellJournal;
using fakes::StoreFixture;
using fakes::temperatureKey;

using Entries = std::vector<std::string>;
using Keys = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr std::string_view toolTipWithoutPins = "Kelvinbar - double-click up to 6 sensors to show them here";

/// Records in the shell's journal when a pass starts.
class JournalingBackgroundQueue final : public BackgroundQueue {
  public:
    JournalingBackgroundQueue(ShellJournal& journal, BackgroundQueue& queue)
        : journal_(journal), queue_(queue) {}

    Cancellation start(Work work) override {
        journal_.add("store: work begun");
        return queue_.start(std::move(work));
    }

  private:
    ShellJournal& journal_;
    BackgroundQueue& queue_;
};

struct AppDelegateTest : StoreFixture {
    FakeShell shell;
    JournalingBackgroundQueue journalingQueue{shell.journal, backgroundQueue};
    std::shared_ptr<AppDelegate> delegate;

    AppDelegateTest() {
        shell.statusBar.button.visibleFrame = Rect{0, 25, 1440, 875};
        setTemperatures(40, 41);
    }

    ~AppDelegateTest() override { shell.journal.whenAdded = nullptr; }

    void setTemperatures(std::uint8_t pinned, std::uint8_t other) const {
        setKeys(driver(), {temperatureKey("TC0P", pinned), temperatureKey("TC1C", other)});
    }

    void pin(const Keys& keys) { defaults.values.setTextList("KelvinbarMenuBarKeys", keys); }

    /// Creates the delegate. The store's first refresh then waits in the queue.
    void makeDelegate() {
        delegate = AppDelegate::create(shell.ports(mainQueue, notifications),
                                       StorePorts{.machine = machineOfStore,
                                                  .defaults = defaults,
                                                  .notifications = notifications,
                                                  .mainQueue = mainQueue,
                                                  .backgroundQueue = journalingQueue,
                                                  .wallClock = wallClock});
    }

    /// Launches after the store's first refresh has ended.
    void launch() {
        makeDelegate();
        finishPasses();
        forgetJournal();
        delegate->applicationDidFinishLaunching();
    }

    /// The same, and clears the journal.
    void launchAndForget() {
        launch();
        forget();
    }

    void launchAndOpen() {
        launch();
        delegate->togglePopover();
        shell.contentFactory.animations.back().completion();
        finishPasses();
        forget();
    }

    void forgetJournal() { shell.journal.entries.clear(); }

    void forget() {
        forgetJournal();
        forgetHistory();
        shell.contentFactory.animations.clear();
    }

    void tick() {
        shell.timers.fire();
        mainQueue.drain();
    }

    /// Runs the waiting passes and returns the keys that they read.
    [[nodiscard]] Keys keysReadByPasses() {
        driver().calls.clear();
        finishPasses();
        return keysRead(driver());
    }

    template <typename Content>
    void post(const NotificationName<Content>& name,
              const std::type_identity_t<Content>& content = {}) const {
        notifications.post(name, content);
    }

    void postTexts(const MenuBarReadingChange& texts) const { post(kelvinbarMenuBarReadingChanged, texts); }

    [[nodiscard]] Entries taken() { return shell.journal.taken(); }

    /// Clears the journal and returns its entries that begin with `beginning`.
    [[nodiscard]] Entries takenOf(std::string_view beginning) {
        Entries entries = shell.journal.taken();
        std::erase_if(entries, [&](const auto& entry) { return !entry.starts_with(beginning); });
        return entries;
    }
};

std::string titleEntry(std::string_view title) {
    return std::string("button: title '").append(title).append("'");
}

std::string toolTipEntry(std::string_view toolTip) {
    return std::string("button: tooltip '").append(toolTip).append("'");
}

const std::string pinnedTitle = " 40°";
const std::string pinnedToolTip = "Kelvinbar • TC0P • CPU Proximity: 40 °C";
const std::string launchTimer = "timer: started, every 3000 ms, tolerance 100 ms";
const std::string fastTimer = "timer: started, every 1000 ms, tolerance 20 ms";

/// The calls that resize the shown panel.
Entries sizeOfShownPanel(const std::string& size) {
    return {"popover: content size " + size, "content: view size " + size, "content: needs layout",
            "content: window size " + size};
}

// Construction

TEST_F(AppDelegateTest, TheStoreBeginsItsFirstRefreshWhenTheDelegateIsMade) {
    makeDelegate();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
    EXPECT_EQ(shell.statusBar.itemCount, 0);
    EXPECT_EQ(shell.timers.activeCount(), 0U);
}

TEST_F(AppDelegateTest, ListensToNothingBeforeTheLaunch) {
    pin({"TC0P"});
    makeDelegate();
    finishPasses();
    postTexts({.title = "new", .toolTip = "new"});
    post(kelvinbarSamplingRateChanged);
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"store: work begun"});
}

// Launch

TEST_F(AppDelegateTest, LaunchDoesEverythingInOrder) {
    pin({"TC0P"});
    launch();
    EXPECT_EQ(taken(),
              (Entries{"application: accessory", "status bar: item added", "button: image MenuBarIcon",
                       titleEntry(pinnedTitle), toolTipEntry(pinnedToolTip), "button: action",
                       "popover: transient", "popover: does not animate", "popover: did-close handler",
                       "popover: content size 462 x 690", "factory: content made", "popover: content set",
                       launchTimer, titleEntry(pinnedTitle), toolTipEntry(pinnedToolTip)}));
}

TEST_F(AppDelegateTest, LaunchListensOnceTheTimerRunsAndBeforeTheTitleIsWrittenAgain) {
    pin({"TC0P"});
    int titles = 0;
    Entries sizes;
    shell.journal.whenAdded = [&](const std::string& entry) {
        if (entry.starts_with("popover: content size")) sizes.push_back(entry);
        if (entry == launchTimer) post(kelvinbarManualSizeChanged);
        if (entry == titleEntry(pinnedTitle) && ++titles == 2) post(kelvinbarManualSizeChanged);
    };
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 700);
    launch();
    EXPECT_EQ(titles, 2);
    EXPECT_EQ(sizes, (Entries{"popover: content size 462 x 690", "popover: content size 462 x 700"}));
}

TEST_F(AppDelegateTest, LaunchStartsNoRefreshOfItsOwn) {
    pin({"TC0P"});
    launch();
    EXPECT_EQ(takenOf("store:"), Entries{});
    EXPECT_EQ(mainQueue.waitingCount(), 0U);
}

TEST_F(AppDelegateTest, AnEmptyTitleAtLaunchIsWrittenOnceAndTheToolTipTwice) {
    launch();
    EXPECT_EQ(takenOf("button: t"),
              (Entries{titleEntry(""), toolTipEntry(toolTipWithoutPins), toolTipEntry(toolTipWithoutPins)}));
}

TEST_F(AppDelegateTest, LaunchBeforeTheFirstReadingsShowsThemWhenTheyCome) {
    pin({"TC0P"});
    makeDelegate();
    delegate->applicationDidFinishLaunching();
    forget();
    finishPasses();
    EXPECT_EQ(takenOf("button:"), (Entries{titleEntry(pinnedTitle), toolTipEntry(pinnedToolTip)}));
}

TEST_F(AppDelegateTest, TheImageIsTheProgramsOwnInItsColours) {
    launch();
    const auto& image = shell.statusBar.button.image;
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(image->source, StatusImage::Source::resource);
    EXPECT_EQ(image->name, "MenuBarIcon");
    EXPECT_EQ(image->size, (Size{17, 17}));
    EXPECT_FALSE(image->isTemplate);
}

TEST_F(AppDelegateTest, WithoutAnOwnImageTheImageIsTheSystemsThermometer) {
    shell.statusBar.imageResources = {"AnotherIcon"};
    launch();
    const auto& image = shell.statusBar.button.image;
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(image->source, StatusImage::Source::systemSymbol);
    EXPECT_EQ(image->name, "thermometer.medium");
    EXPECT_TRUE(image->isTemplate);
    EXPECT_EQ(image->accessibilityDescription, "Kelvinbar");
    EXPECT_EQ(image->size, std::nullopt);
}

TEST_F(AppDelegateTest, TheTitleIsSmallSemiboldWithDigitsOfOneWidth) {
    pin({"TC0P"});
    launch();
    const auto expectStyle = [this] {
        const auto& title = shell.statusBar.button.title;
        ASSERT_TRUE(title.has_value());
        EXPECT_EQ(title->style.pointSize, 10.5);
        EXPECT_TRUE(title->style.isSemibold);
        EXPECT_TRUE(title->style.hasMonospacedDigits);
        EXPECT_EQ(title->style.baselineOffset, -0.5);
    };
    EXPECT_EQ(shell.statusBar.button.title->text, pinnedTitle);
    expectStyle();
    postTexts({.title = " 99°", .toolTip = std::nullopt});
    EXPECT_EQ(shell.statusBar.button.title->text, " 99°");
    expectStyle();
}

TEST_F(AppDelegateTest, TheContentShowsTheDelegatesStore) {
    launch();
    EXPECT_EQ(shell.contentFactory.stores, std::vector<const KelvinbarStore*>{&delegate->store()});
}

TEST_F(AppDelegateTest, TheItemsActionTogglesThePanel) {
    launch();
    shell.statusBar.button.action();
    EXPECT_TRUE(shell.popover.shown);
    shell.statusBar.button.action();
    EXPECT_FALSE(shell.popover.shown);
}

TEST_F(AppDelegateTest, TheItemsActionDoesNothingOnceTheDelegateHasGone) {
    launch();
    const auto action = shell.statusBar.button.action;
    delegate.reset();
    forget();
    action();
    EXPECT_EQ(taken(), Entries{});
}

// Without a button

TEST_F(AppDelegateTest, WithoutAButtonTheRestIsSetUp) {
    shell.statusBar.hasButton = false;
    pin({"TC0P"});
    launch();
    EXPECT_EQ(taken(), (Entries{"application: accessory", "status bar: item added", "popover: transient",
                                "popover: does not animate", "popover: did-close handler",
                                "popover: content size 462 x 690", "factory: content made",
                                "popover: content set", launchTimer}));
    tick();
    EXPECT_EQ(keysReadByPasses(), Keys{"TC0P"});
}

TEST_F(AppDelegateTest, WithoutAButtonTitlesAndClicksAreIgnored) {
    shell.statusBar.hasButton = false;
    launchAndForget();
    postTexts({.title = "new", .toolTip = "new"});
    delegate->togglePopover();
    delegate->openPopover();
    EXPECT_EQ(taken(), Entries{});
    EXPECT_FALSE(shell.popover.shown);
}

TEST_F(AppDelegateTest, ATitleThatCameWithoutAButtonIsNotTakenForWritten) {
    shell.statusBar.hasButton = false;
    launchAndForget();
    postTexts({.title = "new", .toolTip = "newer"});
    shell.statusBar.hasButton = true;
    postTexts({.title = "new", .toolTip = "newer"});
    EXPECT_EQ(taken(), (Entries{titleEntry("new"), toolTipEntry("newer")}));
}

TEST_F(AppDelegateTest, ClicksBeforeTheLaunchAreIgnored) {
    makeDelegate();
    finishPasses();
    forget();
    delegate->togglePopover();
    EXPECT_EQ(taken(), Entries{});
}

// Timer

TEST_F(AppDelegateTest, MediumSamplingIsEveryThreeSeconds) {
    defaults.values.setText("KelvinbarSamplingRate", "medium");
    launch();
    EXPECT_EQ(takenOf("timer:"), Entries{launchTimer});
    EXPECT_EQ(shell.timers.activeCount(), 1U);
}

TEST_F(AppDelegateTest, FastSamplingIsEverySecond) {
    defaults.values.setText("KelvinbarSamplingRate", "fast");
    launch();
    EXPECT_EQ(takenOf("timer:"), Entries{fastTimer});
    EXPECT_EQ(shell.timers.activeCount(), 1U);
}

TEST_F(AppDelegateTest, AnotherRateReplacesTheTimerAndRefreshesThePinsAtOnce) {
    pin({"TC0P"});
    launchAndForget();
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", fastTimer, "store: work begun"}));
    EXPECT_EQ(shell.timers.activeCount(), 1U);
    EXPECT_EQ(mainQueue.waitingCount(), 0U);
    EXPECT_EQ(keysReadByPasses(), Keys{"TC0P"});
    forget();
    delegate->store().setSamplingRate(SMCSamplingRate::medium);
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", launchTimer, "store: work begun"}));
    EXPECT_EQ(shell.timers.activeCount(), 1U);
}

TEST_F(AppDelegateTest, AnotherRateWithThePanelOpenRefreshesEverythingOnce) {
    launchAndOpen();
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", fastTimer, "store: work begun"}));
    EXPECT_EQ(keysReadByPasses(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(AppDelegateTest, AnotherRateWithNothingToShowOnlyReplacesTheTimer) {
    launchAndForget();
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", fastTimer}));
}

TEST_F(AppDelegateTest, TheSameRateLeavesTheTimer) {
    pin({"TC0P"});
    launchAndForget();
    delegate->store().setSamplingRate(SMCSamplingRate::medium);
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, TheReplacingTimerTicks) {
    pin({"TC0P"});
    launch();
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    finishPasses();
    forget();
    tick();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
}

// Ticks

TEST_F(AppDelegateTest, ATickWithThePanelClosedAndNoPinsTouchesNothing) {
    launchAndForget();
    tick();
    tick();
    EXPECT_EQ(taken(), Entries{});
    EXPECT_EQ(driver().calls.size(), 0U);
    EXPECT_EQ(machine.registry->walkedPlanes, Keys{});
}

TEST_F(AppDelegateTest, TicksThatTheMainQueueHasNotSeenAreOne) {
    pin({"TC0P"});
    launchAndForget();
    for (int count = 0; count < 3; ++count) shell.timers.fire();
    EXPECT_EQ(mainQueue.waitingCount(), 1U);
    mainQueue.drain();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
    finishPasses();
    forget();
    tick();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
}

TEST_F(AppDelegateTest, ATickWithThePanelClosedRefreshesThePinsAlone) {
    pin({"TC0P"});
    launchAndForget();
    tick();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
    EXPECT_EQ(keysReadByPasses(), Keys{"TC0P"});
}

TEST_F(AppDelegateTest, ATickWithThePanelOpenRefreshesEverythingWithoutPins) {
    launchAndOpen();
    tick();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
    EXPECT_EQ(keysReadByPasses(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(AppDelegateTest, ATickWithThePanelOpenRefreshesEverythingWithPins) {
    pin({"TC0P"});
    launchAndOpen();
    tick();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
    EXPECT_EQ(keysReadByPasses(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(AppDelegateTest, OnceThePanelIsClosedByAClickOutsideTicksReadThePinsAlone) {
    pin({"TC0P"});
    launchAndOpen();
    shell.popover.closeByClickOutside();
    tick();
    EXPECT_EQ(keysReadByPasses(), Keys{"TC0P"});
}

TEST_F(AppDelegateTest, ATickOnlyWorksWhenTheMainQueueRunsIt) {
    pin({"TC0P"});
    launchAndForget();
    shell.timers.fire();
    EXPECT_EQ(taken(), Entries{});
    EXPECT_EQ(mainQueue.waitingCount(), 1U);
    mainQueue.drain();
    EXPECT_EQ(taken(), Entries{"store: work begun"});
}

TEST_F(AppDelegateTest, ATickUsesTheStateAtTheTimeItRuns) {
    launchAndForget();
    shell.timers.fire();
    delegate->store().setMenuBarKeys({"TC1C"});
    mainQueue.drain();
    EXPECT_EQ(keysReadByPasses(), Keys{"TC1C"});
}

TEST_F(AppDelegateTest, ATickDoesNothingOnceTheDelegateHasGone) {
    pin({"TC0P"});
    launchAndForget();
    shell.timers.fire();
    delegate.reset();
    forgetJournal();
    mainQueue.drain();
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, TheTimerGoesWithTheDelegate) {
    pin({"TC0P"});
    launchAndForget();
    delegate.reset();
    EXPECT_EQ(shell.timers.activeCount(), 0U);
}

TEST_F(AppDelegateTest, AWaitingTickDoesNotKeepTheDelegate) {
    pin({"TC0P"});
    launch();
    shell.timers.fire();
    delegate.reset();
    EXPECT_EQ(mainQueue.waitingCount(), 1U);
    EXPECT_EQ(shell.statusBar.itemCount, 0);
}

// Title and tooltip

TEST_F(AppDelegateTest, ANewValueIsWrittenToTheItem) {
    pin({"TC0P"});
    launchAndForget();
    setTemperatures(45, 41);
    tick();
    finishPasses();
    EXPECT_EQ(takenOf("button:"),
              (Entries{titleEntry(" 45°"), toolTipEntry("Kelvinbar • TC0P • CPU Proximity: 45 °C")}));
}

TEST_F(AppDelegateTest, AnUnchangedValueIsNotWrittenToTheItem) {
    pin({"TC0P"});
    launchAndForget();
    tick();
    finishPasses();
    EXPECT_EQ(takenOf("button:"), Entries{});
}

TEST_F(AppDelegateTest, TheSameTextsTwiceAreWrittenOnce) {
    launchAndForget();
    postTexts({.title = "a", .toolTip = "b"});
    EXPECT_EQ(taken(), (Entries{titleEntry("a"), toolTipEntry("b")}));
    postTexts({.title = "a", .toolTip = "b"});
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, OfTitleAndToolTipOnlyTheOneThatChangedIsWritten) {
    launch();
    postTexts({.title = "a", .toolTip = "b"});
    forget();
    postTexts({.title = "a", .toolTip = "c"});
    EXPECT_EQ(taken(), Entries{toolTipEntry("c")});
    postTexts({.title = "d", .toolTip = "c"});
    EXPECT_EQ(taken(), Entries{titleEntry("d")});
}

TEST_F(AppDelegateTest, ATextThatComesBackIsWrittenAgain) {
    launch();
    postTexts({.title = "a", .toolTip = "b"});
    postTexts({.title = "", .toolTip = ""});
    forget();
    postTexts({.title = "a", .toolTip = "b"});
    EXPECT_EQ(taken(), (Entries{titleEntry("a"), toolTipEntry("b")}));
}

TEST_F(AppDelegateTest, ATitleAloneTakesTheToolTipFromTheStore) {
    pin({"TC0P"});
    launch();
    postTexts({.title = "a", .toolTip = "b"});
    forget();
    postTexts({.title = "c", .toolTip = std::nullopt});
    EXPECT_EQ(taken(), (Entries{titleEntry("c"), toolTipEntry(pinnedToolTip)}));
}

TEST_F(AppDelegateTest, AToolTipAloneTakesTheTitleFromTheStore) {
    pin({"TC0P"});
    launch();
    postTexts({.title = "a", .toolTip = "b"});
    forget();
    postTexts({.title = std::nullopt, .toolTip = "c"});
    EXPECT_EQ(taken(), (Entries{titleEntry(pinnedTitle), toolTipEntry("c")}));
}

TEST_F(AppDelegateTest, WithoutTextsBothComeFromTheStore) {
    pin({"TC0P"});
    launch();
    postTexts({.title = "a", .toolTip = "b"});
    forget();
    postTexts({});
    EXPECT_EQ(taken(), (Entries{titleEntry(pinnedTitle), toolTipEntry(pinnedToolTip)}));
}

TEST_F(AppDelegateTest, TextsOfNotificationsStartNoRefreshAndChangeNoSize) {
    pin({"TC0P"});
    launchAndForget();
    postTexts({.title = "a", .toolTip = "b"});
    EXPECT_EQ(taken(), (Entries{titleEntry("a"), toolTipEntry("b")}));
}

// Opening and closing

TEST_F(AppDelegateTest, OpeningTakesItsStepsInOrder) {
    launchAndForget();
    delegate->togglePopover();
    EXPECT_EQ(taken(),
              (Entries{"store: work begun", "popover: content size 462 x 54", "popover: shown at edge 1",
                       "content: window grows to 462 x 690", "content: window is key"}));
    EXPECT_EQ(keysReadByPasses(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(AppDelegateTest, OpeningMakesTheContentAgainFirstIfItWasDropped) {
    launch();
    shell.popover.currentContent = nullptr;
    forget();
    delegate->togglePopover();
    EXPECT_EQ(taken(), (Entries{"factory: content made", "popover: content set", "store: work begun",
                                "popover: content size 462 x 54", "popover: shown at edge 1",
                                "content: window grows to 462 x 690", "content: window is key"}));
    EXPECT_EQ(shell.contentFactory.stores.back(), &delegate->store());
    shell.contentFactory.closeActions.back()();
    EXPECT_FALSE(shell.popover.shown);
}

TEST_F(AppDelegateTest, OpeningAgainKeepsTheContent) {
    launchAndOpen();
    delegate->togglePopover();
    delegate->togglePopover();
    EXPECT_TRUE(shell.popover.shown);
    EXPECT_EQ(shell.contentFactory.stores.size(), 1U);
}

TEST_F(AppDelegateTest, ThePanelGrowsIn160Milliseconds) {
    launchAndForget();
    delegate->togglePopover();
    ASSERT_EQ(shell.contentFactory.animations.size(), 1U);
    EXPECT_EQ(shell.contentFactory.animations[0].size, (Size{462, 690}));
    EXPECT_EQ(shell.contentFactory.animations[0].duration, 160ms);
}

TEST_F(AppDelegateTest, WhenThePanelHasGrownEverythingGetsItsSize) {
    launchAndForget();
    delegate->togglePopover();
    forgetJournal();
    ASSERT_EQ(shell.contentFactory.animations.size(), 1U);
    shell.contentFactory.animations[0].completion();
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 690"));
}

TEST_F(AppDelegateTest, WhenThePanelWasClosedWhileItGrewOnlyThePopoverGetsTheSize) {
    launchAndForget();
    delegate->togglePopover();
    shell.popover.closeByClickOutside();
    forgetJournal();
    ASSERT_EQ(shell.contentFactory.animations.size(), 1U);
    shell.contentFactory.animations[0].completion();
    EXPECT_EQ(taken(), Entries{"popover: content size 462 x 690"});
}

TEST_F(AppDelegateTest, NothingHappensWhenThePanelHasGrownAfterTheDelegateHasGone) {
    launchAndForget();
    delegate->togglePopover();
    delegate.reset();
    forgetJournal();
    ASSERT_EQ(shell.contentFactory.animations.size(), 1U);
    shell.contentFactory.animations[0].completion();
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, ContentWithoutAWindowGetsItsSizeWithoutAnimation) {
    shell.contentFactory.hasWindows = false;
    launchAndForget();
    delegate->togglePopover();
    EXPECT_EQ(taken(), (Entries{"store: work begun", "popover: content size 462 x 54",
                                "popover: shown at edge 1", "popover: content size 462 x 690",
                                "content: view size 462 x 690", "content: needs layout"}));
    EXPECT_EQ(shell.contentFactory.animations.size(), 0U);
}

TEST_F(AppDelegateTest, TheOpeningStripIsAsWideAsThePanelWillBe) {
    shell.statusBar.button.visibleFrame = Rect{0, 0, 520, 875};
    launchAndForget();
    delegate->togglePopover();
    EXPECT_EQ(takenOf("popover: content size"), Entries{"popover: content size 440 x 54"});
    EXPECT_EQ(shell.contentFactory.animations.back().size, (Size{440, 690}));
}

TEST_F(AppDelegateTest, ClickingTheItemOfAShownPanelClosesItWithoutARefresh) {
    launchAndOpen();
    delegate->togglePopover();
    EXPECT_EQ(taken(), Entries{"popover: close"});
    EXPECT_FALSE(shell.popover.shown);
    EXPECT_NE(shell.popover.content(), nullptr);
}

TEST_F(AppDelegateTest, AClickOutsideKeepsTheContentAndDoesNothingElse) {
    launchAndOpen();
    const PopoverContent* const content = shell.popover.content();
    shell.popover.closeByClickOutside();
    EXPECT_EQ(taken(), Entries{});
    EXPECT_EQ(shell.popover.content(), content);
}

TEST_F(AppDelegateTest, OpeningByASecondStartOpensLikeAClick) {
    launchAndForget();
    delegate->openPopover();
    EXPECT_EQ(taken(),
              (Entries{"store: work begun", "popover: content size 462 x 54", "popover: shown at edge 1",
                       "content: window grows to 462 x 690", "content: window is key"}));
}

TEST_F(AppDelegateTest, OpeningByASecondStartLeavesAShownPanelOpen) {
    launchAndOpen();
    delegate->openPopover();
    EXPECT_TRUE(shell.popover.shown);
    EXPECT_EQ(takenOf("popover: close"), Entries{});
}

TEST_F(AppDelegateTest, TheContentsCloseActionClosesThePanel) {
    launchAndOpen();
    ASSERT_EQ(shell.contentFactory.closeActions.size(), 1U);
    shell.contentFactory.closeActions[0]();
    EXPECT_EQ(taken(), Entries{"popover: close"});
    EXPECT_FALSE(shell.popover.shown);
}

TEST_F(AppDelegateTest, TheContentsCloseActionDoesNothingOnceTheDelegateHasGone) {
    launchAndOpen();
    delegate.reset();
    forgetJournal();
    ASSERT_EQ(shell.contentFactory.closeActions.size(), 1U);
    shell.contentFactory.closeActions[0]();
    EXPECT_EQ(taken(), Entries{});
}

// Size

TEST_F(AppDelegateTest, AnotherManualHeightResizesTheShownPanelAtOnce) {
    launchAndOpen();
    delegate->store().setManualPopoverHeight(600);
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 600"));
    EXPECT_EQ(shell.contentFactory.animations.size(), 0U);
}

TEST_F(AppDelegateTest, AnotherManualHeightIsNotedForAClosedPanel) {
    launchAndForget();
    delegate->store().setManualPopoverHeight(600);
    EXPECT_EQ(taken(), Entries{"popover: content size 462 x 600"});
    delegate->togglePopover();
    EXPECT_EQ(shell.contentFactory.animations.back().size, (Size{462, 600}));
}

TEST_F(AppDelegateTest, TheSameManualHeightIsAppliedAgain) {
    launchAndOpen();
    delegate->store().setManualPopoverHeight(690);
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 690"));
}

TEST_F(AppDelegateTest, AnotherDisplayModeResizesTheShownPanelAtOnce) {
    std::vector<fakes::ControllerKey> keys;
    for (const char number : std::string("01234567")) {
        keys.push_back(temperatureKey(std::string("TC").append(1, number).append("C"), 50));
    }
    setKeys(driver(), keys);
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 560);
    launchAndOpen();
    delegate->store().setDisplayMode(SMCWindowDisplayMode::dynamic);
    const auto& readings = delegate->store().readings().value();
    ASSERT_EQ(std::ranges::count_if(readings, &SMCReading::hasDisplayableValue), 8);
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 684")); // 246 + 62 + 8 * 47
    delegate->store().setDisplayMode(SMCWindowDisplayMode::fixed);
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 560"));
}

TEST_F(AppDelegateTest, SizeNotificationsAreNotReadForTheirContent) {
    launchAndOpen();
    post(kelvinbarManualSizeChanged, {.width = 999, .height = 999});
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 690"));
    post(kelvinbarDisplayModeChanged, {.mode = SMCWindowDisplayMode::dynamic, .visibleReadings = 500});
    EXPECT_EQ(taken(), sizeOfShownPanel("462 x 690"));
}

TEST_F(AppDelegateTest, AShownPanelWithoutAWindowHasItsViewResized) {
    shell.contentFactory.hasWindows = false;
    launch();
    delegate->togglePopover();
    forget();
    delegate->store().setManualPopoverHeight(600);
    EXPECT_EQ(taken(), (Entries{"popover: content size 462 x 600", "content: view size 462 x 600",
                                "content: needs layout"}));
}

TEST_F(AppDelegateTest, AShownPanelWithoutContentHasThePopoverResizedAlone) {
    launchAndOpen();
    shell.popover.currentContent = nullptr;
    delegate->store().setManualPopoverHeight(600);
    EXPECT_EQ(taken(), Entries{"popover: content size 462 x 600"});
}

TEST_F(AppDelegateTest, NothingElseResizesTheShownPanel) {
    pin({"TC0P"});
    launchAndOpen();
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    delegate->store().setMenuBarKeys({"TC1C"});
    delegate->store().hideReading(fakes::readingOf("TC0P"));
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", fastTimer, "store: work begun", titleEntry(" 41°"),
                                toolTipEntry("Kelvinbar • TC1C • Core 1: 41 °C")}));
}

TEST_F(AppDelegateTest, TheSizeFollowsTheScreenOfTheItem) {
    shell.screens.main = Rect{0, 0, 1000, 1000};
    shell.screens.all = {Rect{0, 0, 1000, 1000}};
    shell.statusBar.button.visibleFrame = Rect{0, 0, 520, 700};
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 440 x 620"});
}

TEST_F(AppDelegateTest, WithoutAScreenOfTheItemTheSizeFollowsTheMainScreen) {
    shell.statusBar.button.visibleFrame.reset();
    shell.screens.main = Rect{0, 0, 530, 710};
    shell.screens.all = {Rect{0, 0, 1000, 1000}, Rect{0, 0, 530, 710}};
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 450 x 630"});
}

TEST_F(AppDelegateTest, WithoutAButtonTheSizeFollowsTheMainScreen) {
    shell.statusBar.hasButton = false;
    shell.screens.main = Rect{0, 0, 530, 710};
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 450 x 630"});
}

TEST_F(AppDelegateTest, WithoutAMainScreenTheSizeFollowsTheFirstOne) {
    shell.statusBar.button.visibleFrame.reset();
    shell.screens.all = {Rect{0, 0, 510, 720}, Rect{0, 0, 1000, 1000}};
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 430 x 640"});
}

TEST_F(AppDelegateTest, WithoutAScreenThePanelHasItsLeastSize) {
    shell.statusBar.button.visibleFrame.reset();
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 1400);
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 420 x 560"});
}

TEST_F(AppDelegateTest, PlaceAndSizeFollowTheScreens) {
    launchAndOpen();
    shell.statusBar.button.visibleFrame = Rect{0, 0, 520, 700};
    shell.screens.changed();
    EXPECT_EQ(taken(), (Entries{"popover: place updated", "popover: content size 440 x 620",
                                "content: view size 440 x 620", "content: needs layout",
                                "content: window size 440 x 620"}));
}

TEST_F(AppDelegateTest, AfterTerminationTheScreensAreNotFollowed) {
    launch();
    delegate->applicationWillTerminate();
    EXPECT_EQ(shell.screens.changed, nullptr);
}

TEST_F(AppDelegateTest, AStoredWidthIsNotFollowed) {
    defaults.values.setNumber("KelvinbarManualPopoverWidth", 430);
    launchAndForget();
    post(kelvinbarManualSizeChanged);
    EXPECT_EQ(taken(), Entries{"popover: content size 462 x 690"});
}

// Readings in view

TEST_F(AppDelegateTest, NothingIsInViewWithThePanelClosedAndNoPins) {
    launch();
    tick();
    EXPECT_EQ(shell.application.viewChanges, std::vector<bool>{});
}

TEST_F(AppDelegateTest, PinnedReadingsAreInView) {
    pin({"TC0P"});
    launch();
    EXPECT_EQ(shell.application.viewChanges, std::vector{true});
    delegate->togglePopover();
    delegate->togglePopover();
    EXPECT_EQ(shell.application.viewChanges, std::vector{true});
}

TEST_F(AppDelegateTest, ReadingsAreInViewWhileThePanelIsOpen) {
    launch();
    delegate->togglePopover();
    EXPECT_EQ(shell.application.viewChanges, std::vector{true});
    shell.popover.closeByClickOutside();
    EXPECT_EQ(shell.application.viewChanges, (std::vector{true, false}));
}

TEST_F(AppDelegateTest, ReadingsAreInViewFromTheFirstPinToTheLast) {
    launch();
    const std::vector<SMCReading> readings = delegate->store().readings().value();
    ASSERT_GE(readings.size(), 2U);
    for (const std::size_t index : {0U, 1U, 0U, 1U}) delegate->store().toggleMenuBarReading(readings[index]);
    EXPECT_EQ(shell.application.viewChanges, (std::vector{true, false}));
}

TEST_F(AppDelegateTest, NothingIsInViewAfterTermination) {
    pin({"TC0P"});
    launch();
    delegate->togglePopover();
    delegate->applicationWillTerminate();
    EXPECT_EQ(shell.application.viewChanges, (std::vector{true, false}));
}

// Termination

TEST_F(AppDelegateTest, TerminationTakesItsStepsInOrder) {
    pin({"TC0P"});
    launchAndOpen();
    delegate->applicationWillTerminate();
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", "popover: close", "popover: content dropped",
                                "status bar: item removed", "store: work begun"}));
    finishPasses();
    EXPECT_EQ(driver().closed.size(), 1U);
}

TEST_F(AppDelegateTest, TerminationStopsListeningFirstAndShutsTheStoreDownLast) {
    pin({"TC0P"});
    launchAndForget();
    shell.journal.whenAdded = [&](const std::string& entry) {
        if (entry != "timer: invalidated") return;
        postTexts({.title = "new", .toolTip = "new"});
        post(kelvinbarManualSizeChanged);
        post(kelvinbarDisplayModeChanged);
        post(kelvinbarSamplingRateChanged);
    };
    delegate->applicationWillTerminate();
    EXPECT_EQ(taken(), (Entries{"timer: invalidated", "popover: close", "popover: content dropped",
                                "status bar: item removed", "store: work begun"}));
    EXPECT_EQ(driver().closed.size(), 0U); // the driver may take its time, so not on the main thread
    finishPasses();
    EXPECT_EQ(driver().closed.size(), 1U);
}

TEST_F(AppDelegateTest, TerminationCancelsTheRefreshThatRuns) {
    launchAndForget();
    delegate->togglePopover();
    delegate->applicationWillTerminate();
    EXPECT_EQ(keysReadByPasses(), Keys{});
    EXPECT_EQ(delegate->store().statusMessage().value(), "Refresh cancelled");
}

TEST_F(AppDelegateTest, AfterTerminationNoTimerRunsAndTheItemHasGone) {
    pin({"TC0P"});
    launch();
    delegate->applicationWillTerminate();
    EXPECT_EQ(shell.timers.activeCount(), 0U);
    EXPECT_EQ(shell.statusBar.itemCount, 0);
    EXPECT_EQ(shell.popover.content(), nullptr);
    EXPECT_FALSE(shell.popover.shown);
}

TEST_F(AppDelegateTest, AfterTerminationNotificationsAreIgnored) {
    pin({"TC0P"});
    launch();
    delegate->applicationWillTerminate();
    forget();
    postTexts({.title = "new", .toolTip = "new"});
    delegate->store().setSamplingRate(SMCSamplingRate::fast);
    delegate->store().setDisplayMode(SMCWindowDisplayMode::dynamic);
    delegate->store().setManualPopoverHeight(600);
    EXPECT_EQ(posted.size(), 4U);
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, AfterTerminationClicksAreIgnored) {
    launch();
    const auto action = shell.statusBar.button.action;
    delegate->applicationWillTerminate();
    forget();
    action();
    delegate->openPopover();
    EXPECT_EQ(taken(), Entries{});
}

TEST_F(AppDelegateTest, TerminationBeforeTheLaunchShutsTheStoreDown) {
    makeDelegate();
    finishPasses();
    forget();
    delegate->applicationWillTerminate();
    finishPasses();
    EXPECT_EQ(driver().closed.size(), 1U);
    EXPECT_EQ(takenOf("status bar:"), Entries{});
}

// The end of the delegate

struct AppDelegateRelease : AppDelegateTest {
    int calls = 0;

    /// Runs the program through everything that it does, and releases the delegate in the desktop's call of
    /// that number. Returns whether the delegate lived to see the end.
    bool survivesWithReleaseAt(int call) {
        calls = 0;
        pin({"TC0P"});
        shell.popover.shown = false;
        shell.contentFactory.animations.clear();
        makeDelegate();
        finishPasses();
        shell.journal.whenAdded = [this, call](const std::string&) {
            if (++calls == call) delegate.reset();
        };
        runThroughLife();
        shell.journal.whenAdded = nullptr;
        const bool hasSurvived = delegate != nullptr;
        delegate.reset();
        shell.popover.currentContent.reset();
        return hasSurvived;
    }

    void runThroughLife() {
        const std::vector<std::function<void()>> steps{
            [this] { delegate->applicationDidFinishLaunching(); },
            [this] { tick(); },
            [this] { postTexts({.title = "new", .toolTip = "newer"}); },
            [this] { shell.statusBar.button.action(); },
            [this] { shell.contentFactory.animations.back().completion(); },
            [this] { tick(); },
            [this] { post(kelvinbarManualSizeChanged); },
            [this] { post(kelvinbarDisplayModeChanged); },
            [this] { delegate->store().setSamplingRate(SMCSamplingRate::fast); },
            [this] { delegate->store().setSamplingRate(SMCSamplingRate::medium); },
            [this] { shell.contentFactory.closeActions.back()(); },
            [this] { delegate->openPopover(); },
            [this] { shell.popover.closeByClickOutside(); },
            [this] { delegate->applicationWillTerminate(); },
        };
        for (const auto& step : steps) {
            if (delegate == nullptr) return;
            step();
            finishPasses();
        }
    }
};

TEST_F(AppDelegateRelease, InAnyCallOfTheDesktopLetsTheDelegateFinish) {
    ASSERT_TRUE(survivesWithReleaseAt(0));
    const int all = calls;
    EXPECT_GT(all, 50);
    for (int call = 1; call <= all; ++call) EXPECT_FALSE(survivesWithReleaseAt(call)) << call;
}

TEST_F(AppDelegateRelease, ByAnObserverOfTheStoreLetsThePanelOpen) {
    launch();
    const Registration observer =
        delegate->store().statusMessage().observe([this](const auto&) { delegate.reset(); });
    delegate->togglePopover();
    EXPECT_EQ(delegate, nullptr);
    EXPECT_TRUE(shell.popover.shown);
    EXPECT_EQ(shell.statusBar.itemCount, 0);
    EXPECT_EQ(shell.timers.activeCount(), 0U);
}

TEST_F(AppDelegateRelease, LeavesCallbacksThatDoNothing) {
    launchAndOpen();
    delegate.reset();
    forgetJournal();
    shell.popover.closeByClickOutside();
    shell.contentFactory.closeActions.back()();
    post(kelvinbarManualSizeChanged);
    tick();
    EXPECT_EQ(taken(), Entries{});
}

} // namespace
} // namespace kelvinbar::app_delegate_test
