#include "base/HandlerList.h"

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::handler_list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

TEST(Registration, CancelsOnceWhenItGoes) {
    int cancelled = 0;
    {
        Registration registration([&] { ++cancelled; });
        EXPECT_EQ(cancelled, 0);
        registration.reset();
        EXPECT_EQ(cancelled, 1);
        registration.reset();
    }
    EXPECT_EQ(cancelled, 1);
}

TEST(Registration, CancelsWhenItIsDestroyed) {
    int cancelled = 0;
    {
        const Registration registration([&] { ++cancelled; });
    }
    EXPECT_EQ(cancelled, 1);
}

TEST(Registration, HandsItsDutyOnWhenMoved) {
    int cancelled = 0;
    std::optional<Registration> first;
    first.emplace([&] { ++cancelled; });
    Registration second = std::move(*first);
    first.reset();
    EXPECT_EQ(cancelled, 0);
    second.reset();
    EXPECT_EQ(cancelled, 1);
}

TEST(Registration, CancelsWhatItHeldWhenAnotherIsAssigned) {
    Log log;
    Registration registration([&] { log.emplace_back("old"); });
    registration = Registration([&] { log.emplace_back("new"); });
    EXPECT_THAT(log, ElementsAre("old"));
    registration = Registration();
    EXPECT_THAT(log, ElementsAre("old", "new"));
}

TEST(Registration, SurvivesAssignmentToItself) {
    int cancelled = 0;
    {
        Registration registration([&] { ++cancelled; });
        Registration& same = registration;
        registration = std::move(same);
        EXPECT_EQ(cancelled, 0);
    }
    EXPECT_EQ(cancelled, 1);
}

TEST(Registration, DoesNothingWhenEmpty) {
    Registration registration;
    EXPECT_NO_THROW(registration.reset());
}

TEST(HandlerList, CallsInOrderOfRegistrationWithTheArguments) {
    HandlerList<int, const std::string&> list;
    Log log;
    const auto logged = [&log](const std::string& who) {
        return [&log, who](int number, const std::string& text) {
            log.push_back(who + " " + std::to_string(number) + text);
        };
    };
    const Registration first = list.add(logged("first"));
    const Registration second = list.add(logged("second"));
    const Registration third = list.add(logged("third"));

    list.call(7, "x");
    EXPECT_THAT(log, ElementsAre("first 7x", "second 7x", "third 7x"));
}

TEST(HandlerList, KnowsWhetherAnyoneIsRegistered) {
    HandlerList<> list;
    EXPECT_TRUE(list.empty());
    Registration registration = list.add([] {});
    EXPECT_FALSE(list.empty());
    registration.reset();
    EXPECT_TRUE(list.empty());
}

TEST(HandlerList, DoesNotCallAHandlerAfterItsRegistrationHasGone) {
    HandlerList<> list;
    Log log;
    const Registration kept = list.add([&] { log.emplace_back("kept"); });
    {
        const Registration gone = list.add([&] { log.emplace_back("gone"); });
    }
    list.call();
    EXPECT_THAT(log, ElementsAre("kept"));
}

TEST(HandlerList, RegistersTheSameFunctionTwiceAsTwoHandlers) {
    HandlerList<> list;
    int calls = 0;
    const std::function<void()> count = [&] { ++calls; };
    const Registration first = list.add(count);
    Registration second = list.add(count);
    list.call();
    EXPECT_EQ(calls, 2);
    second.reset();
    list.call();
    EXPECT_EQ(calls, 3);
}

TEST(HandlerList, LetsAHandlerRemoveItselfWhileItRuns) {
    HandlerList<> list;
    Log log;
    Registration once;
    const auto token = std::make_shared<std::string>("once");
    once = list.add([&log, &once, token] {
        once.reset();
        log.push_back(*token); // what the handler holds is still there
    });
    const Registration other = list.add([&] { log.emplace_back("other"); });

    list.call();
    list.call();
    EXPECT_THAT(log, ElementsAre("once", "other", "other"));
    EXPECT_EQ(token.use_count(), 1);
}

TEST(HandlerList, DoesNotCallALaterHandlerThatAnEarlierOneRemoved) {
    HandlerList<> list;
    Log log;
    Registration second;
    const Registration first = list.add([&] {
        log.emplace_back("first");
        second.reset();
    });
    second = list.add([&] { log.emplace_back("second"); });
    const Registration third = list.add([&] { log.emplace_back("third"); });

    list.call();
    EXPECT_THAT(log, ElementsAre("first", "third"));
}

TEST(HandlerList, CallsEveryOtherHandlerWhenALaterOneRemovesAnEarlierOne) {
    HandlerList<> list;
    Log log;
    Registration first = list.add([&] { log.emplace_back("first"); });
    const Registration second = list.add([&] {
        log.emplace_back("second");
        first.reset();
    });
    const Registration third = list.add([&] { log.emplace_back("third"); });

    list.call();
    list.call();
    EXPECT_THAT(log, ElementsAre("first", "second", "third", "second", "third"));
}

TEST(HandlerList, CallsAHandlerThatWasAddedDuringACallFromTheNextCallOn) {
    HandlerList<> list;
    Log log;
    std::vector<Registration> added;
    const Registration adding = list.add([&] {
        log.emplace_back("adding");
        // Many, so that the list has to make room while it is walked.
        for (int count = 0; added.size() < 100 && count < 100; ++count) {
            added.push_back(list.add([&] { log.emplace_back("added"); }));
        }
    });

    list.call();
    EXPECT_THAT(log, ElementsAre("adding"));
    log.clear();
    list.call();
    EXPECT_EQ(log.size(), 101U);
}

TEST(HandlerList, KeepsTheOrderWhenOneIsRemovedAndAnotherAdded) {
    HandlerList<> list;
    Log log;
    Registration first = list.add([&] { log.emplace_back("first"); });
    const Registration second = list.add([&] { log.emplace_back("second"); });
    first = list.add([&] { log.emplace_back("first again"); });
    list.call();
    EXPECT_THAT(log, ElementsAre("second", "first again"));
}

TEST(HandlerList, MayBeCalledAgainByAHandler) {
    HandlerList<int> list;
    Log log;
    const Registration first = list.add([&](int depth) {
        log.push_back("first " + std::to_string(depth));
        if (depth < 2) list.call(depth + 1);
    });
    const Registration second =
        list.add([&](int depth) { log.push_back("second " + std::to_string(depth)); });

    list.call(1);
    EXPECT_THAT(log, ElementsAre("first 1", "first 2", "second 2", "second 1"));
}

TEST(HandlerList, KeepsARemovedRunningHandlerUntilTheOutermostCallHasReturned) {
    HandlerList<int> list;
    Log log;
    Registration registration;
    const auto token = std::make_shared<std::string>("still here");
    registration = list.add([&list, &log, &registration, token](int depth) {
        if (depth == 1) {
            list.call(2);
            log.push_back(*token);
        } else {
            registration.reset();
        }
    });

    list.call(1);
    EXPECT_THAT(log, ElementsAre("still here"));
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(list.empty());
}

TEST(HandlerList, ReleasesWhatAHandlerHoldsWhenItsRegistrationGoes) {
    HandlerList<> list;
    auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = token;
    Registration registration = list.add([token = std::move(token)] { static_cast<void>(token); });
    EXPECT_FALSE(watched.expired());
    registration.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(HandlerList, ReleasesWhatAHandlerHoldsWhenTheListGoes) {
    auto list = std::make_unique<HandlerList<>>();
    auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = token;
    Registration registration = list->add([token = std::move(token)] { static_cast<void>(token); });
    list.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_NO_THROW(registration.reset()); // a registration may outlive its list
}

TEST(HandlerList, MayBeDestroyedByAHandler) {
    auto list = std::make_unique<HandlerList<>>();
    auto token = std::make_shared<std::string>("destroyed");
    const std::weak_ptr<std::string> watched = token;
    Log log;
    Registration registration = list->add([&list, &log, token = std::move(token)] {
        list.reset();
        log.push_back(*token);
    });

    list->call();
    EXPECT_THAT(log, ElementsAre("destroyed"));
    EXPECT_TRUE(watched.expired());
}

TEST(HandlerList, LetsTheLastHolderOfARegistrationBeAHandler) {
    // Removing the outer handler destroys what it holds, which removes the inner one from the same list.
    HandlerList<> list;
    Log log;
    auto inner = std::make_shared<Registration>(list.add([&] { log.emplace_back("inner"); }));
    Registration outer = list.add([inner = std::move(inner)] { static_cast<void>(inner); });
    outer.reset();
    list.call();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(list.empty());
}

TEST(HandlerList, LetsWhatAHandlerHoldsRegisterAnotherWhenItGoes) {
    HandlerList<> list;
    Log log;
    Registration late;
    std::shared_ptr<void> guard(nullptr, [&](void*) { late = list.add([&] { log.emplace_back("late"); }); });
    Registration registration = list.add([guard = std::move(guard)] { static_cast<void>(guard); });
    registration.reset();
    list.call();
    EXPECT_THAT(log, ElementsAre("late"));
}

TEST(HandlerList, StaysUsableAfterAnExceptionOfAHandler) {
    HandlerList<> list;
    int calls = 0;
    auto throwing = list.add([] { throw std::bad_alloc(); });
    const auto counting = list.add([&] { ++calls; });
    EXPECT_THROW(list.call(), std::bad_alloc);
    throwing.reset();
    list.call();
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace kelvinbar::handler_list_test
