#include "desktop/linux/tray/StatusMenu.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::status_menu_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StatusMenuTest : public testing::Test {
  protected:
    /// An entry that is known by `identity`, whose action records that.
    StatusMenuEntry entry(const QString& identity, const QString& text) {
        const auto note = [this, identity](uint timestamp) {
            done_.push_back(identity.toStdString());
            timestamps_.push_back(timestamp);
        };
        return {identity, text, note, std::nullopt};
    }

    /// An entry that is known by its text.
    StatusMenuEntry entry(const QString& text) { return entry(text, text); }

    static StatusMenuEntry separator() { return {"separator", "", {}, std::nullopt}; }

    /// Sets the entries, and lets the menu announce them.
    void show(std::vector<StatusMenuEntry> entries) {
        menu_.setEntries(std::move(entries));
        QCoreApplication::processEvents();
    }

    /// The ids of the entries, in order.
    QList<int> ids() {
        QList<int> ids;
        const auto children = layout(0, -1).children;
        for (const StatusMenuLayout& child : children) ids.append(child.id);
        return ids;
    }

    qsizetype newLayouts() { return host_.received("LayoutUpdated").size(); }

    /// The changed properties in the last ItemsPropertiesUpdated.
    QList<StatusMenuItemProperties> updates() {
        const auto received = host_.received("ItemsPropertiesUpdated");
        if (received.isEmpty()) return {};
        return qdbus_cast<QList<StatusMenuItemProperties>>(received.last().first().value<QDBusArgument>());
    }

    QList<StatusMenuItemProperties> groupProperties(const QList<int>& ids, const QStringList& names = {}) {
        const QDBusMessage reply = host_.call("GetGroupProperties", {QVariant::fromValue(ids), names});
        EXPECT_EQ(reply.signature(), "a(ia{sv})") << reply.errorMessage().toStdString();
        if (reply.arguments().isEmpty()) return {};
        return qdbus_cast<QList<StatusMenuItemProperties>>(reply.arguments().first().value<QDBusArgument>());
    }

    StatusMenuLayout layout(int parent, int depth) {
        const QDBusMessage reply = host_.call("GetLayout", {parent, depth, QStringList()});
        EXPECT_EQ(reply.signature(), "u(ia{sv}av)") << reply.errorMessage().toStdString();
        if (reply.arguments().size() != 2) return {};
        revision_ = reply.arguments()[0].toUInt();
        return qdbus_cast<StatusMenuLayout>(reply.arguments()[1].value<QDBusArgument>());
    }

    std::vector<std::string> labels() {
        std::vector<std::string> labels;
        const auto children = layout(0, -1).children;
        for (const StatusMenuLayout& child : children) {
            labels.push_back(child.properties["label"].toString().toStdString());
        }
        return labels;
    }

    QVariant property(int id, const QString& name) {
        const QDBusMessage reply = host_.call("GetProperty", {id, name});
        EXPECT_EQ(reply.signature(), "v") << reply.errorMessage().toStdString();
        if (reply.arguments().isEmpty()) return {};
        return reply.arguments().first().value<QDBusVariant>().variant();
    }

    void sendEvent(int id, const QString& name, uint timestamp = 0) {
        const QDBusMessage reply =
            host_.call("Event", {id, name, QVariant::fromValue(QDBusVariant(QString())), timestamp});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    PrivateBus bus_;
    StatusMenu menu_{bus_.connection()};
    BusPeer host_{bus_.address(), StatusMenu::path, "com.canonical.dbusmenu"};
    std::vector<std::string> done_;
    std::vector<uint> timestamps_;
    uint revision_ = 0;
};

TEST_F(StatusMenuTest, HasItsEntriesBelowTheRoot) {
    menu_.setEntries({entry("CPU: 47 °C"), entry("Open"), entry("Quit")});
    for (const int depth : {-1, 1}) {
        const StatusMenuLayout root = layout(0, depth);
        EXPECT_EQ(root.id, 0);
        EXPECT_EQ(root.properties["children-display"].toString(), "submenu");
        ASSERT_EQ(root.children.size(), 3);
        EXPECT_EQ(root.children[0].properties["label"].toString(), "CPU: 47 °C");
        EXPECT_EQ(root.children[2].properties["label"].toString(), "Quit");
        EXPECT_NE(root.children[0].id, root.children[2].id);
    }
}

TEST_F(StatusMenuTest, LeavesTheEntriesOutAtDepthZero) {
    menu_.setEntries({entry("Open")});
    const StatusMenuLayout root = layout(0, 0);
    EXPECT_EQ(root.properties["children-display"].toString(), "submenu");
    EXPECT_TRUE(root.children.isEmpty());
}

TEST_F(StatusMenuTest, HasNothingBelowAnEntry) {
    menu_.setEntries({entry("Open")});
    const int id = layout(0, -1).children.first().id;
    const StatusMenuLayout below = layout(id, -1);
    EXPECT_EQ(below.id, id);
    EXPECT_EQ(below.properties["label"].toString(), "Open");
    EXPECT_TRUE(below.children.isEmpty());
}

TEST_F(StatusMenuTest, ReturnsThePropertiesOfSomeEntries) {
    menu_.setEntries({entry("Open"), separator(), entry("Quit")});
    const auto children = layout(0, -1).children;
    ASSERT_EQ(children.size(), 3);
    const auto items = groupProperties({children[2].id, children[1].id});
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].id, children[2].id);
    EXPECT_EQ(items[0].properties["label"].toString(), "Quit");
    EXPECT_EQ(items[1].id, children[1].id);
    EXPECT_EQ(items[1].properties["type"].toString(), "separator");
}

TEST_F(StatusMenuTest, ReturnsOneProperty) {
    menu_.setEntries({entry("Open")});
    const int id = layout(0, -1).children.first().id;
    EXPECT_EQ(property(id, "label").toString(), "Open");
    EXPECT_TRUE(property(id, "enabled").toBool());
    EXPECT_TRUE(property(id, "visible").toBool());
    EXPECT_EQ(property(id, "no such property").toString(), "");
}

TEST_F(StatusMenuTest, HasTheVersionOfTheProtocol) {
    const QVariantMap properties = host_.properties();
    EXPECT_EQ(properties["Version"].typeId(), QMetaType::UInt);
    EXPECT_EQ(properties["Version"].toUInt(), 3U);
    EXPECT_EQ(properties["Status"].toString(), "normal");
}

TEST_F(StatusMenuTest, DoesWhatIsClicked) {
    menu_.setEntries({entry("Open"), separator(), entry("Quit")});
    const auto children = layout(0, -1).children;
    ASSERT_EQ(children.size(), 3);
    sendEvent(children[2].id, "clicked");
    EXPECT_THAT(done_, ElementsAre("Quit"));
    sendEvent(children[0].id, "clicked");
    EXPECT_THAT(done_, ElementsAre("Quit", "Open"));
}

TEST_F(StatusMenuTest, DoesNothingForOtherEvents) {
    menu_.setEntries({entry("Open")});
    const int id = layout(0, -1).children.first().id;
    for (const auto* const name : {"hovered", "opened", "closed", "Clicked", ""}) sendEvent(id, name);
    sendEvent(0, "opened");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, DoesNothingForUnknownEntries) {
    menu_.setEntries({entry("Open")});
    for (const int id : {-1, 0, 2, 1000, 2147483647, -2147483647 - 1}) {
        sendEvent(id, "clicked");
        EXPECT_EQ(property(id, "label").toString(), "") << id;
        EXPECT_TRUE(id == 0 || layout(id, -1).children.isEmpty()) << id;
        EXPECT_EQ(groupProperties({id}).size(), id == 0 ? 1 : 0) << id;
    }
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, DoesNothingForASeparator) {
    menu_.setEntries({entry("Open"), separator()});
    const auto children = layout(0, -1).children;
    ASSERT_EQ(children.size(), 2);
    EXPECT_EQ(children[1].properties["type"].toString(), "separator");
    EXPECT_FALSE(children[0].properties.contains("type"));
    sendEvent(children[1].id, "clicked");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, TakesAGroupOfEvents) {
    menu_.setEntries({entry("Open"), entry("Quit")});
    const auto children = layout(0, -1).children;
    ASSERT_EQ(children.size(), 2);
    const QList<StatusMenuEvent> events{{children[0].id, "hovered", QDBusVariant(QString()), 0},
                                        {children[1].id, "clicked", QDBusVariant(QString()), 0}};
    const QDBusMessage reply = host_.call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(reply.signature(), "ai") << reply.errorMessage().toStdString();
    EXPECT_THAT(done_, ElementsAre("Quit"));
}

TEST_F(StatusMenuTest, ClicksAnEntryOnceInAGroupAndReturnsUnknownIds) {
    menu_.setEntries({entry("Open")});
    const int id = ids().first();
    const StatusMenuEvent click{id, "clicked", QDBusVariant(QString()), 0};
    const StatusMenuEvent unknown{99, "clicked", QDBusVariant(QString()), 0};
    const QList<StatusMenuEvent> events{click, unknown, click, click};
    const QDBusMessage reply = host_.call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_THAT(done_, ElementsAre("Open"));
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().first()), QList<int>{99});
}

TEST_F(StatusMenuTest, PassesOnTheTimeOfAChoice) {
    menu_.setEntries({entry("Open")});
    sendEvent(ids().first(), "clicked", 123456U);
    EXPECT_THAT(timestamps_, ElementsAre(123456U));
}

TEST_F(StatusMenuTest, ReturnsTheNamedPropertiesAlone) {
    menu_.setEntries({entry("Open")});
    const int id = ids().first();
    const auto items = groupProperties({id}, {"label", "no such property"});
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].properties, (QVariantMap{{"label", "Open"}}));
    const QDBusMessage reply = host_.call("GetLayout", {0, -1, QStringList("visible")});
    const auto root = qdbus_cast<StatusMenuLayout>(reply.arguments().value(1).value<QDBusArgument>());
    ASSERT_EQ(root.children.size(), 1);
    EXPECT_EQ(root.children[0].properties, (QVariantMap{{"visible", true}}));
}

TEST_F(StatusMenuTest, MarksWhatIsSwitchedOn) {
    StatusMenuEntry alternate = entry("Alternate");
    alternate.isChecked = true;
    show({entry("Open"), alternate});
    const QList<int> shown = ids();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(property(shown[1], "toggle-type").toString(), "checkmark");
    EXPECT_EQ(property(shown[1], "toggle-state").toInt(), 1);
    EXPECT_EQ(property(shown[0], "toggle-type").toString(), "");
    alternate.isChecked = false;
    show({entry("Open"), alternate});
    const auto updated = updates();
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0].id, shown[1]);
    EXPECT_EQ(updated[0].properties, (QVariantMap{{"toggle-state", 0}}));
}

TEST_F(StatusMenuTest, DoublesUnderscores) {
    menu_.setEntries({entry("fan_1_in: 5 W")});
    EXPECT_THAT(labels(), ElementsAre("fan__1__in: 5 W"));
}

// Ids

TEST_F(StatusMenuTest, AnEntryKeepsItsIdWhenAnotherVanishes) {
    show({entry("pin:cpu", "CPU: 47 °C"), entry("Open"), entry("Quit")});
    const QList<int> before = ids();
    show({entry("Open"), entry("Quit")});
    EXPECT_EQ(ids(), before.sliced(1));
}

TEST_F(StatusMenuTest, AClickOnAnEntryThatHasGoneDoesNothing) {
    show({entry("pin:cpu", "CPU: 47 °C"), entry("Open"), entry("Quit")});
    const int gone = ids().first();
    show({entry("Open"), entry("Quit")});
    sendEvent(gone, "clicked");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, AnIdIsNeverGivenToAnotherEntry) {
    show({entry("pin:cpu", "CPU")});
    const int cpu = ids().first();
    show({});
    show({entry("pin:fan", "Fan")});
    EXPECT_NE(ids().first(), cpu);
    show({entry("pin:fan", "Fan"), entry("pin:cpu", "CPU")});
    EXPECT_EQ(ids().last(), cpu);
}

// What hosts are told

TEST_F(StatusMenuTest, ReportsAnotherTextAsAPropertyAndNotAsALayout) {
    show({entry("pin:cpu", "CPU: 47 °C"), entry("Quit")});
    const QList<int> shown = ids();
    const uint revision = revision_;
    show({entry("pin:cpu", "CPU: 48 °C"), entry("Quit")});
    const auto updated = updates();
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0].id, shown[0]);
    EXPECT_EQ(updated[0].properties, (QVariantMap{{"label", "CPU: 48 °C"}}));
    EXPECT_EQ(newLayouts(), 1);
    EXPECT_THAT(labels(), ElementsAre("CPU: 48 °C", "Quit"));
    EXPECT_EQ(revision_, revision);
}

TEST_F(StatusMenuTest, ReportsChangedPropertiesWithTheTypesOfTheProtocol) {
    show({entry("pin:cpu", "CPU: 47 °C")});
    show({entry("pin:cpu", "CPU: 48 °C")});
    const auto received = host_.received("ItemsPropertiesUpdated");
    ASSERT_EQ(received.size(), 1);
    EXPECT_EQ(received[0][0].value<QDBusArgument>().currentSignature(), "a(ia{sv})");
    EXPECT_EQ(received[0][1].value<QDBusArgument>().currentSignature(), "a(ias)");
}

TEST_F(StatusMenuTest, ReportsAddedRemovedAndMovedEntriesAsALayout) {
    show({entry("Open"), entry("Quit")});
    const std::vector<std::vector<StatusMenuEntry>> layouts{{entry("Open"), entry("Copy"), entry("Quit")},
                                                            {entry("Open"), entry("Quit")},
                                                            {entry("Quit"), entry("Open")}};
    qsizetype reports = 1;
    for (const auto& entries : layouts) {
        show(entries);
        const auto received = host_.received("LayoutUpdated");
        ASSERT_EQ(received.size(), ++reports);
        static_cast<void>(ids());
        EXPECT_EQ(received.last(), (QVariantList{revision_, 0}));
    }
    EXPECT_TRUE(host_.received("ItemsPropertiesUpdated").isEmpty());
}

TEST_F(StatusMenuTest, ReportsNothingForEqualEntriesButUsesTheirNewActions) {
    show({entry("Open")});
    std::string done;
    show({{"Open", "Open", [&](uint) { done = "the new one"; }, std::nullopt}});
    EXPECT_EQ(newLayouts(), 1);
    EXPECT_TRUE(updates().isEmpty());
    sendEvent(ids().first(), "clicked");
    EXPECT_EQ(done, "the new one");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, ReportsAllChangesOfATurnOfTheEventLoopOnce) {
    show({entry("pin:cpu", "CPU: 47 °C")});
    for (const auto* const text : {"CPU: 48 °C", "CPU: 49 °C", "CPU: 50 °C"}) {
        menu_.setEntries({entry("pin:cpu", text)});
    }
    EXPECT_TRUE(host_.received("ItemsPropertiesUpdated").size() <= 1);
    EXPECT_EQ(updates().first().properties, (QVariantMap{{"label", "CPU: 50 °C"}}));
    EXPECT_EQ(host_.received("ItemsPropertiesUpdated").size(), 1);
}

TEST_F(StatusMenuTest, NeedsNoReloadBeforeItIsShownIfNothingHasChanged) {
    show({entry("Open")});
    const QDBusMessage reply = host_.call("AboutToShow", {0});
    ASSERT_EQ(reply.signature(), "b");
    EXPECT_FALSE(reply.arguments().first().toBool());
}

TEST_F(StatusMenuTest, HasToBeReloadedBeforeItIsShownIfItsEntriesHaveJustChanged) {
    StatusMenuAdaptor& adaptor = *menu_.findChild<StatusMenuAdaptor*>();
    show({entry("Open")});
    menu_.setEntries({entry("Open"), entry("Quit")});
    EXPECT_TRUE(adaptor.AboutToShow(0));
    EXPECT_FALSE(adaptor.AboutToShow(0));
    EXPECT_EQ(newLayouts(), 2);
}

TEST_F(StatusMenuTest, NamesUnknownIdsOfAGroupThatIsAboutToShow) {
    show({entry("Open")});
    const QDBusMessage reply = host_.call("AboutToShowGroup", {QVariant::fromValue(QList<int>{0, 77, -5})});
    ASSERT_EQ(reply.signature(), "aiai") << reply.errorMessage().toStdString();
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments()[0]), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments()[1]), (QList<int>{77, -5}));
}

TEST_F(StatusMenuTest, AnActionMayReplaceTheEntriesWhileItRuns) {
    const std::string note = "an action with a text of its own that is too long for a small buffer";
    const auto replace = [this, note](uint) {
        menu_.setEntries({entry("Close"), entry("Quit")});
        done_.push_back(note);
    };
    menu_.setEntries({{"Open", "Open", replace, std::nullopt}});
    sendEvent(ids().first(), "clicked");
    EXPECT_THAT(done_, ElementsAre(note));
    EXPECT_THAT(labels(), ElementsAre("Close", "Quit"));
}

// Hostile callers

TEST_F(StatusMenuTest, AnswersAMillionIdsWithEachEntryOnce) {
    show({entry("Open"), entry("Quit")});
    const QList<int> shown = ids();
    QList<int> million(1'000'000);
    std::iota(million.begin(), million.end(), -500'000);
    for (qsizetype place = 0; place < million.size(); place += 3) million[place] = shown[0];
    const auto items = groupProperties(million);
    EXPECT_LE(items.size(), 3); // the root and two entries
    EXPECT_EQ(items.first().id, shown[0]);
}

TEST_F(StatusMenuTest, RefusesCallsWithOtherTypes) {
    show({entry("Open")});
    const int id = ids().first();
    const std::vector<std::pair<QString, QVariantList>> calls{
        {"GetLayout", {"root", -1, QStringList()}},
        {"GetGroupProperties", {QStringList{"1"}, QStringList()}},
        {"GetProperty", {QString::number(id), "label"}},
        {"Event", {id, 5, QVariant::fromValue(QDBusVariant(QString())), 0U}},
        {"Event", {QString::number(id), "clicked", QVariant::fromValue(QDBusVariant(QString())), 0U}},
        {"EventGroup", {QVariant::fromValue(QList<int>{id})}},
        {"AboutToShow", {}},
        {"NoSuchMethod", {}},
    };
    for (const auto& [method, arguments] : calls) {
        EXPECT_EQ(host_.call(method, arguments).type(), QDBusMessage::ErrorMessage) << method.toStdString();
    }
    EXPECT_THAT(done_, IsEmpty());
    EXPECT_THAT(labels(), ElementsAre("Open"));
}

TEST_F(StatusMenuTest, NamesAThousandUnknownIdsAtMost) {
    show({entry("Open")});
    QList<int> million(1'000'000);
    std::iota(million.begin(), million.end(), 100);
    const QDBusMessage reply = host_.call("AboutToShowGroup", {QVariant::fromValue(million)});
    ASSERT_EQ(reply.signature(), "aiai") << reply.errorMessage().toStdString();
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments()[1].value<QDBusArgument>()).size(), 1000);
    QList<StatusMenuEvent> events(100'000);
    for (StatusMenuEvent& event : events) event = {100, "clicked", QDBusVariant(0), 0};
    const QDBusMessage unknown = host_.call("EventGroup", {QVariant::fromValue(events)});
    ASSERT_EQ(unknown.signature(), "ai") << unknown.errorMessage().toStdString();
    EXPECT_EQ(qdbus_cast<QList<int>>(unknown.arguments().first().value<QDBusArgument>()).size(), 1000);
}

TEST_F(StatusMenuTest, AnswersAMillionNamesOfProperties) {
    show({entry("Open")});
    QStringList names(1'000'000, "colour");
    names.append("label");
    const QDBusMessage reply = host_.call("GetLayout", {0, -1, names});
    ASSERT_EQ(reply.signature(), "u(ia{sv}av)") << reply.errorMessage().toStdString();
    const auto root = qdbus_cast<StatusMenuLayout>(reply.arguments()[1].value<QDBusArgument>());
    ASSERT_EQ(root.children.size(), 1);
    EXPECT_EQ(root.children.first().properties.keys(), QStringList{"label"});
}

TEST_F(StatusMenuTest, SurvivesTenThousandCalls) {
    show({entry("Open"), entry("Quit")});
    const QList<int> shown = ids();
    const PrivateBus stranger;
    auto bus = stranger.connection();
    for (int number = 0; number < 10'000; ++number) {
        QDBusMessage call = QDBusMessage::createMethodCall(bus_.address(), StatusMenu::path,
                                                           "com.canonical.dbusmenu", "Event");
        call << number + shown.last() + 1 << "clicked" << QVariant::fromValue(QDBusVariant(number)) << 0U;
        bus.send(call);
    }
    // Hosts are told to read the menu again, since their calls may have been refused.
    EXPECT_TRUE(waitFor([&] { return newLayouts() > 1; }));
    sendEvent(shown.last(), "clicked");
    EXPECT_THAT(done_, ElementsAre("Quit"));
    EXPECT_EQ(ids(), shown);
}

} // namespace
} // namespace kelvinbar::status_menu_test
