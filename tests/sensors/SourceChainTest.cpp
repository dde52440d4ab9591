#include "sensors/SourceChain.h"

#include "tests/fakes/FakeSensorSource.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::source_chain_test {
namespace {

using fakes::FakeSensorSource;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

using Texts = std::vector<std::string>;

/// The readings as "key=value".
Texts textsOf(const std::vector<RawReading>& readings) {
    Texts texts;
    texts.reserve(readings.size());
    for (const RawReading& reading : readings) texts.push_back(reading.key + "=" + reading.value);
    return texts;
}

class SourceChainTest : public testing::Test {
  protected:
    std::shared_ptr<FakeSensorSource> first = std::make_shared<FakeSensorSource>();
    std::shared_ptr<FakeSensorSource> second = std::make_shared<FakeSensorSource>();
    SourceChain chain{{first, second}};

    Texts discovered() { return chain.discoverKeys({}); }

    Texts read(const Texts& keys) { return textsOf(chain.readCandidateKeys(keys)); }
};

// Status

TEST_F(SourceChainTest, TheStatusIsThatOfTheFirstAvailableSource) {
    first->state = {.isAvailable = true, .message = "first connected"};
    second->state = {.isAvailable = true, .message = "second connected"};
    EXPECT_EQ(chain.status(), (SourceStatus{true, "first connected"}));
    first->state = {.isAvailable = false, .message = "first missing"};
    EXPECT_EQ(chain.status(), (SourceStatus{true, "second connected"}));
}

TEST_F(SourceChainTest, TheStatusWithoutAnAvailableSourceHasTheFirstSourcesMessage) {
    first->state = {.isAvailable = false, .message = "first missing"};
    second->state = {.isAvailable = false, .message = "second missing"};
    EXPECT_EQ(chain.status(), (SourceStatus{false, "first missing"}));
}

TEST_F(SourceChainTest, TheMessageOfAnAvailableSourceMayBeEmpty) {
    first->state = {.isAvailable = true, .message = ""};
    second->state = {.isAvailable = false, .message = "second missing"};
    EXPECT_EQ(chain.status(), (SourceStatus{true, ""}));
}

TEST_F(SourceChainTest, TheStatusOpensEverySource) {
    chain.status();
    EXPECT_EQ(first->statusCount, 1);
    EXPECT_EQ(second->statusCount, 1);
}

TEST_F(SourceChainTest, CloseClosesEverySource) {
    chain.close();
    EXPECT_EQ(first->closeCount, 1);
    EXPECT_EQ(second->closeCount, 1);
}

TEST_F(SourceChainTest, AChainWithoutSourcesIsUnavailableAndReadsNothing) {
    SourceChain empty({});
    EXPECT_FALSE(empty.status().isAvailable);
    EXPECT_THAT(empty.discoverKeys({}), IsEmpty());
    EXPECT_THAT(empty.readCandidateKeys(Texts{"TC0P"}), IsEmpty());
    EXPECT_THAT(empty.readSMCSuperIOFans(), IsEmpty());
    empty.close();
}

// Discovery

TEST_F(SourceChainTest, DiscoveryListsTheKeysSourceBySourceEachOnce) {
    first->add("TC1P", "1").add("TC0P", "1");
    second->add("chip/temp1", "2").add("TC0P", "2").add("FAN0", "2");
    EXPECT_THAT(discovered(), ElementsAre("TC1P", "TC0P", "chip/temp1", "FAN0"));
}

TEST_F(SourceChainTest, EverySourceLearnsTheKeysListedBeforeIt) {
    first->add("TC0P", "1");
    second->add("FAN0", "2");
    chain.discoverKeys({"outer"});
    EXPECT_THAT(first->listedBefore, ElementsAre(KeySet{"outer"}));
    EXPECT_THAT(second->listedBefore, ElementsAre(KeySet{"TC0P", "outer"}));
}

TEST_F(SourceChainTest, EveryDiscoveryStartsAfresh) {
    first->add("TC0P", "1");
    discovered();
    first->readings.clear();
    second->add("FAN0", "2");
    EXPECT_THAT(discovered(), ElementsAre("FAN0"));
    EXPECT_THAT(second->listedBefore, ElementsAre(KeySet{"TC0P"}, KeySet{}));
}

// Stored keys

TEST_F(SourceChainTest, TheKeyHistoryIsThatOfAllSourcesAndTheEarlierWins) {
    first->history = {.places = {{"a/temp1", "first"}}, .formerKeys = {{{"TC0P", "a/temp1"}}}};
    second->history = {.places = {{"a/temp1", "second"}, {"b/temp1", "second"}},
                       .formerKeys = {{{"TC0P", "b/temp1"}, {"FAN0", "b/fan1"}}}};
    const KeyHistory history = chain.keyHistory(true);
    EXPECT_THAT(history.places, ElementsAre(Pair("a/temp1", "first"), Pair("b/temp1", "second")));
    EXPECT_THAT(history.formerKeys, Optional(ElementsAre(Pair("FAN0", "b/fan1"), Pair("TC0P", "a/temp1"))));
}

TEST_F(SourceChainTest, FormerKeysArePresentWhenOneSourceHasThem) {
    EXPECT_EQ(chain.keyHistory(true).formerKeys, std::nullopt);
    second->history.formerKeys.emplace();
    EXPECT_THAT(chain.keyHistory(true).formerKeys, Optional(IsEmpty()));
}

TEST_F(SourceChainTest, SourcesReturnFormerKeysOnlyIfTheChainIsAskedForThem) {
    second->history = {.places = {{"b/temp1", "second"}}, .formerKeys = {{{"FAN0", "b/fan1"}}}};
    const KeyHistory history = chain.keyHistory(false);
    EXPECT_THAT(history.places, ElementsAre(Pair("b/temp1", "second")));
    EXPECT_EQ(history.formerKeys, std::nullopt);
}

// Reading

TEST_F(SourceChainTest, KeysOfOneSourceAreReadInTheirOrderByThatSourceAlone) {
    first->add("TC0P", "1");
    second->add("FAN0", "2").add("FAN1", "2");
    discovered();
    EXPECT_THAT(read({"FAN1", "FAN0"}), ElementsAre("FAN1=2", "FAN0=2"));
    for (const Texts& request : first->requests) EXPECT_THAT(request, IsEmpty());
    EXPECT_THAT(second->requests, ElementsAre(Texts{"FAN1", "FAN0"}));
}

TEST_F(SourceChainTest, AKeyIsReadOnlyFromTheFirstSourceThatListsIt) {
    first->add("TC0P", "1");
    second->add("TC0P", "2").add("FAN0", "2");
    discovered();
    EXPECT_THAT(read({"TC0P", "FAN0"}), ElementsAre("TC0P=1", "FAN0=2"));
    EXPECT_THAT(first->requests, ElementsAre(Texts{"TC0P"}));
    EXPECT_THAT(second->requests, ElementsAre(Texts{"FAN0"}));
}

TEST_F(SourceChainTest, AKeyIsNotReadFromAnotherSourceIfItsOwnerFails) {
    first->add("TC0P", "1");
    second->add("TC0P", "2");
    discovered();
    first->readings.clear();
    EXPECT_THAT(read({"TC0P"}), IsEmpty());
}

TEST_F(SourceChainTest, AKeyThatNoSourceHasListedIsReadFromTheFirstSourceThatCan) {
    first->add("TC0P", "1");
    second->add("TC0P", "2").add("FAN0", "2");
    EXPECT_THAT(read({"FAN0", "TC0P", "none"}), ElementsAre("TC0P=1", "FAN0=2"));
    EXPECT_THAT(first->requests, ElementsAre(Texts{"FAN0", "TC0P", "none"}));
    EXPECT_THAT(second->requests, ElementsAre(Texts{"FAN0", "none"}));
}

TEST_F(SourceChainTest, AnUnlistedKeyIsReadAlsoAfterADiscovery) {
    first->add("TC0P", "1");
    second->add("FAN0", "2").unlistedKeys = {"FAN0"};
    ASSERT_THAT(discovered(), ElementsAre("TC0P"));
    EXPECT_THAT(read({"TC0P", "FAN0"}), ElementsAre("TC0P=1", "FAN0=2"));
}

TEST_F(SourceChainTest, TheLastDiscoveryDecidesWhoseKeyItIs) {
    first->add("TC0P", "1");
    second->add("TC0P", "2");
    discovered();
    first->unlistedKeys = {"TC0P"};
    discovered();
    EXPECT_THAT(read({"TC0P"}), ElementsAre("TC0P=2"));
}

TEST_F(SourceChainTest, NoKeysMakeNoReadings) {
    first->add("TC0P", "1");
    discovered();
    EXPECT_THAT(read({}), IsEmpty());
}

TEST_F(SourceChainTest, RegistryFansOfAllSourcesAreReturnedInTheirOrder) {
    first->add("FAN0", "1").fans = first->readings;
    second->add("FAN0", "2").add("FAN1", "2").fans = second->readings;
    EXPECT_THAT(textsOf(chain.readSMCSuperIOFans()), ElementsAre("FAN0=1", "FAN0=2", "FAN1=2"));
}

TEST_F(SourceChainTest, AChainIsASourceOfAnotherChain) {
    const auto third = std::make_shared<FakeSensorSource>();
    first->add("TC0P", "1");
    second->add("FAN0", "2");
    third->add("FAN0", "3").add("B0AV", "3");
    SourceChain outer(
        {std::make_shared<SourceChain>(std::vector<std::shared_ptr<SensorSource>>{first, second}), third});
    EXPECT_THAT(outer.discoverKeys({}), ElementsAre("TC0P", "FAN0", "B0AV"));
    EXPECT_THAT(textsOf(outer.readCandidateKeys(Texts{"TC0P", "FAN0", "B0AV"})),
                ElementsAre("TC0P=1", "FAN0=2", "B0AV=3"));
}

// Threads

/// A source that lists its only key every other time it is asked, and can read it always.
class BlinkingSource final : public SensorSource {
  public:
    SourceStatus status() override { return {.isAvailable = true, .message = ""}; }

    std::vector<std::string> discoverKeys(const KeySet& /*listedBefore*/) override {
        return ++discoveries_ % 2 == 0 ? Texts{"TC0P"} : Texts();
    }

    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override {
        std::vector<RawReading> readings(keys.size());
        for (std::size_t place = 0; place < keys.size(); ++place) readings[place].key = keys[place];
        return readings;
    }

    std::vector<RawReading> readSMCSuperIOFans() override { return {}; }

    void close() override {}

  private:
    std::atomic<int> discoveries_{0};
};

TEST(SourceChainThreads, AReadDuringADiscoveryReturnsEachKeyOnce) {
    SourceChain chain({std::make_shared<BlinkingSource>(), std::make_shared<BlinkingSource>()});
    std::atomic<int> reads{0};
    std::atomic<int> wrongReads{0};
    std::atomic<bool> isDone{false};
    std::thread reading([&] {
        while (!isDone) {
            if (textsOf(chain.readCandidateKeys(Texts{"TC0P"})) != Texts{"TC0P="}) ++wrongReads;
            ++reads;
        }
    });
    while (reads < 1000) chain.discoverKeys({});
    isDone = true;
    reading.join();
    EXPECT_EQ(wrongReads, 0);
}

// Reports

TEST_F(SourceChainTest, TheReportsOfAllSourcesFollowEachOther) {
    first->reports = {{.name = "a", .readings = 1}};
    second->reports = {{.name = "b"}, {.name = "c"}};
    Texts names;
    for (const SourceReport& report : chain.report()) names.push_back(report.name);
    EXPECT_THAT(names, ElementsAre("a", "b", "c"));
}

} // namespace
} // namespace kelvinbar::source_chain_test
