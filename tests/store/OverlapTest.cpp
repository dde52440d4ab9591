// Stores over one machine whose passes overlap on real threads, with a slow and unreliable controller. The
// scheduler decides which passes overlap; the checks hold for every order.

#include "base/MainLoopQueue.h"
#include "base/NotificationCenter.h"
#include "base/WorkerQueue.h"
#include "sensors/Machine.h"
#include "smc/SMCBridge.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCParamBlock.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "store/ReadingOrder.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeIORegistry.h"
#include "tests/fakes/FakeSystemInformation.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <latch>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::overlap_test {

namespace {

/// In ascending order. Each value identifies its key, and each type the number of bytes.
constexpr std::array<std::string_view, 16> controllerKeys{"TC0C", "TC1C", "TC2C", "TC3C", "TC4C", "TC5C",
                                                          "TC6C", "TC7C", "TC8C", "TC9C", "TCAC", "TCBC",
                                                          "TCCC", "TCDC", "TCEC", "TCFC"};

struct NumberType {
    std::string_view name;
    std::size_t size;
};

constexpr NumberType typeOfKey(std::size_t index) {
    constexpr std::array<NumberType, 3> types{{{"ui8 ", 1}, {"ui16", 2}, {"ui32", 4}}};
    return types.at(index % types.size());
}

std::optional<std::size_t> indexOfKey(std::string_view key) {
    const auto* const found = std::ranges::find(controllerKeys, key);
    if (found == controllerKeys.end()) return std::nullopt;
    return static_cast<std::size_t>(found - controllerKeys.begin());
}

void yieldThread(std::size_t times) {
    for (std::size_t time = 0; time < times; ++time) std::this_thread::yield();
}

/// A slow controller with the keys above. Fails at random and counts violations of the driver's contract.
/// Only two fields are atomic: the others rely on calls never overlapping.
class UnreliableDriver final : public SMCDriver {
  public:
    explicit UnreliableDriver(std::uint32_t seed) : random_(seed) {}

    std::atomic<bool> reliable = false;

    [[nodiscard]] std::size_t callsAtOnce() const { return callsAtOnce_; }

    [[nodiscard]] std::size_t callsWithoutConnection() const { return callsWithoutConnection_; }

    [[nodiscard]] std::size_t connectionsLost() const { return connectionsLost_; }

    [[nodiscard]] std::size_t keyCalls() const { return keyCalls_; }

    [[nodiscard]] std::size_t openConnections() const { return open_.size(); }

    std::optional<Service> findService(std::string_view /*className*/) override {
        const Visit visit(*this);
        if (fails(4)) return std::nullopt;
        return Service{3};
    }

    OpenResult open(Service /*service*/) override {
        const Visit visit(*this);
        // Only one connection may be open at a time.
        connectionsLost_ += open_.size();
        const bool opens = !fails(4);
        if (!opens && random_() % 2 == 0) return {.code = 0xE00002C1, .connection = 0};
        open_.insert(++lastConnection_);
        return {.code = opens ? kernSuccess : 0xE00002C1, .connection = lastConnection_};
    }

    ReturnCode callStructMethod(Connection connection, std::uint32_t /*selector*/,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& /*outputSize*/) override {
        const Visit visit(*this);
        ++keyCalls_;
        if (!open_.contains(connection)) ++callsWithoutConnection_;
        if (fails(16)) return 0xE00002BC;
        SMCParamBlock request;
        std::memcpy(&request, input.data(), sizeof(request));
        const SMCParamBlock reply = answer(request);
        std::memcpy(output.data(), &reply, sizeof(reply));
        return kernSuccess;
    }

    void close(Connection connection) override {
        const Visit visit(*this);
        if (open_.erase(connection) == 0) ++callsWithoutConnection_;
    }

  private:
    /// Lives as long as a call. Memory order is relaxed, so that the driver does not synchronise threads that
    /// its callers leave unsynchronised.
    class Visit {
      public:
        explicit Visit(UnreliableDriver& driver) : driver_(driver) {
            if (driver_.busy_.exchange(true, std::memory_order_relaxed)) ++driver_.callsAtOnce_;
            yieldThread(driver_.random_() % 3);
        }

        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

        ~Visit() { driver_.busy_.store(false, std::memory_order_relaxed); }

      private:
        UnreliableDriver& driver_;
    };

    /// Returns true at random, once in `times`.
    bool fails(std::uint32_t times) {
        return random_() % times == 0 && !reliable.load(std::memory_order_relaxed);
    }

    SMCParamBlock answer(const SMCParamBlock& request) {
        SMCParamBlock reply;
        if (fails(16)) {
            reply.result = 0x85;
        } else if (request.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex)) {
            reply.key = packedSMCKey(controllerKeys.at(request.data32 % controllerKeys.size()));
        } else if (const std::string key = fourCharString(request.key); key == "#KEY") {
            reply.dataSize = 4;
            reply.dataType = packedSMCKey("ui32");
            reply.bytes[3] = controllerKeys.size();
        } else if (const auto index = indexOfKey(key)) {
            const NumberType type = typeOfKey(*index);
            reply.dataSize = static_cast<std::uint32_t>(type.size);
            reply.dataType = packedSMCKey(type.name);
            reply.bytes.at(type.size - 1) = static_cast<std::uint8_t>(16 * (random_() % 16) + *index);
        } else {
            reply.result = 0x84;
        }
        return reply;
    }

    std::mt19937 random_;
    std::atomic<bool> busy_ = false;
    std::atomic<std::size_t> callsAtOnce_ = 0;
    std::size_t callsWithoutConnection_ = 0;
    std::size_t connectionsLost_ = 0;
    std::size_t keyCalls_ = 0;
    std::set<Connection> open_;
    Connection lastConnection_ = 0;
};

/// A registry with one fan. Several threads may iterate over it at once, and tests can make two iterations
/// overlap.
class SharedRegistry final : public IORegistry {
  public:
    /// Each iteration waits until as many have started as the latch expects. Change only while none runs.
    std::shared_ptr<std::latch> meetingPoint;

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view /*plane*/) override {
        if (meetingPoint != nullptr) meetingPoint->arrive_and_wait();
        yieldThread(3);
        return std::make_unique<Iterator>(fan_);
    }

  private:
    class Iterator final : public IORegistryIterator {
      public:
        explicit Iterator(const fakes::FakeEntry& entry) : entry_(&entry) {}

        const IORegistryEntry* next() override { return std::exchange(entry_, nullptr); }

      private:
        const fakes::FakeEntry* entry_;
    };

    static Dictionary fanProperties() {
        Dictionary properties;
        properties.set("CPU Fan Speed", std::int64_t{1450});
        return properties;
    }

    const fakes::FakeEntry fan_{"SMCSuperIO", "Sensors", fanProperties()};
};

/// Whether the reading has the value of its key, and is not mixed from several replies.
testing::AssertionResult isWhole(const SMCReading& reading) {
    const auto fault = [&reading](std::string_view text) {
        return testing::AssertionFailure() << reading.key << " " << reading.type << " " << reading.value
                                           << " " << reading.raw << ": " << text;
    };
    if (reading.type == "native") {
        return reading.key.starts_with('N') ? testing::AssertionSuccess() : fault("native");
    }
    if (reading.type == "ioreg") {
        const bool isTheFan = reading.key == "FAN0" && reading.value == "1450";
        return isTheFan ? testing::AssertionSuccess() : fault("not the registry's fan");
    }
    const auto index = indexOfKey(reading.key);
    if (!index) return fault("unknown key");
    const NumberType type = typeOfKey(*index);
    if (reading.type != type.name || reading.raw.size() != 2 * type.size) return fault("another key's type");
    const unsigned long number = std::stoul(reading.raw, nullptr, 16);
    if (number % 16 != *index) return fault("another key's bytes");
    if (reading.value != std::to_string(number)) return fault("value and bytes differ");
    return testing::AssertionSuccess();
}

/// A machine, and stores that are created on it one after another.
class Program {
  public:
    explicit Program(std::uint32_t seed) : driver_(std::make_shared<UnreliableDriver>(seed)) {}

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    ~Program() { endPasses(); }

    [[nodiscard]] KelvinbarStore& store() { return *store_; }

    [[nodiscard]] UnreliableDriver& driver() { return *driver_; }

    [[nodiscard]] SharedRegistry& registry() { return *registry_; }

    void advance(std::chrono::seconds time) {
        clock_->advance(time);
        wallClock_.time += time;
    }

    void destroyStore() { store_.reset(); }

    void makeStore() {
        store_ = KelvinbarStore::create(StorePorts{.machine = machine_,
                                                   .defaults = defaults_,
                                                   .notifications = notifications_,
                                                   .mainQueue = mainQueue_,
                                                   .backgroundQueue = *workers_,
                                                   .wallClock = wallClock_});
        observers_.clear();
        observers_.push_back(store_->readings().observe(checkReadings));
        observers_.push_back(
            store_->statusMessage().observe([this](const auto& text) { checkStatus(text); }));
    }

    /// Runs what has been posted to the main thread, without waiting for more.
    void runWaitingResults() {
        bool reached = false;
        mainQueue_.post([&reached] { reached = true; });
        mainQueue_.runUntil([&reached] { return reached; });
    }

    /// Waits for the first result of a new store.
    void waitForFirstResult() {
        mainQueue_.runUntil([this] { return !store_->isLoading().value(); });
    }

    /// Waits for running passes and drops waiting ones, then applies the results.
    void endPasses() {
        workers_.reset();
        runWaitingResults();
    }

    /// Waits for passes, and for stores that were shut down to close the source: another's next pass would be
    /// cut short by that.
    void waitForWork() {
        EXPECT_TRUE(workers_->finish(std::chrono::minutes(1)));
        runWaitingResults();
    }

    void closeSource() const { machine_.source->close(); }

    [[nodiscard]] std::size_t resultsWithKeys() const { return resultsWithKeys_; }

  private:
    static void checkReadings(const std::vector<SMCReading>& readings) {
        std::set<std::string> keys;
        for (const SMCReading& reading : readings) {
            EXPECT_TRUE(isWhole(reading));
            EXPECT_TRUE(keys.insert(reading.key).second) << reading.key << " stands twice";
        }
    }

    /// Called for a new status, which follows the readings, pins and hidden keys of the same result.
    void checkStatus(std::string_view text) {
        const std::vector<SMCReading>& readings = store_->readings().value();
        if (text == "Reading AppleSMC keys…") return;
        const auto hasReading = [&](const std::string& key) {
            return std::ranges::find(readings, key, &SMCReading::key) != readings.end();
        };
        EXPECT_TRUE(std::ranges::all_of(store_->menuBarKeys().value(), hasReading));
        EXPECT_TRUE(std::ranges::all_of(store_->hiddenKeys().value(), hasReading));
        if (text == "AppleSMC unavailable; showing native macOS telemetry") {
            EXPECT_TRUE(
                std::ranges::all_of(readings, [](const auto& each) { return each.type == "native"; }));
        } else if (text.starts_with("Loaded ")) {
            EXPECT_EQ(text, "Loaded " + std::to_string(readings.size()) + " HWMonitorSMC2-compatible keys");
            EXPECT_EQ(readings, sortedByCategoryAndKey(readings));
            EXPECT_TRUE(
                std::ranges::none_of(readings, [](const auto& each) { return each.type == "native"; }));
            ++resultsWithKeys_;
        } else {
            EXPECT_EQ(text, "Refresh cancelled");
            EXPECT_EQ(readings.size(), 0U);
        }
    }

    std::shared_ptr<UnreliableDriver> driver_;
    std::shared_ptr<SharedRegistry> registry_ = std::make_shared<SharedRegistry>();
    std::shared_ptr<fakes::FakeMonotonicClock> clock_ = std::make_shared<fakes::FakeMonotonicClock>();
    const Machine machine_{.source = std::make_shared<SMCBridge>(driver_, registry_, clock_),
                           .system = std::make_shared<fakes::FakeSystemInformation>(),
                           .clock = clock_};
    fakes::FakeWallClock wallClock_;
    InMemoryUserDefaults defaults_;
    NotificationCenter notifications_;
    MainLoopQueue mainQueue_;
    std::unique_ptr<WorkerQueue> workers_ = std::make_unique<WorkerQueue>(2);
    std::shared_ptr<KelvinbarStore> store_;
    std::vector<Registration> observers_;
    std::size_t resultsWithKeys_ = 0;
};

/// Random actions on the main thread while passes run.
class RandomUser {
  public:
    RandomUser(Program& program, std::uint32_t seed) : program_(program), random_(seed) {}

    void act() {
        switch (random_() % 12) {
        case 0:
        case 1:
        case 2:
            program_.store().refresh(random_() % 4 == 0);
            break;
        case 3:
        case 4:
        case 5:
            program_.store().refreshMenuBarOnly();
            break;
        case 6:
            pinAFew();
            break;
        case 7:
            hideOne();
            break;
        case 8:
            program_.advance(std::chrono::seconds(random_() % 400));
            break;
        case 9:
            program_.store().shutdown();
            break;
        case 10:
            replaceStore();
            break;
        default:
            yieldThread(random_() % 64);
            break;
        }
        if (random_() % 2 == 0) program_.runWaitingResults();
    }

  private:
    std::string randomKey() { return std::string(controllerKeys.at(random_() % controllerKeys.size())); }

    void pinAFew() { program_.store().setMenuBarKeys({randomKey(), "FAN0", randomKey(), randomKey()}); }

    void hideOne() {
        SMCReading reading;
        reading.key = randomKey();
        program_.store().hideReading(reading);
    }

    void replaceStore() {
        if (random_() % 2 == 0) program_.store().shutdown();
        program_.destroyStore();
        yieldThread(random_() % 64);
        program_.makeStore();
    }

    Program& program_;
    std::mt19937 random_;
};

TEST(Overlap, PassesShutdownsAndDestructionsOfStoresDoNotDisturbOneAnother) {
    std::size_t resultsWithKeys = 0;
    for (std::uint32_t seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Program program(seed);
        program.makeStore();
        program.waitForFirstResult();
        resultsWithKeys += program.resultsWithKeys();
        RandomUser user(program, seed);
        for (int step = 0; step < 150; ++step) user.act();

        program.driver().reliable = true;
        program.destroyStore();
        program.waitForWork();
        program.makeStore();
        program.waitForFirstResult();
        EXPECT_EQ(program.store().statusMessage().value(), "Loaded 17 HWMonitorSMC2-compatible keys");
        program.store().shutdown();
        program.endPasses();
        program.closeSource();

        const UnreliableDriver& driver = program.driver();
        EXPECT_GT(driver.keyCalls(), 0U);
        EXPECT_EQ(driver.callsAtOnce(), 0U);
        EXPECT_EQ(driver.callsWithoutConnection(), 0U);
        EXPECT_EQ(driver.connectionsLost(), 0U);
        EXPECT_EQ(driver.openConnections(), 0U);
    }
    // The first result of each seed comes from a pass without overlap, so the scheduler has no influence.
    EXPECT_GT(resultsWithKeys, 0U);
}

TEST(Overlap, AFullAndAMenuBarOnlyPassRunAtOnce) {
    Program program(1);
    program.driver().reliable = true;
    program.makeStore();
    program.waitForFirstResult();
    program.store().setMenuBarKeys({"TC5C", "FAN0"});
    // The cached fan is outdated, so both passes iterate over the registry.
    program.advance(std::chrono::seconds(15));
    program.registry().meetingPoint = std::make_shared<std::latch>(2);
    program.store().refreshMenuBarOnly();
    program.store().refresh(false);
    program.registry().meetingPoint->wait();
    program.endPasses();
    EXPECT_EQ(program.store().statusMessage().value(), "Loaded 17 HWMonitorSMC2-compatible keys");
    EXPECT_EQ(program.store().menuBarKeys().value(), (std::vector<std::string>{"TC5C", "FAN0"}));
    EXPECT_EQ(program.driver().callsAtOnce(), 0U);
}

TEST(Overlap, ResultsThatArriveAfterTheStoreIsGoneAreDropped) {
    Program program(1);
    program.driver().reliable = true;
    program.makeStore();
    program.waitForFirstResult();
    program.store().setMenuBarKeys({"FAN0"});
    program.advance(std::chrono::seconds(15));
    program.registry().meetingPoint = std::make_shared<std::latch>(3);
    program.store().refreshMenuBarOnly();
    program.store().refresh(true);
    const std::size_t applied = program.resultsWithKeys();
    // Both passes are running when the store is destroyed.
    program.destroyStore();
    program.registry().meetingPoint->arrive_and_wait();
    program.endPasses();
    EXPECT_EQ(program.resultsWithKeys(), applied);
    EXPECT_EQ(program.driver().callsWithoutConnection(), 0U);
}

} // namespace
} // namespace kelvinbar::overlap_test
