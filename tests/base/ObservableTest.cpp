#include "base/Observable.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::observable_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Observable, HoldsItsInitialValue) {
    EXPECT_EQ(Observable<int>().value(), 0);
    EXPECT_EQ(Observable<std::string>("fixed").value(), "fixed");
}

TEST(Observable, TellsTheNewValueBeforeItChanges) {
    Observable<std::string> field("old");
    std::vector<std::string> log;
    const Registration registration = field.observe([&](const std::string& newValue) {
        log.push_back("new: " + newValue);
        log.push_back("value: " + field.value());
    });

    EXPECT_TRUE(field.set("new"));
    EXPECT_THAT(log, ElementsAre("new: new", "value: old"));
    EXPECT_EQ(field.value(), "new");
}

TEST(Observable, TellsNobodyWhenAnEqualValueIsAssigned) {
    Observable<int> field(3);
    int told = 0;
    const Registration registration = field.observe([&](int) { ++told; });

    EXPECT_FALSE(field.set(3));
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(field.set(4));
    EXPECT_FALSE(field.set(4));
    EXPECT_EQ(told, 1);
}

TEST(Observable, DoesNotTellAboutItsInitialValue) {
    const Observable<int> field(3);
    std::vector<int> told;
    const Registration registration = field.observe([&](int newValue) { told.push_back(newValue); });
    EXPECT_THAT(told, IsEmpty());
}

TEST(Observable, TellsObserversInOrderOfRegistration) {
    Observable<int> field;
    std::vector<std::string> log;
    const Registration first =
        field.observe([&](int value) { log.push_back("first " + std::to_string(value)); });
    const Registration second =
        field.observe([&](int value) { log.push_back("second " + std::to_string(value)); });
    field.set(1);
    field.set(2);
    EXPECT_THAT(log, ElementsAre("first 1", "second 1", "first 2", "second 2"));
}

TEST(Observable, ChangesWithoutObservers) {
    Observable<int> field;
    EXPECT_TRUE(field.set(5));
    EXPECT_EQ(field.value(), 5);
}

TEST(Observable, LetsAnObserverRemoveItselfOrAnother) {
    Observable<int> field;
    std::vector<std::string> log;
    Registration other;
    Registration once;
    once = field.observe([&](int) {
        log.emplace_back("once");
        once.reset();
        other.reset();
    });
    other = field.observe([&](int) { log.emplace_back("other"); });
    const Registration kept = field.observe([&](int) { log.emplace_back("kept"); });

    field.set(1);
    field.set(2);
    EXPECT_THAT(log, ElementsAre("once", "kept", "kept"));
    EXPECT_EQ(field.value(), 2);
}

TEST(Observable, LetsAnObserverChangeAnotherField) {
    Observable<int> celsius;
    Observable<int> kelvin(273);
    std::vector<int> told;
    const Registration follow = celsius.observe([&](int value) { kelvin.set(value + 273); });
    const Registration watch = kelvin.observe([&](int value) { told.push_back(value); });
    celsius.set(27);
    EXPECT_THAT(told, ElementsAre(300));
    EXPECT_EQ(kelvin.value(), 300);
}

TEST(Observable, HoldsAnObserverOnlyUntilItsRegistrationGoes) {
    Observable<int> field;
    auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = token;
    Registration registration = field.observe([token = std::move(token)](int) { static_cast<void>(token); });
    registration.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(field.set(1));
}

TEST(Observable, MayGoBeforeARegistration) {
    Registration registration;
    {
        const Observable<int> field;
        registration = field.observe([](int) {});
    }
    EXPECT_NO_THROW(registration.reset());
}

} // namespace
} // namespace kelvinbar::observable_test
