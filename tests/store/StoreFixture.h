#pragma once

#include "base/NotificationCenter.h"
#include "catalogue/NotificationNames.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/ManualQueues.h"
#include "tests/fakes/RecordingUserDefaults.h"
#include "tests/store/ControllerKeys.h"

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::fakes {

/// A notification as received by its observers.
struct Posted {
    std::string_view name;
    std::variant<SMCSamplingRate, MenuBarReadingChange, DisplayModeChange, ManualSizeChange> content;
};

/// A store over a fake machine. The test runs its queues.
struct StoreFixture : testing::Test {
    FakeMachine machine;
    Machine machineOfStore = machine.machine(); ///< used by makeStore()
    AbsentSelections absent;                    ///< likewise
    RecordingUserDefaults defaults;
    NotificationCenter notifications;
    FakeWallClock wallClock;
    ManualMainQueue mainQueue;
    ManualBackgroundQueue backgroundQueue;

    std::vector<Posted> posted;
    std::vector<std::string> events; ///< "field: new value" and "post: name", in order, since recordEvents()
    std::vector<Registration> registrations;

    std::shared_ptr<KelvinbarStore> store;

    StoreFixture() {
        wallClock.time += std::chrono::hours(24);
        observe(kelvinbarSamplingRateChanged);
        observe(kelvinbarMenuBarReadingChanged);
        observe(kelvinbarDisplayModeChanged);
        observe(kelvinbarManualSizeChanged);
    }

    [[nodiscard]] FakeSMCDriver& driver() const { return *machine.driver; }

    /// Creates the store. Its first refresh then waits in the queue.
    void makeStore() {
        store = KelvinbarStore::create(StorePorts{.machine = machineOfStore,
                                                  .defaults = defaults,
                                                  .notifications = notifications,
                                                  .mainQueue = mainQueue,
                                                  .backgroundQueue = backgroundQueue,
                                                  .wallClock = wallClock,
                                                  .absent = absent});
    }

    /// Creates the store over a controller with `keys` and completes the first refresh.
    void makeRefreshedStore(const std::vector<ControllerKey>& keys) {
        setKeys(driver(), keys);
        makeStore();
        finishPasses();
    }

    void finishPasses() {
        backgroundQueue.runAll();
        mainQueue.drain();
    }

    void refresh(bool forceDiscovery = false) {
        store->refresh(forceDiscovery);
        finishPasses();
    }

    void refreshMenuBarOnly() {
        store->refreshMenuBarOnly();
        finishPasses();
    }

    /// Clears what the driver, the preferences and the notification centre have recorded.
    void forgetHistory() {
        driver().calls.clear();
        machine.registry->walkedPlanes.clear();
        defaults.writes.clear();
        posted.clear();
        events.clear();
    }

    void recordEvents() {
        recording_ = true;
        record("smcAvailable", store->smcAvailable(), [](bool value) { return value ? "true" : "false"; });
        record("readings", store->readings(), readingsText);
        record("menuBarKeys", store->menuBarKeys(), [](const auto& keys) { return joined(keys); });
        record("hiddenKeys", store->hiddenKeys(), [](const auto& keys) { return joined(keys); });
        record("lastUpdated", store->lastUpdated(), [](const auto& time) { return time ? "now" : "none"; });
        record("statusMessage", store->statusMessage(), [](const auto& text) { return text; });
        record("isLoading", store->isLoading(), [](bool value) { return value ? "true" : "false"; });
    }

    /// The contents of the notifications with that name, in order.
    template <typename Content>
    [[nodiscard]] std::vector<Content> postedUnder(const NotificationName<Content>& name) const {
        std::vector<Content> contents;
        for (const Posted& each : posted) {
            if (each.name == name.name) contents.push_back(std::get<Content>(each.content));
        }
        return contents;
    }

    [[nodiscard]] std::vector<std::string> readingKeys() const {
        std::vector<std::string> keys;
        for (const SMCReading& reading : store->readings().value()) keys.push_back(reading.key);
        return keys;
    }

    /// "key=value" of every reading, in order, separated by spaces.
    static std::string readingsText(const std::vector<SMCReading>& readings) {
        std::vector<std::string> texts;
        texts.reserve(readings.size());
        for (const SMCReading& reading : readings) texts.push_back(reading.key + "=" + reading.value);
        return joined(texts);
    }

  private:
    template <typename Content>
    void observe(const NotificationName<Content>& name) {
        registrations.push_back(
            notifications.addObserver<Content>(name, [this, name = name.name](const Content& content) {
                posted.push_back({name, content});
                if (recording_) events.push_back("post: " + std::string(name));
            }));
    }

    template <typename Texts>
    static std::string joined(const Texts& texts) {
        std::string line;
        for (const std::string& text : texts) line.append(line.empty() ? "" : " ").append(text);
        return line;
    }

    /// `text` converts the new value to a text.
    template <typename Field, typename Text>
    void record(std::string name, const Field& field, Text text) {
        registrations.push_back(field.observe([this, name = std::move(name), text](const auto& newValue) {
            events.push_back(name + ": " + text(newValue));
        }));
    }

    bool recording_ = false;
};

/// A reading with a key only, which is all that the store uses when a row is pinned or hidden.
inline SMCReading readingOf(std::string key) {
    SMCReading reading;
    reading.key = std::move(key);
    return reading;
}

} // namespace kelvinbar::fakes
