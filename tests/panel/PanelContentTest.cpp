#include "panel/PanelContent.h"

#include "sensors/Machine.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/FakeShell.h"
#include "tests/store/StoreFixture.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QStyleHints>
#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::panel_content_test {

namespace {

using fakes::ControllerKey;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;
using fakes::wholeNumberKey;
using std::chrono::milliseconds;

using Keys = std::vector<std::string>;

constexpr QPointF somewhere(100, 100);

/// Counts what the models and the list signal.
class SignalCount {
  public:
    explicit SignalCount(SensorList& list) {
        follow(*list.cards());
        for (int card = 0; card < list.cards()->rowCount(); ++card) {
            follow(*qvariant_cast<QAbstractItemModel*>(
                list.cards()->index(card, 0).data(SensorCardsModel::RowsRole)));
        }
        QObject::connect(&list, &SensorList::contentHeightChanged, &context_, [this] { ++count_; });
        QObject::connect(&list, &SensorList::currentKeyChanged, &context_, [this] { ++count_; });
        QObject::connect(&list, &SensorList::viewportTopRequested, &context_, [this] { ++count_; });
    }

    [[nodiscard]] int count() const { return count_; }

  private:
    void follow(const QAbstractItemModel& model) {
        const auto add = [this] { ++count_; };
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &context_, add);
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &context_, add);
        QObject::connect(&model, &QAbstractItemModel::rowsMoved, &context_, add);
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &context_, add);
        QObject::connect(&model, &QAbstractItemModel::modelReset, &context_, add);
        QObject::connect(&model, &QAbstractItemModel::layoutChanged, &context_, add);
    }

    int count_ = 0;
    QObject context_;
};

struct Content : StoreFixture {
    fakes::ShellJournal journal;
    fakes::FakeLoginItemService loginItem{journal};
    LoginItemManager loginItemManager{loginItem};
    const std::vector<ControllerKey> keys{temperatureKey("TC0P", 48), temperatureKey("TC1C", 41),
                                          wholeNumberKey("F0Ac", 1200), temperatureKey("TG0D", 50)};
    std::unique_ptr<PanelContent> content;
    int closings = 0;

    void makeContent() {
        content = std::make_unique<PanelContent>(*store, loginItemManager, SensorListMetrics(1),
                                                 [this] { ++closings; });
        content->sensors()->setViewport(0, 2000);
    }

    /// Creates the content over the refreshed store.
    void openContent() {
        makeRefreshedStore(keys);
        makeContent();
        content->panelWillOpen(false);
        forgetHistory();
    }

    /// One turn of the event loop.
    static void turn() { QCoreApplication::processEvents(); }

    /// What a view reports for a double-click: the second press is also a press.
    void doubleClick(const QString& key) const {
        content->pressRow(key, somewhere);
        content->pressRow(key, somewhere);
        content->doubleClickRow(key);
    }

    [[nodiscard]] SensorList& sensors() const { return *content->sensors(); }

    /// The keys of the rows in a view, in order.
    [[nodiscard]] Keys rowKeys() const {
        Keys result;
        forEachRow([&](const QModelIndex& row) {
            result.push_back(row.data(SensorRowsModel::KeyRole).toString().toStdString());
        });
        return result;
    }

    [[nodiscard]] Keys pinnedRowKeys() const {
        Keys result;
        forEachRow([&](const QModelIndex& row) {
            if (!row.data(SensorRowsModel::SelectedRole).toBool()) return;
            result.push_back(row.data(SensorRowsModel::KeyRole).toString().toStdString());
        });
        return result;
    }

    [[nodiscard]] QString valueOf(std::string_view key) const {
        QString value;
        forEachRow([&](const QModelIndex& row) {
            if (row.data(SensorRowsModel::KeyRole).toString().toStdString() != key) return;
            value = row.data(SensorRowsModel::ValueRole).toString();
        });
        return value;
    }

    /// The SMC loses TC1C and gets another key, so a refresh moves rows.
    void moveRows() {
        setKeys(driver(), {temperatureKey("TC0P", 61), temperatureKey("TC2C", 42),
                           wholeNumberKey("F0Ac", 1200), temperatureKey("TG0D", 50)});
        refresh(true);
    }

  private:
    template <typename Visit>
    void forEachRow(Visit visit) const {
        const QAbstractItemModel& cards = *sensors().cards();
        for (int card = 0; card < cards.rowCount(); ++card) {
            const auto* const rows =
                qvariant_cast<QAbstractItemModel*>(cards.index(card, 0).data(SensorCardsModel::RowsRole));
            for (int row = 0; row < rows->rowCount(); ++row) visit(rows->index(row, 0));
        }
    }
};

const Keys allRows{"TC0P", "TC1C", "TG0D", "F0Ac"};
const Keys movedRows{"TC0P", "TC2C", "TG0D", "F0Ac"};

struct ContentState : Content {};

struct ContentUpdates : Content {};

struct ContentRows : Content {
    void SetUp() override { openContent(); }

    [[nodiscard]] const Keys& pins() const { return store->menuBarKeys().value(); }
};

/// Tests in which the double-click interval has a given length.
struct ContentSecondClick : Content {
    static constexpr int never = 600'000;

    void SetUp() override {
        openContent();
        setInterval(never);
    }

    void TearDown() override { setInterval(usualInterval_); }

    static void setInterval(int interval) {
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(interval);
    }

    /// Presses a row, with a short double-click interval.
    void pressForAMoment(const QString& key) const {
        setInterval(100);
        content->pressRow(key, somewhere);
    }

  private:
    int usualInterval_ = QGuiApplication::styleHints()->mouseDoubleClickInterval();
};

// State

TEST_F(ContentState, ScansAtFirst) {
    makeStore();
    makeContent();
    EXPECT_EQ(content->state(), PanelContent::Scanning);
    content->panelWillOpen(false);
    EXPECT_EQ(content->state(), PanelContent::Scanning);
    EXPECT_EQ(content->statusMessage(), QString::fromUtf8("Reading AppleSMC keys…"));
    EXPECT_EQ(rowKeys(), Keys{});
}

TEST_F(ContentState, ShowsTheSectionsWhenTheScanHasFoundSome) {
    setKeys(driver(), keys);
    makeStore();
    makeContent();
    content->panelWillOpen(false);
    const QSignalSpy stateChanges(content.get(), &PanelContent::stateChanged);
    const QSignalSpy messageChanges(content.get(), &PanelContent::statusMessageChanged);
    finishPasses();
    EXPECT_EQ(content->state(), PanelContent::Scanning);
    turn();
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_EQ(content->statusMessage(), "Loaded 4 HWMonitorSMC2-compatible keys");
    EXPECT_EQ(rowKeys(), allRows);
    EXPECT_EQ(stateChanges.count(), 1);
    EXPECT_EQ(messageChanges.count(), 1);
}

TEST_F(ContentState, ShowsThatNothingIsFound) {
    makeRefreshedStore({temperatureKey("ZZZZ", 1)});
    makeContent();
    content->panelWillOpen(false);
    EXPECT_EQ(content->state(), PanelContent::NothingFound);
    EXPECT_EQ(content->statusMessage(),
              "AppleSMC connected, but no compatible sensor key returned a real value");
}

TEST_F(ContentState, ShowsThatNothingIsFoundWhenAllIsHidden) {
    openContent();
    for (const char* const key : {"TC0P", "TC1C", "F0Ac", "TG0D"}) content->hideRow(key);
    turn();
    EXPECT_EQ(content->state(), PanelContent::NothingFound);
    content->controls()->showAll();
    turn();
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_EQ(rowKeys(), allRows);
}

TEST_F(ContentState, ShowsWhyTheSensorsAreUnavailable) {
    driver().hasService = false;
    machineOfStore.system = nullptr;
    makeStore();
    finishPasses();
    makeContent();
    content->panelWillOpen(false);
    ASSERT_FALSE(store->smcAvailable().value());
    EXPECT_EQ(content->state(), PanelContent::Unavailable);
    EXPECT_NE(content->statusMessage(), "");
    EXPECT_EQ(content->statusMessage(), QString::fromStdString(store->statusMessage().value()));
}

TEST_F(ContentState, TellsAboveTheFirstCardThatOnlyTheSystemIsRead) {
    driver().hasService = false;
    makeStore();
    finishPasses();
    makeContent();
    content->panelWillOpen(false);
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_EQ(content->notice(), "AppleSMC unavailable; showing native macOS telemetry");
    store->refresh(false);
    turn();
    EXPECT_EQ(content->notice(), "AppleSMC unavailable; showing native macOS telemetry");
}

TEST_F(ContentState, TellsNothingAboveTheFirstCardOnceSensorsAreRead) {
    driver().hasService = false;
    makeStore();
    finishPasses();
    makeContent();
    content->panelWillOpen(false);
    const QSignalSpy changes(content.get(), &PanelContent::noticeChanged);
    driver().hasService = true;
    setKeys(driver(), keys);
    refresh(true);
    turn();
    EXPECT_EQ(content->notice(), "");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ContentState, ScansAgainWhereThereIsNothingToShow) {
    makeRefreshedStore({temperatureKey("ZZZZ", 1)});
    makeContent();
    content->panelWillOpen(false);
    store->refresh(true);
    turn();
    EXPECT_TRUE(waitFor([&] { return content->state() == PanelContent::Scanning; }));
    finishPasses();
    turn();
    EXPECT_EQ(content->state(), PanelContent::NothingFound);
}

TEST_F(ContentState, StaysDuringAShortScan) {
    makeRefreshedStore({temperatureKey("ZZZZ", 1)});
    makeContent();
    content->panelWillOpen(false);
    const QSignalSpy stateChanges(content.get(), &PanelContent::stateChanged);
    const QSignalSpy messageChanges(content.get(), &PanelContent::statusMessageChanged);
    for (int scans = 0; scans < 3; ++scans) {
        store->refresh(true);
        turn();
        EXPECT_EQ(content->state(), PanelContent::NothingFound);
        finishPasses();
        turn();
    }
    EXPECT_EQ(stateChanges.count(), 0);
    EXPECT_EQ(messageChanges.count(), 0);
}

TEST_F(ContentState, ALaterScanWaitsAnew) {
    makeRefreshedStore({temperatureKey("ZZZZ", 1)});
    makeContent();
    content->panelWillOpen(false);
    store->refresh(true);
    turn();
    ASSERT_TRUE(waitFor([&] { return content->state() == PanelContent::Scanning; }));
    finishPasses();
    turn();
    store->refresh(true);
    turn();
    EXPECT_EQ(content->state(), PanelContent::NothingFound);
}

TEST_F(ContentState, KeepsShowingTheSectionsDuringARefresh) {
    openContent();
    const QSignalSpy stateChanges(content.get(), &PanelContent::stateChanged);
    store->refresh(false);
    turn();
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_EQ(rowKeys(), allRows);
    EXPECT_EQ(content->statusMessage(), QString::fromUtf8("Reading AppleSMC keys…"));
    finishPasses();
    turn();
    EXPECT_EQ(stateChanges.count(), 0);
}

// Following the store

TEST_F(ContentUpdates, AreOneForAllFieldsThatChangeInATurn) {
    openContent();
    const QSignalSpy updates(content->controls(), &PanelControls::isFastChanged);
    store->setMenuBarKeys({"TC0P", "TC1C"});
    store->setSamplingRate(SMCSamplingRate::fast);
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    store->setManualPopoverHeight(800);
    store->hideReading(fakes::readingOf("TG0D"));
    moveRows();
    EXPECT_EQ(updates.count(), 0);
    EXPECT_EQ(rowKeys(), allRows);
    turn();
    EXPECT_EQ(updates.count(), 1);
    EXPECT_EQ(rowKeys(), (Keys{"TC0P", "TC2C", "F0Ac"}));
    EXPECT_EQ(pinnedRowKeys(), Keys{"TC0P"});
    turn();
    EXPECT_EQ(updates.count(), 1);
}

TEST_F(ContentUpdates, FollowEachSetting) {
    openContent();
    const QSignalSpy rates(content->controls(), &PanelControls::isFastChanged);
    const QSignalSpy modes(content->controls(), &PanelControls::isDynamicChanged);
    const QSignalSpy heights(content->controls(), &PanelControls::manualHeightChanged);
    const auto counts = [&] { return std::array{rates.count(), modes.count(), heights.count()}; };
    store->setSamplingRate(SMCSamplingRate::fast);
    turn();
    EXPECT_THAT(counts(), testing::ElementsAre(1, 0, 0));
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    turn();
    EXPECT_THAT(counts(), testing::ElementsAre(1, 1, 0));
    store->setManualPopoverHeight(800);
    turn();
    EXPECT_THAT(counts(), testing::ElementsAre(1, 1, 1));
    store->setManualPopoverHeight(800);
    turn();
    EXPECT_THAT(counts(), testing::ElementsAre(1, 1, 1));
}

TEST_F(ContentUpdates, OfANewValueMoveOneRow) {
    openContent();
    const SignalCount changes(sensors());
    setKeys(driver(), {temperatureKey("TC0P", 48), temperatureKey("TC1C", 77), wholeNumberKey("F0Ac", 1200),
                       temperatureKey("TG0D", 50)});
    refresh();
    EXPECT_EQ(changes.count(), 0);
    turn();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(valueOf("TC1C"), QString::fromUtf8("77°"));
}

TEST_F(ContentUpdates, OfAnUnchangedRefreshLeaveTheModelsAlone) {
    openContent();
    const SignalCount changes(sensors());
    const QSignalSpy stateChanges(content.get(), &PanelContent::stateChanged);
    const QSignalSpy messageChanges(content.get(), &PanelContent::statusMessageChanged);
    refresh();
    turn();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(stateChanges.count(), 0);
    EXPECT_EQ(messageChanges.count(), 0);
}

TEST_F(ContentUpdates, WaitForThePanelToOpen) {
    makeRefreshedStore(keys);
    makeContent();
    const QSignalSpy updates(content->controls(), &PanelControls::isFastChanged);
    const QSignalSpy stateChanges(content.get(), &PanelContent::stateChanged);
    const QSignalSpy messageChanges(content.get(), &PanelContent::statusMessageChanged);
    moveRows();
    store->setSamplingRate(SMCSamplingRate::fast);
    turn();
    EXPECT_EQ(rowKeys(), Keys{});
    EXPECT_EQ(updates.count(), 0);
    EXPECT_EQ(stateChanges.count(), 0);
    EXPECT_EQ(messageChanges.count(), 0);
    store->setMenuBarKeys({"F0Ac"});
    content->panelWillOpen(false);
    EXPECT_EQ(rowKeys(), movedRows);
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
    EXPECT_EQ(content->state(), PanelContent::Sections);
    turn();
    EXPECT_EQ(updates.count(), 1);
}

TEST_F(ContentUpdates, EndWhenThePanelCloses) {
    openContent();
    const SignalCount changes(sensors());
    const QSignalSpy updates(content->controls(), &PanelControls::isFastChanged);
    moveRows();
    content->panelDidClose();
    turn();
    moveRows();
    store->setMenuBarKeys({"F0Ac"});
    store->setSamplingRate(SMCSamplingRate::fast);
    turn();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(updates.count(), 0);
    EXPECT_EQ(rowKeys(), allRows);
    content->panelWillOpen(false);
    EXPECT_EQ(rowKeys(), movedRows);
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
}

TEST_F(ContentUpdates, GoOnAfterThePanelWasClosedAndOpenedInOneTurn) {
    openContent();
    moveRows();
    content->panelDidClose();
    content->panelWillOpen(false);
    turn();
    EXPECT_EQ(rowKeys(), movedRows);
    store->setMenuBarKeys({"F0Ac"});
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
}

TEST_F(ContentUpdates, AreMadeWhenThePanelSaysThatItIsOpen) {
    makeRefreshedStore(keys);
    makeContent();
    Keys keysWhenOpened;
    bool reducedMotionWhenOpened = false;
    QObject::connect(content.get(), &PanelContent::opened, [&] {
        keysWhenOpened = rowKeys();
        reducedMotionWhenOpened = content->reducedMotion();
    });
    content->panelWillOpen(true);
    EXPECT_EQ(keysWhenOpened, allRows);
    EXPECT_TRUE(reducedMotionWhenOpened);
}

TEST_F(ContentUpdates, MotionIsWhatTheDesktopAsksForEachTime) {
    makeRefreshedStore(keys);
    makeContent();
    const QSignalSpy changes(content.get(), &PanelContent::reducedMotionChanged);
    content->panelWillOpen(false);
    EXPECT_FALSE(content->reducedMotion());
    EXPECT_EQ(changes.count(), 0);
    content->panelDidClose();
    content->panelWillOpen(true);
    EXPECT_TRUE(content->reducedMotion());
    content->panelDidClose();
    content->panelWillOpen(true);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ContentUpdates, TheLoginItemIsReadWheneverThePanelOpens) {
    makeRefreshedStore(keys);
    makeContent();
    loginItem.registered = true;
    EXPECT_FALSE(content->controls()->runAtLogin());
    content->panelWillOpen(false);
    EXPECT_TRUE(content->controls()->runAtLogin());
    content->panelDidClose();
    loginItem.registered = false;
    content->panelWillOpen(false);
    EXPECT_FALSE(content->controls()->runAtLogin());
}

TEST_F(ContentUpdates, CloseClosesThePanel) {
    openContent();
    content->close();
    EXPECT_EQ(closings, 1);
}

TEST_F(ContentUpdates, TheStoreGoesOnWithoutThem) {
    openContent();
    store->setMenuBarKeys({"TC0P"}); // an update waits
    content->pressRow("TC0P", somewhere);
    content.reset();
    moveRows();
    store->setMenuBarKeys({"TC2C"});
    turn();
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC2C"});
    makeContent();
    content->panelWillOpen(false);
    EXPECT_EQ(rowKeys(), movedRows);
    EXPECT_EQ(pinnedRowKeys(), Keys{"TC2C"});
}

// Rows

TEST_F(ContentRows, ArePinnedInTheWordsOfTheMachine) {
    machineOfStore.texts.pinned = "is pinned";
    machineOfStore.texts.pin = "pin";
    machineOfStore.texts.unpin = "unpin";
    makeStore();
    makeContent();
    EXPECT_EQ(content->pinnedText(), "is pinned");
    EXPECT_EQ(content->pinText(), "pin");
    EXPECT_EQ(content->unpinText(), "unpin");
}

TEST_F(ContentRows, ADoubleClickPinsAndAnotherUnpins) {
    doubleClick("TG0D");
    EXPECT_EQ(pins(), Keys{"TG0D"});
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{"TG0D"});
    doubleClick("TG0D");
    EXPECT_EQ(pins(), Keys{});
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{});
}

TEST_F(ContentRows, APressAlonePinsNothing) {
    content->pressRow("TG0D", somewhere);
    turn();
    EXPECT_EQ(pins(), Keys{});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
}

TEST_F(ContentRows, ADoubleClickOnAnotherRowThanWasPressedPinsNeither) {
    content->pressRow("TG0D", somewhere);
    content->pressRow("TC0P", somewhere);
    content->doubleClickRow("TC0P");
    EXPECT_EQ(pins(), Keys{});
}

TEST_F(ContentRows, ADoubleClickWithoutAPressPinsNothing) {
    content->doubleClickRow("TC0P");
    EXPECT_EQ(pins(), Keys{});
}

TEST_F(ContentRows, ADoubleClickRightAfterAClickOnAnotherRowPins) {
    content->pressRow("TG0D", somewhere);
    doubleClick("TC0P");
    EXPECT_EQ(pins(), Keys{"TC0P"});
}

TEST_F(ContentRows, AThirdPressPinsNothingMore) {
    doubleClick("TC0P");
    content->pressRow("TC0P", somewhere);
    turn();
    EXPECT_EQ(pins(), Keys{"TC0P"});
}

TEST_F(ContentRows, ARowIsPinnedByTheKeyboardWithoutAPress) {
    content->toggleRow("F0Ac");
    EXPECT_EQ(pins(), Keys{"F0Ac"});
    content->toggleRow("F0Ac");
    EXPECT_EQ(pins(), Keys{});
}

TEST_F(ContentRows, TheSeventhPinIsTheStoresMatter) {
    store->setMenuBarKeys({"K1", "K2", "K3", "K4", "K5", "K6"});
    content->toggleRow("F0Ac");
    EXPECT_EQ(pins(), (Keys{"K2", "K3", "K4", "K5", "K6", "F0Ac"}));
}

TEST_F(ContentRows, HidingARowTakesItAndItsPinAway) {
    content->toggleRow("TC1C");
    content->hideRow("TC1C");
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TC1C"});
    EXPECT_EQ(pins(), Keys{});
    turn();
    EXPECT_EQ(rowKeys(), (Keys{"TC0P", "TG0D", "F0Ac"}));
}

TEST_F(ContentRows, HidingTheOnlyRowOfACardTakesTheCardAway) {
    const int before = sensors().cards()->rowCount();
    content->hideRow("F0Ac");
    turn();
    EXPECT_EQ(sensors().cards()->rowCount(), before - 1);
}

TEST_F(ContentRows, ShowAllBringsThemBackUnpinned) {
    content->toggleRow("TC1C");
    content->hideRow("TC1C");
    content->hideRow("F0Ac");
    turn();
    content->controls()->showAll();
    turn();
    EXPECT_EQ(rowKeys(), allRows);
    EXPECT_EQ(pinnedRowKeys(), Keys{});
}

TEST_F(ContentRows, WhatIsNotShownIsNeitherPinnedNorHidden) {
    content->hideRow("TC1C");
    turn();
    forgetHistory();
    for (const char* const key : {"TC1C", "K999", "tc0p", ""}) {
        content->toggleRow(key);
        content->hideRow(key);
        doubleClick(key);
    }
    EXPECT_EQ(pins(), Keys{});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TC1C"});
    EXPECT_EQ(defaults.writes, Keys{});
}

// During the double-click interval

TEST_F(ContentSecondClick, ARefreshDoesNotMoveTheRows) {
    content->pressRow("TC1C", somewhere);
    moveRows();
    turn();
    EXPECT_EQ(rowKeys(), allRows);
}

TEST_F(ContentSecondClick, ValuesPinsAndTextsGoOn) {
    content->pressRow("TC1C", somewhere);
    moveRows();
    store->setMenuBarKeys({"F0Ac"});
    turn();
    EXPECT_EQ(valueOf("TC0P"), QString::fromUtf8("61°"));
    EXPECT_EQ(valueOf("TC1C"), QString::fromUtf8("41°")) << "the last value of a reading that has gone";
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
    store->refresh(false);
    turn();
    EXPECT_EQ(content->statusMessage(), QString::fromStdString(store->statusMessage().value()));
}

TEST_F(ContentSecondClick, TheControlsFollowTheStoreNevertheless) {
    content->pressRow("TC1C", somewhere);
    const QSignalSpy updates(content->controls(), &PanelControls::isFastChanged);
    content->controls()->toggleFast();
    turn();
    EXPECT_EQ(updates.count(), 1);
}

TEST_F(ContentSecondClick, TheRowsMoveWhenItDoesNotCome) {
    pressForAMoment("TC1C");
    moveRows();
    EXPECT_TRUE(waitFor([&] { return rowKeys() == movedRows; }));
    EXPECT_EQ(valueOf("TC0P"), QString::fromUtf8("61°"));
    store->setMenuBarKeys({"TC2C"});
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{"TC2C"});
}

TEST_F(ContentSecondClick, TheStateFollowsWhenItDoesNotCome) {
    pressForAMoment("TC1C");
    setKeys(driver(), {temperatureKey("ZZZZ", 1)});
    refresh(true);
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_TRUE(waitFor([&] { return content->state() == PanelContent::NothingFound; }));
    EXPECT_EQ(rowKeys(), Keys{});
}

TEST_F(ContentSecondClick, RowsThatCannotBeReadAnyMoreStayUntilThen) {
    content.reset();
    machineOfStore.system = nullptr;
    openContent();
    pressForAMoment("TC1C");
    machineOfStore.source->close();
    driver().hasService = false;
    refresh(true);
    turn();
    EXPECT_EQ(content->state(), PanelContent::Sections);
    EXPECT_TRUE(waitFor([&] { return content->state() == PanelContent::Unavailable; }));
}

TEST_F(ContentSecondClick, ItPinsAtOnceWhatWasRefreshedMeanwhile) {
    content->pressRow("TC0P", somewhere);
    moveRows();
    turn();
    content->pressRow("TC0P", somewhere);
    content->doubleClickRow("TC0P");
    turn();
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
    EXPECT_EQ(pinnedRowKeys(), Keys{"TC0P"});
    EXPECT_EQ(rowKeys(), movedRows);
}

TEST_F(ContentSecondClick, OnAReadingThatIsGoneMeanwhilePinsWhatWasOnTheScreen) {
    content->pressRow("TC1C", somewhere);
    moveRows();
    turn();
    content->pressRow("TC1C", somewhere);
    content->doubleClickRow("TC1C");
    turn();
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC1C"});
    EXPECT_EQ(rowKeys(), movedRows);
}

TEST_F(ContentSecondClick, EveryPressOfAButtonThatHidesHidesARow) {
    for (const std::string& key : allRows) {
        content->pressHideButton(QString::fromStdString(key), somewhere);
        turn();
    }
    EXPECT_EQ(store->hiddenKeys().value(), KeySet(allRows.begin(), allRows.end()));
}

TEST_F(ContentSecondClick, OnTheHideButtonOfAnotherRowHidesNothing) {
    content->pressRow("TC0P", somewhere);
    content->pressHideButton("TC1C", somewhere + QPointF(1, 1));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
}

TEST_F(ContentSecondClick, OnTheHideButtonOfItsRowHidesTheRow) {
    content->pressRow("TC0P", somewhere);
    content->pressHideButton("TC0P", somewhere + QPointF(1, 1));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TC0P"});
}

TEST_F(ContentSecondClick, APressElsewhereIsNone) {
    content->pressRow("TC0P", somewhere);
    content->pressHideButton("TC1C", somewhere + QPointF(80, 0));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TC1C"});
}

TEST_F(ContentSecondClick, HidingARowIsSeenAtOnce) {
    content->pressRow("TC0P", somewhere);
    content->hideRow("TC0P");
    turn();
    EXPECT_EQ(rowKeys(), (Keys{"TC1C", "TG0D", "F0Ac"}));
}

TEST_F(ContentSecondClick, PinningByTheKeyboardIsSeenAtOnce) {
    content->pressRow("TC0P", somewhere);
    content->toggleRow("F0Ac");
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
}

TEST_F(ContentSecondClick, ANewPressWaitsAnew) {
    pressForAMoment("TC0P");
    setInterval(never);
    content->pressRow("TG0D", somewhere);
    moveRows();
    runEventLoop(milliseconds(250));
    EXPECT_EQ(rowKeys(), allRows);
    content->doubleClickRow("TC0P");
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    content->pressRow("TG0D", somewhere);
    content->doubleClickRow("TG0D");
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TG0D"});
}

TEST_F(ContentSecondClick, AMoveOfTheRowsIsMadeAtOnceWhereNoneMayCome) {
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    EXPECT_EQ(moves, 1);
    turn();
    EXPECT_EQ(moves, 1);
}

TEST_F(ContentSecondClick, AMoveOfTheRowsIsMadeAtOnceWhereThePointerIsElsewhere) {
    sensors().hover("TC1C", true);
    content->pressRow("TC1C", somewhere);
    sensors().hover("TC1C", false);
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    EXPECT_EQ(moves, 1);
}

TEST_F(ContentSecondClick, AMoveOfTheRowsIsMadeAfterTheWait) {
    sensors().hover("TC1C", true);
    pressForAMoment("TC1C");
    moveRows();
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    EXPECT_EQ(moves, 0);
    ASSERT_TRUE(waitFor([&] { return moves > 0; }));
    EXPECT_EQ(rowKeys(), movedRows);
    setInterval(1);
    content->pressRow("TC0P", somewhere);
    runEventLoop(milliseconds(50));
    EXPECT_EQ(moves, 1);
}

TEST_F(ContentSecondClick, AMoveOfTheRowsIsMadeWhenItCame) {
    sensors().hover("TC1C", true);
    content->pressRow("TC1C", somewhere);
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    content->pressRow("TC1C", somewhere);
    EXPECT_EQ(moves, 0);
    content->doubleClickRow("TC1C");
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC1C"});
}

TEST_F(ContentSecondClick, AMoveOfTheRowsMayWaitForTheNext) {
    sensors().hover("TC1C", true);
    content->pressRow("TC1C", somewhere);
    int moves = 0;
    content->whenRowsMayMove([&] {
        ++moves;
        content->whenRowsMayMove([&] { ++moves; });
    });
    content->hideRow("TC1C");
    EXPECT_EQ(moves, 2);
}

TEST_F(ContentSecondClick, ClosingEndsTheWait) {
    sensors().hover("TC1C", true);
    content->pressRow("TC1C", somewhere);
    moveRows();
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    content->panelDidClose();
    EXPECT_EQ(moves, 1);
    turn();
    EXPECT_EQ(rowKeys(), allRows);
    content->panelWillOpen(false);
    EXPECT_EQ(rowKeys(), movedRows);
    store->setMenuBarKeys({"F0Ac"});
    turn();
    EXPECT_EQ(pinnedRowKeys(), Keys{"F0Ac"});
    EXPECT_EQ(moves, 1);
}

TEST_F(ContentSecondClick, DestructionDuringTheWaitMakesNoMove) {
    sensors().hover("TC1C", true);
    pressForAMoment("TC1C");
    int moves = 0;
    content->whenRowsMayMove([&] { ++moves; });
    content.reset();
    runEventLoop(milliseconds(250));
    EXPECT_EQ(moves, 0);
}

// While the list is flicked

TEST_F(ContentRows, StayInPlaceWhileTheListMoves) {
    content->setListMoving(true);
    moveRows();
    turn();
    EXPECT_EQ(rowKeys(), allRows);
    EXPECT_EQ(valueOf("TC0P"), QString::fromUtf8("61°"));
    content->setListMoving(false);
    EXPECT_EQ(rowKeys(), movedRows);
}

TEST_F(ContentRows, AreHiddenAtOnceWhileTheListMoves) {
    content->setListMoving(true);
    content->hideRow("TC0P");
    turn();
    EXPECT_EQ(rowKeys(), (Keys{"TC1C", "TG0D", "F0Ac"}));
}

TEST_F(ContentRows, AMoveOfTheListThatEndsUpdatesNothing) {
    const QSignalSpy updates(content->controls(), &PanelControls::isFastChanged);
    store->setSamplingRate(SMCSamplingRate::fast); // waits for its turn
    content->setListMoving(true);
    content->setListMoving(false);
    EXPECT_EQ(updates.count(), 0);
}

TEST_F(ContentRows, TheCurrentRowIsCopied) {
    content->copyCurrentRow();
    sensors().setCurrentKey("TC1C");
    content->copyCurrentRow();
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.endsWith(QString::fromUtf8("\t41 °C"))) << copied.toStdString();
}

TEST_F(ContentRows, AreShownAgainPinnedInTheirPlace) {
    store->setMenuBarKeys({"TC0P", "TC1C", "TG0D"});
    content->hideRow("TC1C");
    turn();
    EXPECT_EQ(content->hidden()->count(), 1);
    content->hidden()->undo();
    turn();
    EXPECT_EQ(rowKeys(), allRows);
    EXPECT_EQ(pins(), (Keys{"TC0P", "TC1C", "TG0D"}));
    EXPECT_EQ(content->hidden()->count(), 0);
}

TEST_F(Content, MayBeDestroyedByItsCloseAction) {
    const auto witness = std::make_shared<int>(0);
    makeRefreshedStore(keys);
    content = std::make_unique<PanelContent>(*store, loginItemManager, SensorListMetrics(1), [this, witness] {
        content = nullptr;
        ++*witness;
    });
    content->close();
    EXPECT_EQ(*witness, 1);
    EXPECT_EQ(witness.use_count(), 1);
}

} // namespace
} // namespace kelvinbar::panel_content_test
