#include "base/NotificationCenter.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::notification_center_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

struct Resize {
    double width = 0;
    std::string reason;

    friend bool operator==(const Resize&, const Resize&) = default;
};

constexpr NotificationName<int> a{"A"};
constexpr NotificationName<int> b{"B"};
constexpr NotificationName<Resize> resized{"Resized"};

/// A handler that logs `who` with the content of the notification.
std::function<void(const int&)> logged(Log& log, std::string who) {
    return [&log, who = std::move(who)](const int& content) {
        log.push_back(who + " " + std::to_string(content));
    };
}

TEST(NotificationCenter, DeliversTheContentThatWasPosted) {
    NotificationCenter center;
    std::vector<Resize> received;
    const Registration registration =
        center.addObserver(resized, {[&](const Resize& content) { received.push_back(content); }});

    const Resize posted{.width = 320.5, .reason = "fast"};
    center.post(resized, posted);
    EXPECT_THAT(received, ElementsAre(posted));
}

TEST(NotificationCenter, DeliversNotificationsWithDifferentContentsEachToItsOwnObservers) {
    NotificationCenter center;
    Log log;
    const Registration numbers = center.addObserver(a, logged(log, "number"));
    const Registration sizes =
        center.addObserver(resized, {[&](const Resize& content) { log.push_back(content.reason); }});

    center.post(resized, Resize{.width = 1, .reason = "wider"});
    center.post(a, 1);
    center.post(resized, Resize{.width = 2, .reason = "narrower"});
    EXPECT_THAT(log, ElementsAre("wider", "number 1", "narrower"));
}

TEST(NotificationCenter, NeverCallsAnObserverThatExpectsAnotherContentUnderTheSameName) {
    constexpr NotificationName<std::string> mistyped{a.name};
    NotificationCenter center;
    Log log;
    const Registration first = center.addObserver(a, logged(log, "number"));
    const Registration wrong =
        center.addObserver(mistyped, {[&](const std::string& text) { log.push_back("text " + text); }});

    center.post(a, 1);
    center.post(mistyped, std::string("lost"));
    center.post(a, 2);
    EXPECT_THAT(log, ElementsAre("number 1", "number 2"));
}

TEST(NotificationCenter, DeliversOnlyToTheObserversOfTheExactName) {
    NotificationCenter center;
    Log log;
    const Registration exact = center.addObserver(a, logged(log, "exact"));
    const Registration lower = center.addObserver(NotificationName<int>{"a"}, logged(log, "lower"));
    const Registration longer = center.addObserver(NotificationName<int>{"AB"}, logged(log, "longer"));

    center.post(a, 1);
    center.post(NotificationName<int>{"Unheard"}, 2);
    EXPECT_THAT(log, ElementsAre("exact 1"));
}

TEST(NotificationCenter, ComparesNamesByTheirTextNotByTheirPlaceInMemory) {
    NotificationCenter center;
    Log log;
    const std::string name("A");
    const Registration registration = center.addObserver(a, logged(log, "a"));
    center.post(NotificationName<int>{name}, 1);
    EXPECT_THAT(log, ElementsAre("a 1"));
}

TEST(NotificationCenter, DeliversInOrderOfRegistration) {
    NotificationCenter center;
    Log log;
    const Registration first = center.addObserver(a, logged(log, "first"));
    const Registration second = center.addObserver(a, logged(log, "second"));
    const Registration third = center.addObserver(a, logged(log, "third"));
    center.post(a, 1);
    EXPECT_THAT(log, ElementsAre("first 1", "second 1", "third 1"));
}

TEST(NotificationCenter, HasDeliveredOnThePostingThreadWhenPostReturns) {
    NotificationCenter center;
    std::optional<std::thread::id> deliveredOn;
    const Registration registration =
        center.addObserver(a, {[&](const int&) { deliveredOn = std::this_thread::get_id(); }});
    center.post(a, 1);
    EXPECT_EQ(deliveredOn, std::this_thread::get_id());
}

TEST(NotificationCenter, DeliversInPostingOrder) {
    NotificationCenter center;
    Log log;
    const Registration second = center.addObserver(b, logged(log, "b"));
    const Registration first = center.addObserver(a, logged(log, "a"));
    center.post(a, 1);
    center.post(b, 2);
    center.post(a, 3);
    EXPECT_THAT(log, ElementsAre("a 1", "b 2", "a 3"));
}

TEST(NotificationCenter, DeliversANestedPostBeforeThatPostReturns) {
    NotificationCenter center;
    Log log;
    const Registration outer = center.addObserver(a, {[&](const int&) {
                                                      log.emplace_back("before");
                                                      center.post(b, 2);
                                                      log.emplace_back("after");
                                                  }});
    const Registration later = center.addObserver(a, logged(log, "later"));
    const Registration inner = center.addObserver(b, logged(log, "inner"));
    center.post(a, 1);
    EXPECT_THAT(log, ElementsAre("before", "inner 2", "after", "later 1"));
}

TEST(NotificationCenter, LetsAnObserverPostItsOwnName) {
    NotificationCenter center;
    Log log;
    const Registration again = center.addObserver(a, {[&](const int& round) {
                                                      log.push_back("again " + std::to_string(round));
                                                      if (round < 3) center.post(a, round + 1);
                                                  }});
    center.post(a, 1);
    EXPECT_THAT(log, ElementsAre("again 1", "again 2", "again 3"));
}

TEST(NotificationCenter, LetsAnObserverRemoveItselfOrAnother) {
    NotificationCenter center;
    Log log;
    Registration once;
    Registration other;
    once = center.addObserver(a, {[&](const int&) {
                                  log.emplace_back("once");
                                  once.reset();
                                  other.reset();
                              }});
    other = center.addObserver(a, logged(log, "other"));
    const Registration kept = center.addObserver(a, logged(log, "kept"));

    center.post(a, 1);
    center.post(a, 2);
    EXPECT_THAT(log, ElementsAre("once", "kept 1", "kept 2"));
}

TEST(NotificationCenter, CallsAnObserverThatWasAddedDuringAPostFromTheNextPostOn) {
    NotificationCenter center;
    Log log;
    Registration late;
    Registration otherName;
    bool added = false;
    const Registration adding = center.addObserver(a, {[&](const int&) {
                                                       log.emplace_back("adding");
                                                       if (std::exchange(added, true)) return;
                                                       late = center.addObserver(a, logged(log, "late"));
                                                       otherName =
                                                           center.addObserver(b, logged(log, "other"));
                                                   }});

    center.post(a, 1);
    EXPECT_THAT(log, ElementsAre("adding"));
    center.post(a, 2);
    center.post(b, 3);
    EXPECT_THAT(log, ElementsAre("adding", "adding", "late 2", "other 3"));
}

TEST(NotificationCenter, HoldsNoObserverAliveAfterItsRegistration) {
    NotificationCenter center;
    auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = token;
    Registration registration =
        center.addObserver(a, {[token = std::move(token)](const int&) { static_cast<void>(token); }});
    center.post(a, 1);
    EXPECT_FALSE(watched.expired());
    registration.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(NotificationCenter, MayGoBeforeARegistration) {
    auto center = std::make_unique<NotificationCenter>();
    Log log;
    Registration registration = center->addObserver(a, logged(log, "a"));
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
        center->addObserver(a, {[&center, &log, token = std::move(token)](const int&) {
                                center.reset();
                                log.push_back(*token);
                            }});
    center->post(a, 1);
    EXPECT_THAT(log, ElementsAre("destroyed"));
    EXPECT_TRUE(watched.expired());
}

} // namespace
} // namespace kelvinbar::notification_center_test
