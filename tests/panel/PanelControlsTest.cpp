#include "panel/PanelControls.h"

#include "tests/fakes/FakeShell.h"
#include "tests/store/StoreFixture.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMimeData>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTimer>
#include <QUrl>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::panel_controls_test {

namespace {

using fakes::discoveryCount;
using fakes::StoreFixture;
using fakes::temperatureKey;
using fakes::wholeNumberKey;

using Entries = std::vector<std::string>;

/// Records the addresses that are opened, instead of opening them.
class OpenedAddresses {
  public:
    explicit OpenedAddresses(QString scheme) : scheme_(std::move(scheme)) {
        QQmlComponent component(&engine_);
        component.setData("import QtQml\nQtObject { signal open(url address) }", {});
        receiver_.reset(component.create());
        signals_ = std::make_unique<QSignalSpy>(receiver_.get(), SIGNAL(open(QUrl)));
        QDesktopServices::setUrlHandler(scheme_, receiver_.get(), "open");
    }

    OpenedAddresses(const OpenedAddresses&) = delete;
    OpenedAddresses& operator=(const OpenedAddresses&) = delete;

    ~OpenedAddresses() { QDesktopServices::unsetUrlHandler(scheme_); }

    [[nodiscard]] QList<QUrl> addresses() const {
        QList<QUrl> addresses;
        for (const QVariantList& arguments : *signals_) addresses << arguments.front().toUrl();
        return addresses;
    }

  private:
    QString scheme_;
    QQmlEngine engine_;
    std::unique_ptr<QObject> receiver_;
    std::unique_ptr<QSignalSpy> signals_;
};

struct Controls : StoreFixture {
    void SetUp() override {
        makeRefreshedStore({temperatureKey("TC0P", 48), wholeNumberKey("F0Ac", 1200)});
        forgetHistory();
        controls = std::make_unique<PanelControls>(*store, loginItem);
    }

    /// The controls after they have heard of the store.
    [[nodiscard]] const PanelControls& shown() const {
        controls->storeChanged();
        return *controls;
    }

    fakes::ShellJournal journal;
    fakes::FakeLoginItemService service{journal};
    LoginItemManager loginItem{service};
    std::unique_ptr<PanelControls> controls;
};

struct SettingsControls : Controls {};

struct HeightControls : Controls {
    [[nodiscard]] double height() const { return shown().manualHeight(); }
};

struct ActionControls : Controls {};

struct LoginControl : Controls {
    /// Clicks, and returns the state that is shown then.
    [[nodiscard]] bool stateAfterClick() {
        controls->toggleRunAtLogin();
        return controls->runAtLogin();
    }
};

// Settings

TEST_F(SettingsControls, FastTogglesTheSamplingRateAndAnnouncesItEachTime) {
    EXPECT_FALSE(shown().isFast());
    controls->toggleFast();
    EXPECT_TRUE(shown().isFast());
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::fast);
    controls->toggleFast();
    EXPECT_FALSE(shown().isFast());
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::medium);
    EXPECT_EQ(postedUnder(kelvinbarSamplingRateChanged).size(), 2U);
}

TEST_F(SettingsControls, FastFollowsTheStore) {
    store->setSamplingRate(SMCSamplingRate::fast);
    EXPECT_TRUE(shown().isFast());
}

TEST_F(SettingsControls, FastTellsBothRates) {
    EXPECT_EQ(PanelControls::fastToolTip(), "On: fast 1s sampling. Off: medium 3s sampling.");
}

TEST_F(SettingsControls, DynamicTogglesTheDisplayMode) {
    EXPECT_FALSE(shown().isDynamic());
    controls->toggleDynamic();
    EXPECT_TRUE(shown().isDynamic());
    EXPECT_EQ(store->displayMode().value(), SMCWindowDisplayMode::dynamic);
    controls->toggleDynamic();
    EXPECT_FALSE(shown().isDynamic());
    EXPECT_EQ(store->displayMode().value(), SMCWindowDisplayMode::fixed);
}

TEST_F(SettingsControls, DynamicTellsWhatTheModeOfNowDoes) {
    EXPECT_EQ(controls->dynamicToolTip(), "Keeps the window at the compact standard size.");
    controls->toggleDynamic();
    EXPECT_EQ(
        controls->dynamicToolTip(),
        "Expands only the window height to show more keys, limited by the current screen visible area.");
    controls->toggleDynamic();
    EXPECT_EQ(controls->dynamicToolTip(), "Keeps the window at the compact standard size.");
}

TEST_F(SettingsControls, SettingsAreStored) {
    controls->toggleFast();
    controls->toggleDynamic();
    controls->increaseHeight();
    makeStore();
    const PanelControls later(*store, loginItem);
    EXPECT_TRUE(later.isFast());
    EXPECT_TRUE(later.isDynamic());
    EXPECT_EQ(later.manualHeight(), 786);
}

// Height

TEST_F(HeightControls, GoesDownInStepsOf80AsFarAsTheStoreLetsIt) {
    EXPECT_EQ(height(), 690);
    controls->decreaseHeight();
    EXPECT_EQ(height(), 610);
    controls->decreaseHeight();
    EXPECT_EQ(height(), 560);
    controls->decreaseHeight();
    EXPECT_EQ(height(), 560);
}

TEST_F(HeightControls, GoesUpInStepsOf96AsFarAsTheStoreLetsIt) {
    controls->increaseHeight();
    EXPECT_EQ(height(), 786);
    store->setManualPopoverHeight(1400);
    controls->increaseHeight();
    EXPECT_EQ(height(), 1400);
}

TEST_F(HeightControls, ResetGoesBackToTheStandard) {
    for (const double start : {560.0, 786.0, 1400.0}) {
        store->setManualPopoverHeight(start);
        controls->resetHeight();
        EXPECT_EQ(height(), 690);
    }
}

TEST_F(HeightControls, TellWhereAStepHasNoEffect) {
    EXPECT_FALSE(shown().isLowest() || shown().isGreatest());
    store->setManualPopoverHeight(560);
    EXPECT_TRUE(shown().isLowest());
    controls->decreaseHeight();
    EXPECT_FALSE(shown().isGreatest());
    store->setManualPopoverHeight(1400);
    EXPECT_TRUE(shown().isGreatest());
    EXPECT_FALSE(shown().isLowest());
}

TEST_F(HeightControls, EachClickIsAnnounced) {
    controls->decreaseHeight();
    controls->resetHeight();
    controls->increaseHeight();
    EXPECT_EQ(postedUnder(kelvinbarManualSizeChanged).size(), 3U);
}

// Actions

TEST_F(ActionControls, RefreshReadsTheKnownKeysAgain) {
    fakes::setKeys(driver(), {temperatureKey("TC0P", 61), wholeNumberKey("F0Ac", 1200)});
    controls->refresh();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
    finishPasses();
    EXPECT_EQ(readingsText(store->readings().value()), "TC0P=61 F0Ac=1200");
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(ActionControls, RefreshWhileOneRunsStartsNone) {
    controls->refresh();
    controls->refresh();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
}

TEST_F(ActionControls, ARefreshIsAnsweredWhenItHasEnded) {
    controls->refresh();
    controls->storeChanged();
    EXPECT_FALSE(controls->refreshed()->isShown());
    finishPasses();
    controls->storeChanged();
    EXPECT_TRUE(controls->refreshed()->isShown());
    EXPECT_EQ(controls->refreshAnswer(), "Nothing new");
}

TEST_F(ActionControls, ARefreshWithOtherValuesTellsSo) {
    fakes::setKeys(driver(), {temperatureKey("TC0P", 99)});
    controls->refresh();
    finishPasses();
    controls->storeChanged();
    EXPECT_EQ(controls->refreshAnswer(), "New values");
}

TEST_F(ActionControls, ARefreshThatNobodyAskedForIsNotAnswered) {
    refresh();
    controls->storeChanged();
    EXPECT_FALSE(controls->refreshed()->isShown());
}

TEST_F(ActionControls, ARefreshThatEndsAfterThePanelHasClosedIsNotAnswered) {
    controls->refresh();
    controls->forgetRefresh();
    finishPasses();
    controls->storeChanged();
    EXPECT_FALSE(controls->refreshed()->isShown());
}

TEST_F(ActionControls, CopyIsAnswered) {
    EXPECT_FALSE(controls->copied()->isShown());
    controls->copy();
    EXPECT_TRUE(controls->copied()->isShown());
}

TEST_F(ActionControls, CopyReplacesTheClipboardByTheSnapshotText) {
    auto other = std::make_unique<QMimeData>();
    other->setHtml("<b>before</b>");
    other->setText("before");
    QGuiApplication::clipboard()->setMimeData(other.release());
    store->hideReading(fakes::readingOf("F0Ac"));
    controls->copy();
    const QString text = QGuiApplication::clipboard()->text();
    EXPECT_EQ(text, QString::fromStdString(store->exportText()));
    EXPECT_TRUE(text.contains("CPU Proximity"));
    EXPECT_TRUE(text.contains("48 °C"));
    EXPECT_TRUE(text.contains("F0Ac")); // hidden, but part of the snapshot
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());
}

TEST_F(ActionControls, CopyCopiesASnapshotWithoutReadingsToo) {
    makeStore();
    ASSERT_EQ(readingKeys(), Entries{});
    QGuiApplication::clipboard()->setText("before");
    PanelControls(*store, loginItem).copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(store->exportText()));
    EXPECT_NE(QGuiApplication::clipboard()->text(), "");
}

TEST_F(ActionControls, ShowAllBringsHiddenReadingsBack) {
    store->hideReading(fakes::readingOf("TC0P"));
    store->hideReading(fakes::readingOf("F0Ac"));
    ASSERT_EQ(store->hiddenKeys().value().size(), 2U);
    controls->showAll();
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
    EXPECT_EQ(defaults.textList("KelvinbarHiddenKeys").value_or(TextList{}), TextList{});
}

TEST_F(ActionControls, ShowAllWithoutHiddenReadingsChangesNothing) {
    recordEvents();
    controls->showAll();
    EXPECT_EQ(events, Entries{});
    EXPECT_EQ(defaults.writes, Entries{});
}

TEST_F(ActionControls, QuitEndsTheProgram) {
    QTimer tooLate;
    tooLate.setSingleShot(true);
    QObject::connect(&tooLate, &QTimer::timeout, [] { QCoreApplication::exit(3); });
    tooLate.start(10'000);
    const QSignalSpy quitting(qGuiApp, &QCoreApplication::aboutToQuit);
    QTimer::singleShot(0, controls.get(), &PanelControls::quit);
    EXPECT_EQ(QGuiApplication::exec(), 0);
    EXPECT_EQ(quitting.count(), 1);
}

TEST_F(ActionControls, TheDonationPageIsOpened) {
    const OpenedAddresses opened(QUrl(controls->donationPage()).scheme());
    controls->openDonationPage();
    EXPECT_EQ(opened.addresses(), QList<QUrl>{QUrl(controls->donationPage())});
}

TEST_F(ActionControls, TheAuthorIsWrittenTo) {
    const OpenedAddresses opened("mailto");
    controls->writeToAuthor();
    EXPECT_EQ(opened.addresses(), QList<QUrl>{QUrl("mailto:" + controls->contact())});
}

TEST_F(ActionControls, TheProgramIsDescribedInTheWordsOfTheMachine) {
    EXPECT_EQ(controls->about(), "Menu bar sensor reader for Hackintosh, AMD SMCAMDProcessor, Intel Macs and "
                                 "Apple Silicon Macs.");
    machineOfStore.texts.about = "Tray sensor reader.";
    makeStore();
    EXPECT_EQ(PanelControls(*store, loginItem).about(), "Tray sensor reader.");
}

TEST_F(ActionControls, AuthorContactAndDonationPageAreThoseOfTheProgram) {
    const auto environment = PanelEnvironment::ofThisProgram(
        {.author = "Ada", .contact = "ada@example.org", .donationPage = "https://example.org/donate"});
    const PanelControls told(*store, loginItem, environment);
    EXPECT_EQ(told.author(), "Ada");
    EXPECT_EQ(told.contact(), "ada@example.org");
    EXPECT_EQ(told.donationPage(), "https://example.org/donate");
}

// Login

TEST_F(LoginControl, ShowsTheStateOfTheSystemWhenThePanelIsShown) {
    const QSignalSpy changes(controls.get(), &PanelControls::runAtLoginChanged);
    EXPECT_FALSE(controls->runAtLogin());
    controls->readLoginItem();
    EXPECT_FALSE(controls->runAtLogin());
    EXPECT_EQ(changes.count(), 0);
    service.registered = true;
    controls->readLoginItem();
    EXPECT_TRUE(controls->runAtLogin());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(journal.entries, Entries{});
}

TEST_F(LoginControl, KeepsItsStateWhileThePanelIsOpen) {
    controls->readLoginItem();
    service.registered = true;
    store->setSamplingRate(SMCSamplingRate::fast);
    EXPECT_FALSE(controls->runAtLogin());
}

TEST_F(LoginControl, AClickRegistersAndAnotherUnregisters) {
    const QSignalSpy changes(controls.get(), &PanelControls::runAtLoginChanged);
    EXPECT_TRUE(stateAfterClick());
    EXPECT_EQ(journal.taken(), Entries{"login item: register"});
    EXPECT_FALSE(stateAfterClick());
    EXPECT_EQ(journal.taken(), Entries{"login item: unregister"});
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(LoginControl, AFailedRegistrationLeavesItOff) {
    service.succeeds = false;
    const QSignalSpy changes(controls.get(), &PanelControls::runAtLoginChanged);
    EXPECT_FALSE(stateAfterClick());
    EXPECT_EQ(journal.entries, (Entries{"login item: register", "login item: beep"}));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(LoginControl, AFailedUnregistrationLeavesItOn) {
    service.registered = true;
    controls->readLoginItem();
    service.succeeds = false;
    EXPECT_TRUE(stateAfterClick());
    EXPECT_EQ(journal.entries, (Entries{"login item: unregister", "login item: beep"}));
}

TEST_F(LoginControl, ARegistrationThatAwaitsApprovalLeavesItOff) {
    service.needsApproval = true;
    EXPECT_FALSE(stateAfterClick());
    EXPECT_EQ(journal.entries, Entries{"login item: register"});
    EXPECT_FALSE(stateAfterClick());
    EXPECT_EQ(journal.entries, (Entries{"login item: register", "login item: register"}));
}

TEST_F(LoginControl, WhereItCannotRegisterAClickOpensTheSettingsAndLeavesItOff) {
    service.allowsRegistration = false;
    service.registered = true;
    controls->readLoginItem();
    EXPECT_FALSE(controls->runAtLogin());
    EXPECT_FALSE(stateAfterClick());
    EXPECT_FALSE(stateAfterClick());
    EXPECT_EQ(journal.entries, (Entries{"login item: settings opened", "login item: settings opened"}));
}

TEST_F(LoginControl, AClickAsksForTheOppositeOfWhatIsShown) {
    controls->readLoginItem();
    service.registered = true; // the user, in the system's settings
    EXPECT_TRUE(stateAfterClick());
    EXPECT_EQ(journal.entries, Entries{});
}

TEST_F(LoginControl, TellsWhatAClickDoes) {
    EXPECT_EQ(controls->loginToolTip(), "Enable or disable Kelvinbar as a macOS login item.");
    service.allowsRegistration = false;
    EXPECT_EQ(controls->loginToolTip(),
              "Open Login Items in System Settings; automatic registration requires macOS 13 or newer.");
}

} // namespace
} // namespace kelvinbar::panel_controls_test
