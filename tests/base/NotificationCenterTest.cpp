#include "base/NotificationCenter.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

/// A handler that writes `who` and the name of the notification.
NotificationCenter::Handler logged(Log& log, std::string who) {
    return [&log, who = std::move(who)](const Notification& notification) {
        log.push_back(who + " " + std::string(notification.name));
    };
}

void post(const NotificationCenter& center, std::string_view name) {
    center.post({.name = name, .object = std::nullopt, .userInfo = {}});
}

TEST(NotificationCenter, DeliversNameObjectAndUserInfo) {
    NotificationCenter center;
    std::vector<Notification> received;
    const Registration registration = center.addObserver(
        "SizeChanged", [&](const Notification& notification) { received.push_back(notification); });

    center.post(
        {.name = "SizeChanged", .object = Value(std::string("fast")), .userInfo = {{"width", 320.5}}});

    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received.front().name, "SizeChanged");
    EXPECT_EQ(received.front().object, Value(std::string("fast")));
    EXPECT_EQ(received.front().userInfo, (Dictionary{{"width", 320.5}}));
}

TEST(NotificationCenter, DeliversOnlyToTheObserversOfTheExactName) {
    NotificationCenter center;
    Log log;
    const Registration a = center.addObserver("A", logged(log, "a"));
    const Registration lower = center.addObserver("a", logged(log, "lower"));
    const Registration longer = center.addObserver("AB", logged(log, "longer"));

    post(center, "A");
    post(center, "Unheard");
    EXPECT_THAT(log, ElementsAre("a A"));
}

TEST(NotificationCenter, DeliversInOrderOfRegistration) {
    NotificationCenter center;
    Log log;
    const Registration first = center.addObserver("A", logged(log, "first"));
    const Registration second = center.addObserver("A", logged(log, "second"));
    const Registration third = center.addObserver("A", logged(log, "third"));
    post(center, "A");
    EXPECT_THAT(log, ElementsAre("first A", "second A", "third A"));
}

TEST(NotificationCenter, HasDeliveredOnThePostingThreadWhenPostReturns) {
    NotificationCenter center;
    std::optional<std::thread::id> deliveredOn;
    const Registration registration =
        center.addObserver("A", [&](const Notification&) { deliveredOn = std::this_thread::get_id(); });
    post(center, "A");
    EXPECT_EQ(deliveredOn, std::this_thread::get_id());
}

TEST(NotificationCenter, DeliversInPostingOrder) {
    NotificationCenter center;
    Log log;
    const Registration b = center.addObserver("B", logged(log, "b"));
    const Registration a = center.addObserver("A", logged(log, "a"));
    post(center, "A");
    post(center, "B");
    post(center, "A");
    EXPECT_THAT(log, ElementsAre("a A", "b B", "a A"));
}

TEST(NotificationCenter, DeliversANestedPostBeforeThatPostReturns) {
    NotificationCenter center;
    Log log;
    const Registration outer = center.addObserver("A", [&](const Notification&) {
        log.emplace_back("before");
        post(center, "B");
        log.emplace_back("after");
    });
    const Registration later = center.addObserver("A", logged(log, "later"));
    const Registration inner = center.addObserver("B", logged(log, "inner"));
    post(center, "A");
    EXPECT_THAT(log, ElementsAre("before", "inner B", "after", "later A"));
}

TEST(NotificationCenter, LetsAnObserverPostItsOwnName) {
    NotificationCenter center;
    Log log;
    int posts = 0;
    const Registration again = center.addObserver("A", [&](const Notification&) {
        log.push_back("again " + std::to_string(++posts));
        if (posts < 3) post(center, "A");
    });
    post(center, "A");
    EXPECT_THAT(log, ElementsAre("again 1", "again 2", "again 3"));
}

TEST(NotificationCenter, LetsAnObserverRemoveItselfOrAnother) {
    NotificationCenter center;
    Log log;
    Registration once;
    Registration other;
    once = center.addObserver("A", [&](const Notification&) {
        log.emplace_back("once");
        once.reset();
        other.reset();
    });
    other = center.addObserver("A", logged(log, "other"));
    const Registration kept = center.addObserver("A", logged(log, "kept"));

    post(center, "A");
    post(center, "A");
    EXPECT_THAT(log, ElementsAre("once", "kept A", "kept A"));
}

TEST(NotificationCenter, CallsAnObserverThatWasAddedDuringAPostFromTheNextPostOn) {
    NotificationCenter center;
    Log log;
    Registration late;
    Registration otherName;
    bool added = false;
    const Registration adding = center.addObserver("A", [&](const Notification&) {
        log.emplace_back("adding");
        if (std::exchange(added, true)) return;
        late = center.addObserver("A", logged(log, "late"));
        otherName = center.addObserver("B", logged(log, "other"));
    });

    post(center, "A");
    EXPECT_THAT(log, ElementsAre("adding"));
    post(center, "A");
    post(center, "B");
    EXPECT_THAT(log, ElementsAre("adding", "adding", "late A", "other B"));
}

TEST(NotificationCenter, HoldsNoObserverAliveAfterItsRegistration) {
    NotificationCenter center;
    auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = token;
    Registration registration = center.addObserver(
        "A", [token = std::move(token)](const Notification&) { static_cast<void>(token); });
    post(center, "A");
    EXPECT_FALSE(watched.expired());
    registration.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(NotificationCenter, MayGoBeforeARegistration) {
    auto center = std::make_unique<NotificationCenter>();
    Log log;
    Registration registration = center->addObserver("A", logged(log, "a"));
    center.reset();
    EXPECT_NO_THROW(registration.reset());
    EXPECT_THAT(log, IsEmpty());
}

TEST(NotificationCenter, MayBeDestroyedByAnObserver) {
    auto center = std::make_unique<NotificationCenter>();
    auto token = std::make_shared<std::string>("destroyed");
    const std::weak_ptr<std::string> watched = token;
    Log log;
    const Registration registration =
        center->addObserver("A", [&center, &log, token = std::move(token)](const Notification&) {
            center.reset();
            log.push_back(*token);
        });
    post(*center, "A");
    EXPECT_THAT(log, ElementsAre("destroyed"));
    EXPECT_TRUE(watched.expired());
}

TEST(NotificationCenter, ForgetsTheNameTextAfterRegistration) {
    NotificationCenter center;
    Log log;
    std::string name = "A notification with a name too long for a short string";
    const Registration registration = center.addObserver(name, logged(log, "a"));
    const std::string posted = name;
    name.assign(name.size(), 'x');
    post(center, posted);
    EXPECT_THAT(log, ElementsAre("a " + posted));
}

} // namespace
} // namespace kelvinbar
