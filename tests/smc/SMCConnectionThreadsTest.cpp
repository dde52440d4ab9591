#include "smc/SMCConnection.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::smc_connection_threads_test {

namespace {

/// The value of every key is its code, repeated. The size depends on the last character.
std::uint32_t sizeOfKey(std::uint32_t key) { return 1 + key % 32; }

std::uint8_t byteOfKey(std::uint32_t key, std::size_t index) {
    return static_cast<std::uint8_t>(key >> (8U * (index % 4)));
}

/// A driver that detects concurrent calls, and makes them likely if they are possible.
class CrowdedDriver final : public SMCDriver {
  public:
    std::atomic<int> overlaps{0};
    std::atomic<int> calls{0};
    std::atomic<int> opened{0};
    std::atomic<int> closed{0};

    std::optional<Service> findService(std::string_view /*className*/) override {
        const Presence presence(*this);
        return 1;
    }

    OpenResult open(Service /*service*/) override {
        const Presence presence(*this);
        return {.code = kernSuccess, .connection = static_cast<Connection>(++opened)};
    }

    ReturnCode callStructMethod(Connection /*connection*/, std::uint32_t /*selector*/,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& /*outputSize*/) override {
        const Presence presence(*this);
        ++calls;
        SMCParamBlock request;
        std::memcpy(&request, input.data(), sizeof(request));
        const SMCParamBlock reply = answerTo(request);
        std::memcpy(output.data(), &reply, sizeof(reply));
        return kernSuccess;
    }

    void close(Connection /*connection*/) override {
        const Presence presence(*this);
        ++closed;
    }

  private:
    class Presence {
      public:
        explicit Presence(CrowdedDriver& driver) : driver_(driver) {
            if (driver_.inside_++ != 0) ++driver_.overlaps;
            std::this_thread::yield();
        }

        Presence(const Presence&) = delete;
        Presence& operator=(const Presence&) = delete;

        ~Presence() { --driver_.inside_; }

      private:
        CrowdedDriver& driver_;
    };

    static SMCParamBlock answerTo(const SMCParamBlock& request) {
        SMCParamBlock reply;
        if (request.command == static_cast<std::uint8_t>(SMCCommand::readKeyInfo)) {
            reply.dataSize = sizeOfKey(request.key);
            reply.dataType = ~request.key;
        } else {
            for (std::size_t index = 0; index < request.dataSize; ++index) {
                reply.bytes.at(index) = byteOfKey(request.key, index);
            }
        }
        return reply;
    }

    std::atomic<int> inside_{0};
};

bool belongsTo(const SMCParamBlock& block, std::uint32_t key) {
    SMCParamBlock expected;
    expected.key = key;
    expected.dataSize = sizeOfKey(key);
    expected.dataType = ~key;
    for (std::size_t index = 0; index < expected.dataSize; ++index) {
        expected.bytes.at(index) = byteOfKey(key, index);
    }
    return std::memcmp(&block, &expected, sizeof(block)) == 0;
}

class SMCConnectionThreads : public testing::Test {
  protected:
    std::shared_ptr<CrowdedDriver> driver = std::make_shared<CrowdedDriver>();
    std::atomic<int> mixedUp{0};
    SMCConnection connection{driver};

    /// Reads keys that begin with `first`. Returns how many reads failed with a code other than `allowed`.
    int readMany(char first, int count, ReturnCode allowed) {
        int failures = 0;
        for (int round = 0; round < count; ++round) {
            const std::string key = std::string{first} + "C0" + static_cast<char>('!' + round % 90);
            SMCParamBlock block;
            const ReturnCode code = connection.readKey(key, block);
            if (code != kernSuccess && code != allowed) ++failures;
            if (code == kernSuccess && !belongsTo(block, packedSMCKey(key))) ++mixedUp;
        }
        return failures;
    }
};

TEST_F(SMCConnectionThreads, TwoThreadsThatReadDifferentKeysGetTheirOwnBlocksOneCallAtATime) {
    constexpr int count = 5000;
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    int firstFailures = -1;
    int secondFailures = -1;
    std::thread first([&] { firstFailures = readMany('A', count, kernSuccess); });
    std::thread second([&] { secondFailures = readMany('z', count, kernSuccess); });
    first.join();
    second.join();
    EXPECT_EQ(firstFailures, 0);
    EXPECT_EQ(secondFailures, 0);
    EXPECT_EQ(mixedUp, 0);
    EXPECT_EQ(driver->overlaps, 0);
    EXPECT_EQ(driver->calls, 4 * count);
}

TEST_F(SMCConnectionThreads, OpeningAndClosingMeanwhileNeverOverlapsACall) {
    constexpr int count = 3000;
    int firstFailures = -1;
    int secondFailures = -1;
    std::thread first([&] { firstFailures = readMany('A', count, kernInvalidArgument); });
    std::thread second([&] { secondFailures = readMany('z', count, kernInvalidArgument); });
    for (int round = 0; round < count; ++round) {
        connection.openSMC();
        if (round % 3 == 0) connection.close();
    }
    first.join();
    second.join();
    connection.close();
    EXPECT_EQ(firstFailures, 0) << "the only failure is a closed connection";
    EXPECT_EQ(secondFailures, 0);
    EXPECT_EQ(mixedUp, 0);
    EXPECT_EQ(driver->overlaps, 0);
    EXPECT_EQ(driver->opened, driver->closed);
}

TEST_F(SMCConnectionThreads, ThreadsThatOpenAtOnceShareOneConnection) {
    std::array<std::thread, 4> threads;
    std::atomic<int> successes{0};
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            if (connection.openSMC() == kernSuccess) ++successes;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(successes, 4);
    EXPECT_EQ(driver->opened, 1);
    EXPECT_EQ(driver->overlaps, 0);
}

/// A driver that detects a call of another thread between the two calls that read a key.
class InterruptedDriver final : public SMCDriver {
  public:
    std::atomic<bool> wasInterrupted{false};

    std::optional<Service> findService(std::string_view /*className*/) override { return 1; }

    OpenResult open(Service /*service*/) override { return {.code = kernSuccess, .connection = 1}; }

    ReturnCode callStructMethod(Connection /*connection*/, std::uint32_t /*selector*/,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& /*outputSize*/) override {
        SMCParamBlock request;
        std::memcpy(&request, input.data(), sizeof(request));
        const auto command = static_cast<SMCCommand>(request.command);
        if (command == SMCCommand::readBytes && previous_ == SMCCommand::keyByIndex) wasInterrupted = true;
        previous_ = command;
        SMCParamBlock reply;
        reply.dataSize = 1;
        std::memcpy(output.data(), &reply, sizeof(reply));
        std::this_thread::yield();
        return kernSuccess;
    }

    void close(Connection /*connection*/) override {}

  private:
    SMCCommand previous_ = SMCCommand::readKeyInfo; ///< the connection's lock guards it
};

TEST(SMCConnectionLock, IsFreeBetweenTheTwoCallsOfOneRead) {
    constexpr int maximumReads = 200'000; // reached only if the lock is held too long
    const auto driver = std::make_shared<InterruptedDriver>();
    SMCConnection connection(driver);
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    std::atomic<bool> isDone{false};
    std::thread other([&] {
        std::string key;
        while (!isDone) connection.readKeyByIndex(0, key);
    });
    int failures = 0;
    for (int count = 0; count < maximumReads && !driver->wasInterrupted; ++count) {
        SMCParamBlock block;
        if (connection.readKey("TC0P", block) != kernSuccess) ++failures;
    }
    isDone = true;
    other.join();
    EXPECT_TRUE(driver->wasInterrupted);
    EXPECT_EQ(failures, 0);
}

} // namespace
} // namespace kelvinbar::smc_connection_threads_test
