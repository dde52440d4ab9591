#include "base/Text.h"
#include "smc/SMCBridge.h"
#include "smc/SMCConnection.h"
#include "tests/fakes/FakeMachine.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

// A controller that replies with random bytes, biased so that many replies pass the first checks.

namespace kelvinbar::lying_controller_test {

namespace {

using fakes::FakeMachine;

constexpr int rounds = 5000;

class RandomAnswers {
  public:
    explicit RandomAnswers(std::uint64_t seed) : engine_(seed) {}

    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine_() % limit); }

    bool oneIn(std::uint32_t chances) { return below(chances) == 0; }

    /// Fills `output` with random bytes. Fields that are checked early are often plausible.
    std::optional<ReturnCode> fill(SMCParamBlock& output) {
        std::array<std::uint64_t, sizeof(SMCParamBlock) / sizeof(std::uint64_t)> words{};
        std::ranges::generate(words, [this] { return engine_(); });
        output = std::bit_cast<SMCParamBlock>(words);
        if (!oneIn(8)) output.result = 0;
        if (!oneIn(8)) output.dataSize = below(40);
        if (!oneIn(4)) output.dataType = packedSMCKey(someType());
        if (!oneIn(4)) output.key = packedSMCKey(someKey());
        if (oneIn(4))
            std::ranges::generate(output.bytes, [this] { return static_cast<std::uint8_t>(below(128)); });
        return oneIn(16) ? std::optional<ReturnCode>(below(0xFFFFFFFF)) : std::nullopt;
    }

    /// A random printable key. There are few, so that they repeat.
    std::string someKey() {
        std::string key;
        for (int count = 0; count < 4; ++count) key.push_back(static_cast<char>(' ' + below(95)));
        if (!oneIn(3)) key = std::string("TC") + static_cast<char>('0' + below(10)) + 'P';
        return key;
    }

  private:
    std::string someType() {
        constexpr std::array<std::string_view, 20> types{
            "sp78", "sp4s", "spfs", "fpe2", "fpef", "flt ", "ui8 ", "ui1 ", "ui16", "ui1u",
            "ui32", "si8 ", "si16", "si1s", "flag", "ch8*", "char", "{fds", "sp7g", "hex_",
        };
        return std::string(types.at(below(types.size())));
    }

    std::mt19937_64 engine_;
};

void expectWithinTheRules(const RawReading& reading) {
    EXPECT_GE(reading.size, 1U);
    EXPECT_LE(reading.size, 32U);

    EXPECT_EQ(reading.raw.size(), std::size_t{2} * reading.size);
    EXPECT_EQ(reading.raw.find_first_not_of("0123456789ABCDEF"), std::string::npos) << reading.raw;

    EXPECT_LE(reading.type.size(), 4U);
    EXPECT_EQ(reading.type.find('\0'), std::string::npos);
    EXPECT_TRUE(isValidUtf8(reading.type));

    EXPECT_FALSE(reading.value.empty());
    EXPECT_TRUE(std::ranges::all_of(reading.value, [](char c) { return c >= ' ' && c <= '~'; }));

    EXPECT_TRUE(isPrintableSMCKey(reading.key));
    EXPECT_EQ(reading.status, "OK");
    EXPECT_TRUE(std::isfinite(reading.numericValue.value_or(0)));
    EXPECT_FALSE(reading.name || reading.category || reading.unit) << "the catalogue names the key";
}

template <typename Items>
bool allDifferent(const Items& items) {
    return std::set(items.begin(), items.end()).size() == items.size();
}

class LyingController : public testing::Test {
  protected:
    FakeMachine machine;
    SMCConnection connection{machine.driver};
    RandomAnswers random{20240229};

    /// Makes every reply random, except that of "#KEY" if `keyCount` has a value.
    void lie(std::optional<std::uint32_t> keyCount) {
        machine.driver->addKeyCount(keyCount.value_or(0));
        machine.driver->intercept = [this, keyCount](const SMCParamBlock& input,
                                                     SMCParamBlock& output) -> std::optional<ReturnCode> {
            if (keyCount && input.key == packedSMCKey("#KEY")) return std::nullopt;
            return random.fill(output);
        };
    }

    void forgetCalls() { machine.driver->calls.clear(); }
};

TEST_F(LyingController, NeverMakesAKeyReadReturnABlockOutsideTheRules) {
    lie(std::nullopt);
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    int successes = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        forgetCalls();
        const std::string key = random.someKey();
        SMCParamBlock block;
        if (connection.readKey(key, block) != kernSuccess) continue;
        ++successes;
        EXPECT_EQ(block.key, packedSMCKey(key));
        EXPECT_GE(block.dataSize, 1U);
        EXPECT_LE(block.dataSize, 32U);
        EXPECT_EQ(block.result, 0);
        EXPECT_EQ(machine.driver->calls.size(), 2U);
    }
    EXPECT_GT(successes, rounds / 4);
    EXPECT_LT(successes, rounds);
}

TEST_F(LyingController, NeverMakesAListedKeyUnprintable) {
    lie(std::nullopt);
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    int successes = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        forgetCalls();
        std::string key = "kept";
        const ReturnCode code = connection.readKeyByIndex(random.below(0xFFFFFFFF), key);
        if (code == kernSuccess) ++successes;
        EXPECT_TRUE(code == kernSuccess ? isPrintableSMCKey(key) : key == "kept");
    }
    EXPECT_GT(successes, rounds / 4);
    EXPECT_LT(successes, rounds);
}

TEST_F(LyingController, NeverMakesACandidateResultOutsideTheRules) {
    lie(std::nullopt);
    std::size_t results = 0;
    for (int round = 0; round < rounds / 10; ++round) {
        SCOPED_TRACE(round);
        forgetCalls();
        std::vector<std::string> keys;
        while (keys.size() < 10) keys.push_back(random.someKey());
        auto expected = keys.begin();
        for (const RawReading& result : machine.bridge->readCandidateKeys(keys)) {
            ++results;
            expectWithinTheRules(result);
            expected = std::find(expected, keys.end(), result.key);
            EXPECT_NE(expected, keys.end()) << "not asked for, or out of order";
        }
    }
    EXPECT_GT(results, 500U);
}

TEST_F(LyingController, NeverMakesAnyBulkReadRepeatAKeyOrLeaveTheRules) {
    lie(120);
    std::size_t results = 0;
    for (int round = 0; round < rounds / 100; ++round) {
        SCOPED_TRACE(round);
        forgetCalls();
        const auto keys = machine.bridge->discoverKeys();
        EXPECT_LE(keys.size(), 120U);
        EXPECT_TRUE(allDifferent(keys));
        EXPECT_TRUE(std::ranges::all_of(keys, isPrintableSMCKey));

        std::vector<std::string> readKeys;
        for (const RawReading& result : machine.bridge->readAllKeys()) {
            expectWithinTheRules(result);
            readKeys.push_back(result.key);
        }
        EXPECT_LE(readKeys.size(), 120U);
        EXPECT_TRUE(allDifferent(readKeys));
        results += readKeys.size();
    }
    EXPECT_GT(results, 500U);
}

TEST_F(LyingController, NeverMakesDiscoveryWalkFurtherThanItsBound) {
    lie(std::nullopt);
    for (int round = 0; round < rounds / 5; ++round) {
        SCOPED_TRACE(round);
        forgetCalls();
        const auto keys = machine.bridge->discoverKeys();
        EXPECT_LE(keys.size(), 8192U);
        EXPECT_LE(machine.driver->calls.size(), 8192U + 2U);
    }
    EXPECT_EQ(machine.driver->openCount, 1) << "a failed call does not close the connection";
}

} // namespace
} // namespace kelvinbar::lying_controller_test
