#include "desktop/linux/tray/StatusNotifierItem.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::status_notifier_item_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

StatusNotifierPixmaps onePixel(QRgb color) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, color);
    return {statusNotifierPixmap(image)};
}

StatusNotifierContent sampleContent() {
    return {.title = "47° 1200rpm",
            .label = "47° 1200rpm",
            .iconPixmaps = onePixel(qRgba(0x11, 0x22, 0x33, 0xff)),
            .toolTipTitle = "Kelvinbar",
            .toolTipText = "CPU: 47 °C"};
}

class StatusNotifierItemTest : public testing::Test {
  protected:
    StatusNotifierItem& makeItem() {
        item_ = nullptr; // otherwise the old item would unregister the new one
        item_ = std::make_unique<StatusNotifierItem>(
            bus_.connection(),
            StatusNotifierHandlers{
                .activated = [this](QPoint place) { places_.push_back(place); },
                .activationTokenGiven =
                    [this](const QString& token) { tokens_.push_back(token.toStdString()); }},
            recording_.log);
        return *item_;
    }

    BusPeer makeHost() { return {bus_.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem"}; }

    bool waitForRegistrations(qsizetype count) {
        return waitFor([&] { return watcher_.items().size() >= count; });
    }

    /// How often the host receives each signal when the content changes from the sample.
    std::vector<qsizetype> signalsFor(const StatusNotifierContent& content) {
        StatusNotifierItem& item = makeItem();
        item.setContent(sampleContent());
        BusPeer host = makeHost();
        item.setContent(content);
        std::vector<qsizetype> counts;
        for (const auto* const name :
             {"NewTitle", "XAyatanaNewLabel", "NewIcon", "NewToolTip", "NewStatus"}) {
            counts.push_back(host.received(name).size());
        }
        return counts;
    }

    PrivateBus bus_;
    FakeWatcher watcher_;
    std::vector<QPoint> places_;
    std::vector<std::string> tokens_;
    fakes::RecordingLog recording_{"tray=info"};
    std::unique_ptr<StatusNotifierItem> item_;
};

TEST_F(StatusNotifierItemTest, RegistersWithAWatcherThatRuns) {
    watcher_.appear();
    const StatusNotifierItem& item = makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    EXPECT_TRUE(item.hasWatcher());
    const QString service = watcher_.items().first();
    const PrivateBus other;
    EXPECT_EQ(other.connection().interface()->serviceOwner(service).value(), bus_.address());
    BusPeer host(service, "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    EXPECT_EQ(host.properties()["Id"].toString(), "kelvinbar");
}

TEST_F(StatusNotifierItemTest, RegistersOnce) {
    watcher_.appear();
    makeItem().setContent(sampleContent());
    ASSERT_TRUE(waitForRegistrations(1));
    BusPeer host = makeHost();
    host.received("NewTitle");
    EXPECT_EQ(watcher_.items().size(), 1);
}

TEST_F(StatusNotifierItemTest, RegistersWithAWatcherThatAppearsLater) {
    const StatusNotifierItem& item = makeItem();
    EXPECT_FALSE(item.hasWatcher());
    watcher_.appear();
    ASSERT_TRUE(waitForRegistrations(1));
    EXPECT_TRUE(item.hasWatcher());
}

TEST_F(StatusNotifierItemTest, RegistersAgainWithItsCurrentLabelWhenTheWatcherReturns) {
    watcher_.appear();
    StatusNotifierItem& item = makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    watcher_.vanish();
    ASSERT_TRUE(waitFor([&] { return !item.hasWatcher(); }));
    item.setContent(sampleContent());
    watcher_.appear();
    ASSERT_TRUE(waitForRegistrations(2));
    EXPECT_TRUE(item.hasWatcher());
    BusPeer host(watcher_.items().last(), "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    EXPECT_EQ(host.properties()["XAyatanaLabel"].toString(), "47° 1200rpm");
}

TEST_F(StatusNotifierItemTest, ReportsWhenTheWatcherAppearsAndVanishes) {
    StatusNotifierItem& item = makeItem();
    std::vector<bool> states;
    watcher_.appear();
    ASSERT_TRUE(waitFor([&] { return item.hasHost() == true; }));
    QObject::connect(&item, &StatusNotifierItem::watcherChanged,
                     [&] { states.push_back(item.hasWatcher()); });
    watcher_.vanish();
    ASSERT_TRUE(waitFor([&] { return states.size() == 1; }));
    watcher_.appear();
    ASSERT_TRUE(waitFor([&] { return states.size() == 2; }));
    EXPECT_THAT(states, ElementsAre(false, true));
}

TEST_F(StatusNotifierItemTest, RegistersByTheUniqueNameOfItsConnection) {
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    EXPECT_EQ(watcher_.items().first(), bus_.address());
}

TEST_F(StatusNotifierItemTest, KnowsTheWatchersProcess) {
    const StatusNotifierItem& item = makeItem();
    EXPECT_EQ(item.watcherProcess(), "");
    watcher_.appear();
    ASSERT_TRUE(waitFor([&] { return item.hasWatcher(); }));
    EXPECT_EQ(item.watcherProcess(), "kelvinbar_deskt"); // 15 characters
    watcher_.vanish();
    ASSERT_TRUE(waitFor([&] { return !item.hasWatcher(); }));
    EXPECT_EQ(item.watcherProcess(), "");
}

TEST_F(StatusNotifierItemTest, HasNoHostWithoutAWatcher) {
    const StatusNotifierItem& item = makeItem();
    EXPECT_TRUE(waitFor([&] { return item.hasHost() == false; }));
}

TEST_F(StatusNotifierItemTest, RegistersOnTheBusThatItMovesTo) {
    watcher_.appear();
    StatusNotifierItem& item = makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    item.setContent(sampleContent());
    const PrivateBus next;
    item.moveTo(next.connection());
    ASSERT_TRUE(waitForRegistrations(2));
    EXPECT_EQ(watcher_.items().last(), next.address());
    BusPeer host(next.address(), "/StatusNotifierItem", "org.kde.StatusNotifierItem");
    EXPECT_EQ(host.properties()["XAyatanaLabel"].toString(), "47° 1200rpm");
}

TEST_F(StatusNotifierItemTest, IgnoresAnActivationTokenWithoutMeasure) {
    makeItem();
    BusPeer host = makeHost();
    host.call("ProvideXdgActivationToken", {QString(100'000, 'x')});
    EXPECT_THAT(tokens_, IsEmpty());
}

TEST_F(StatusNotifierItemTest, TellsHostsToReadItAgainAfterItHasRefusedCalls) {
    makeItem();
    BusPeer host = makeHost();
    for (int call = 0; call < 1000; ++call) host.call("ContextMenu", {0, 0});
    EXPECT_TRUE(waitFor([&] { return !host.received("NewIcon").isEmpty(); }));
    EXPECT_FALSE(host.received("XAyatanaNewLabel").isEmpty());
}

TEST_F(StatusNotifierItemTest, DoesNotKnowTheHostBeforeTheWatcherReplies) {
    watcher_.host = false;
    watcher_.appear();
    EXPECT_EQ(makeItem().hasHost(), std::nullopt);
}

TEST_F(StatusNotifierItemTest, HasNoHostIfTheWatcherSaysSo) {
    watcher_.host = false;
    watcher_.appear();
    const StatusNotifierItem& item = makeItem();
    EXPECT_TRUE(waitFor([&] { return item.hasHost() == false; }));
    EXPECT_TRUE(item.hasWatcher());
}

TEST_F(StatusNotifierItemTest, TrustsAWatcherThatDoesNotTellToHaveAHost) {
    watcher_.host = std::nullopt;
    watcher_.appear();
    const StatusNotifierItem& item = makeItem();
    EXPECT_TRUE(waitFor([&] { return item.hasHost() == true; }));
}

TEST_F(StatusNotifierItemTest, FollowsTheHostThatComesAndGoes) {
    watcher_.host = false;
    watcher_.appear();
    const StatusNotifierItem& item = makeItem();
    ASSERT_TRUE(waitFor([&] { return item.hasHost() == false; }));
    int changes = 0;
    QObject::connect(&item, &StatusNotifierItem::watcherChanged, [&] { ++changes; });
    watcher_.host = true;
    emit watcher_.StatusNotifierHostRegistered();
    EXPECT_TRUE(waitFor([&] { return item.hasHost() == true; }));
    EXPECT_EQ(changes, 1);
    watcher_.host = false;
    emit watcher_.StatusNotifierHostUnregistered();
    EXPECT_TRUE(waitFor([&] { return item.hasHost() == false; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(StatusNotifierItemTest, KeepsTheTrayWhileOneOfTwoHostsGoes) {
    watcher_.host = true;
    watcher_.appear();
    const StatusNotifierItem& item = makeItem();
    ASSERT_TRUE(waitFor([&] { return item.hasHost() == true; }));
    int changes = 0;
    QObject::connect(&item, &StatusNotifierItem::watcherChanged, [&] { ++changes; });
    emit watcher_.StatusNotifierHostUnregistered(); // another one is left
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(item.hasHost(), true);
    EXPECT_EQ(changes, 0);
}

TEST_F(StatusNotifierItemTest, RegistersAgainWhenTheWatcherDropsIt) {
    watcher_.appear();
    makeItem();
    qsizetype registrations = 1;
    ASSERT_TRUE(waitForRegistrations(registrations));
    // Watchers name items in different ways.
    for (const QString& service :
         {bus_.address(), bus_.address() + "/StatusNotifierItem", bus_.address() + "@/StatusNotifierItem"}) {
        emit watcher_.StatusNotifierItemUnregistered(service);
        EXPECT_TRUE(waitForRegistrations(++registrations)) << service.toStdString();
    }
    EXPECT_EQ(watcher_.items().last(), bus_.address());
}

TEST_F(StatusNotifierItemTest, StaysAsItIsWhenTheWatcherDropsAnotherItem) {
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    emit watcher_.StatusNotifierItemUnregistered(bus_.address() + "0"); // of a later connection
    emit watcher_.StatusNotifierItemUnregistered("org.kde.StatusNotifierItem-1-1");
    emit watcher_.StatusNotifierItemUnregistered("");
    runEventLoop(std::chrono::milliseconds(400));
    EXPECT_EQ(watcher_.items().size(), 1);
}

TEST_F(StatusNotifierItemTest, RegistersAgainOnceForNewsThatComesTogether) {
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    for (int news = 0; news < 20; ++news) emit watcher_.StatusNotifierItemUnregistered(bus_.address());
    ASSERT_TRUE(waitForRegistrations(2));
    runEventLoop(std::chrono::milliseconds(400));
    EXPECT_EQ(watcher_.items().size(), 2);
}

TEST_F(StatusNotifierItemTest, GivesUpOnAWatcherThatKeepsDroppingIt) {
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    constexpr int most = StatusNotifierItem::mostRepeatedRegistrations;
    for (int repetition = 1; repetition <= most; ++repetition) {
        emit watcher_.StatusNotifierItemUnregistered(bus_.address());
        ASSERT_TRUE(waitForRegistrations(1 + repetition));
    }
    for (int news = 0; news < 3; ++news) {
        emit watcher_.StatusNotifierItemUnregistered(bus_.address());
        runEventLoop(std::chrono::milliseconds(300));
    }
    EXPECT_EQ(watcher_.items().size(), 1 + most);
    const std::string warning =
        "kelvinbar: the watcher has dropped the status item too often: it may not be seen";
    EXPECT_EQ(std::ranges::count(recording_.lines(), warning), 1);
}

TEST_F(StatusNotifierItemTest, PassesOnActivationTokens) {
    makeItem();
    BusPeer host = makeHost();
    EXPECT_EQ(host.call("ProvideXdgActivationToken", {"token-1"}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(tokens_, ElementsAre("token-1"));
    EXPECT_THAT(places_, IsEmpty());
}

TEST_F(StatusNotifierItemTest, RefusesCallsWithOtherTypes) {
    makeItem();
    BusPeer host = makeHost();
    EXPECT_EQ(host.call("Activate", {"left", "top"}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(host.call("Activate", {1}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(host.call("ProvideXdgActivationToken", {1}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(host.call("Explode").type(), QDBusMessage::ErrorMessage);
    EXPECT_THAT(places_, IsEmpty());
    EXPECT_THAT(tokens_, IsEmpty());
}

TEST_F(StatusNotifierItemTest, HasTheTypesOfTheProtocol) {
    makeItem().setContent(sampleContent());
    const QVariantMap properties = makeHost().properties();
    for (const auto* const name : {"Category", "Id", "Title", "Status", "IconName", "OverlayIconName",
                                   "AttentionIconName", "XAyatanaLabel", "XAyatanaLabelGuide"}) {
        EXPECT_EQ(properties[name].typeId(), QMetaType::QString) << name;
    }
    for (const auto* const name : {"IconPixmap", "OverlayIconPixmap", "AttentionIconPixmap"}) {
        EXPECT_EQ(properties[name].value<QDBusArgument>().currentSignature(), "a(iiay)") << name;
    }
    EXPECT_EQ(properties["ToolTip"].value<QDBusArgument>().currentSignature(), "(sa(iiay)ss)");
    EXPECT_EQ(properties["WindowId"].typeId(), QMetaType::Int);
    EXPECT_EQ(properties["ItemIsMenu"].typeId(), QMetaType::Bool);
    EXPECT_EQ(properties["Menu"].typeId(), qMetaTypeId<QDBusObjectPath>());
}

TEST_F(StatusNotifierItemTest, ShowsItsContent) {
    makeItem().setContent(sampleContent());
    const QVariantMap properties = makeHost().properties();
    EXPECT_EQ(properties["Title"].toString(), "47° 1200rpm");
    EXPECT_EQ(properties["XAyatanaLabel"].toString(), "47° 1200rpm");
    EXPECT_EQ(properties["Status"].toString(), "Active");
    EXPECT_FALSE(properties["Menu"].value<QDBusObjectPath>().path().isEmpty());
    const auto toolTip = qdbus_cast<StatusNotifierToolTip>(properties["ToolTip"].value<QDBusArgument>());
    EXPECT_EQ(toolTip.title, "Kelvinbar");
    EXPECT_EQ(toolTip.text, "CPU: 47 °C");
}

TEST_F(StatusNotifierItemTest, HasPixelsInNetworkOrderAlphaFirst) {
    makeItem().setContent(sampleContent());
    const QVariantMap properties = makeHost().properties();
    const auto pixmaps = qdbus_cast<StatusNotifierPixmaps>(properties["IconPixmap"].value<QDBusArgument>());
    ASSERT_EQ(pixmaps.size(), 1);
    EXPECT_EQ(pixmaps.first().width, 1);
    EXPECT_EQ(pixmaps.first().height, 1);
    EXPECT_EQ(pixmaps.first().pixels.toHex(), "ff112233");
}

TEST_F(StatusNotifierItemTest, IsNoMenu) {
    makeItem();
    const QVariantMap properties = makeHost().properties();
    ASSERT_TRUE(properties.contains("ItemIsMenu"));
    EXPECT_FALSE(properties["ItemIsMenu"].toBool());
}

TEST_F(StatusNotifierItemTest, GuidesWithDigitsOfTheWidestKind) {
    makeItem().setContent(sampleContent());
    EXPECT_EQ(makeHost().properties()["XAyatanaLabelGuide"].toString(), "88° 8888rpm");
}

TEST_F(StatusNotifierItemTest, DoesNotReportEqualContent) {
    EXPECT_THAT(signalsFor(sampleContent()), ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(StatusNotifierItemTest, ReportsTheTitleAlone) {
    StatusNotifierContent content = sampleContent();
    content.title = "Kelvinbar";
    EXPECT_THAT(signalsFor(content), ElementsAre(1, 0, 0, 0, 0));
}

TEST_F(StatusNotifierItemTest, ReportsTheLabelAlone) {
    StatusNotifierContent content = sampleContent();
    content.label = "48° 1200rpm";
    EXPECT_THAT(signalsFor(content), ElementsAre(0, 1, 0, 0, 0));
}

TEST_F(StatusNotifierItemTest, ReportsTheIconAlone) {
    StatusNotifierContent content = sampleContent();
    content.iconPixmaps = onePixel(qRgba(0, 0, 0, 0xff));
    EXPECT_THAT(signalsFor(content), ElementsAre(0, 0, 1, 0, 0));
}

TEST_F(StatusNotifierItemTest, ReportsTheToolTipAlone) {
    StatusNotifierContent content = sampleContent();
    content.toolTipText = "CPU: 48 °C";
    EXPECT_THAT(signalsFor(content), ElementsAre(0, 0, 0, 1, 0));
    content = sampleContent();
    content.toolTipTitle = "Sensors";
    EXPECT_THAT(signalsFor(content), ElementsAre(0, 0, 0, 1, 0));
}

TEST_F(StatusNotifierItemTest, ReportsTheNewLabelWithItsGuide) {
    StatusNotifierItem& item = makeItem();
    BusPeer host = makeHost();
    StatusNotifierContent content;
    content.label = "5.6W";
    item.setContent(content);
    EXPECT_THAT(host.received("XAyatanaNewLabel"), ElementsAre(QVariantList{"5.6W", "8.8W"}));
}

TEST_F(StatusNotifierItemTest, PassesOnThePositionOfAClick) {
    makeItem();
    BusPeer host = makeHost();
    EXPECT_EQ(host.call("Activate", {1890, 1065}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(places_, ElementsAre(QPoint(1890, 1065)));
}

TEST_F(StatusNotifierItemTest, TakesEveryOtherInputWithoutDoingAnything) {
    makeItem();
    BusPeer host = makeHost();
    EXPECT_EQ(host.call("SecondaryActivate", {5, 6}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host.call("ContextMenu", {5, 6}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host.call("Scroll", {120, "vertical"}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(places_, IsEmpty());
}

TEST_F(StatusNotifierItemTest, LeavesTheBusWithItsOwner) {
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    BusPeer host = makeHost();
    ASSERT_EQ(host.call("Activate", {5, 6}).type(), QDBusMessage::ReplyMessage);
    item_ = nullptr;
    EXPECT_EQ(host.call("Activate", {5, 6}).type(), QDBusMessage::ErrorMessage);
}

TEST_F(StatusNotifierItemTest, LivesWithoutABus) {
    fakes::RecordingLog recording;
    StatusNotifierItem item(QDBusConnection("no such bus"), {.activated = {}, .activationTokenGiven = {}},
                            recording.log);
    item.setContent(sampleContent());
    EXPECT_FALSE(item.hasWatcher());
    EXPECT_EQ(item.hasHost(), false);
    EXPECT_EQ(item.content().label, "47° 1200rpm");
    EXPECT_THAT(recording.lines(), IsEmpty());
}

TEST_F(StatusNotifierItemTest, LogsWatchersAndItsRegistration) {
    makeItem();
    watcher_.appear();
    ASSERT_TRUE(waitFor([&] { return recording_.lines().size() >= 3; }));
    watcher_.vanish();
    ASSERT_TRUE(waitFor([&] { return recording_.lines().size() >= 4; }));
    const std::string process = std::to_string(QCoreApplication::applicationPid());
    EXPECT_THAT(recording_.lines(),
                ElementsAre("kelvinbar: tray info: no watcher runs",
                            "kelvinbar: tray info: a watcher runs: process " + process + " (kelvinbar_deskt)",
                            "kelvinbar: tray info: registered as " + bus_.address().toStdString(),
                            "kelvinbar: tray info: the watcher is gone"));
}

TEST_F(StatusNotifierItemTest, RegistersAgainWithAWatcherThatRefusesIt) {
    watcher_.refusals = 2;
    watcher_.appear();
    makeItem();
    EXPECT_TRUE(waitForRegistrations(1));
    EXPECT_EQ(watcher_.refused(), 2);
}

TEST_F(StatusNotifierItemTest, GivesUpOnAWatcherThatKeepsRefusingIt) {
    constexpr int most = StatusNotifierItem::mostRepeatedRegistrations;
    watcher_.refusals = 2 * most;
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitFor([&] { return watcher_.refused() == 1 + most; }));
    runEventLoop(std::chrono::milliseconds(400));
    EXPECT_EQ(watcher_.refused(), 1 + most);
    const std::string warning =
        "kelvinbar: the tray refuses the status item (not now) too often: it may not be seen";
    EXPECT_EQ(std::ranges::count(recording_.lines(), warning), 1);
}

TEST_F(StatusNotifierItemTest, RegistersWithAWatcherThatTakesOverFromAnother) {
    FakeWatcher next;
    watcher_.appear();
    makeItem();
    ASSERT_TRUE(waitForRegistrations(1));
    next.waitInLine();
    watcher_.vanish();
    EXPECT_TRUE(waitFor([&] { return next.items().size() == 1; }, std::chrono::seconds(3)));
}

} // namespace
} // namespace kelvinbar::status_notifier_item_test
