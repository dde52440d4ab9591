#include "desktop/linux/StatusMenu.h"

#include "tests/desktop/BusPeer.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StatusMenuTest : public testing::Test {
  protected:
    /// An entry whose action records its text.
    StatusMenuEntry entry(const QString& text) {
        return {text, [this, text] { done_.push_back(text.toStdString()); }};
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

    void sendEvent(int id, const QString& name) {
        const QDBusMessage reply =
            host_.call("Event", {id, name, QVariant::fromValue(QDBusVariant(QString())), 0U});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    PrivateBus bus_;
    StatusMenu menu_{bus_.connection()};
    BusPeer host_{bus_.address(), StatusMenu::path, "com.canonical.dbusmenu"};
    std::vector<std::string> done_;
    uint revision_ = 0;
};

} // namespace

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
    menu_.setEntries({entry("Open"), {}, entry("Quit")});
    const auto children = layout(0, -1).children;
    ASSERT_EQ(children.size(), 3);
    const QList<int> ids{children[2].id, children[1].id};
    const QDBusMessage reply = host_.call("GetGroupProperties", {QVariant::fromValue(ids), QStringList()});
    ASSERT_EQ(reply.signature(), "a(ia{sv})") << reply.errorMessage().toStdString();
    const auto items =
        qdbus_cast<QList<StatusMenuItemProperties>>(reply.arguments().first().value<QDBusArgument>());
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
    menu_.setEntries({entry("Open"), {}, entry("Quit")});
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
    }
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, DoesNothingForASeparator) {
    menu_.setEntries({entry("Open"), {}});
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

TEST_F(StatusMenuTest, NeedsNoUpdateBeforeItIsShown) {
    const QDBusMessage reply = host_.call("AboutToShow", {0});
    ASSERT_EQ(reply.signature(), "b");
    EXPECT_FALSE(reply.arguments().first().toBool());
}

TEST_F(StatusMenuTest, DoublesUnderscores) {
    menu_.setEntries({entry("fan_1_in: 5 W")});
    EXPECT_THAT(labels(), ElementsAre("fan__1__in: 5 W"));
}

TEST_F(StatusMenuTest, ReportsAnotherText) {
    menu_.setEntries({entry("CPU: 47 °C"), entry("Quit")});
    EXPECT_EQ(host_.received("LayoutUpdated").size(), 1);
    labels();
    const uint earlier = revision_;
    menu_.setEntries({entry("CPU: 48 °C"), entry("Quit")});
    const auto received = host_.received("LayoutUpdated");
    ASSERT_EQ(received.size(), 2);
    EXPECT_THAT(labels(), ElementsAre("CPU: 48 °C", "Quit"));
    EXPECT_GT(revision_, earlier);
    EXPECT_EQ(received.last(), (QVariantList{revision_, 0}));
}

TEST_F(StatusMenuTest, ReportsAnotherNumberOfEntries) {
    menu_.setEntries({entry("Open"), entry("Quit")});
    menu_.setEntries({entry("Open")});
    EXPECT_EQ(host_.received("LayoutUpdated").size(), 2);
    EXPECT_THAT(labels(), ElementsAre("Open"));
}

TEST_F(StatusMenuTest, DoesNotReportEqualTextsButUsesTheirNewActions) {
    menu_.setEntries({entry("Open")});
    std::string done;
    menu_.setEntries({{"Open", [&] { done = "the new one"; }}});
    EXPECT_EQ(host_.received("LayoutUpdated").size(), 1);
    sendEvent(layout(0, -1).children.first().id, "clicked");
    EXPECT_EQ(done, "the new one");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(StatusMenuTest, AnActionMayReplaceTheEntriesWhileItRuns) {
    const std::string note = "an action with a text of its own that is too long for a small buffer";
    menu_.setEntries({{"Open", [this, note] {
                           menu_.setEntries({entry("Close"), entry("Quit")});
                           done_.push_back(note);
                       }}});
    sendEvent(layout(0, -1).children.first().id, "clicked");
    EXPECT_THAT(done_, ElementsAre(note));
    EXPECT_THAT(labels(), ElementsAre("Close", "Quit"));
}

} // namespace kelvinbar
