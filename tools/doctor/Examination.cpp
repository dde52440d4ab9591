#include "tools/doctor/Examination.h"

#include "base/NotificationCenter.h"
#include "base/NumberText.h"
#include "catalogue/SMCReading.h"
#include "process/CostMeter.h"
#include "sensors/WatchedLook.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "store/KeyContinuity.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

std::string milliseconds(std::chrono::duration<double> time) {
    return fixedText(time.count() * 1e3, 1) + " ms";
}

Finding costFinding(std::string subject, const ProcessCost& cost, const KelvinbarStore& store) {
    std::string found =
        milliseconds(cost.time) + ", of which " + milliseconds(cost.cpuTime) + " of processor time";
    if (const auto accesses = store.accessesOfLastPass()) {
        found.append(", ").append(std::to_string(*accesses)).append(" accesses to files and drivers");
    }
    return {.subject = std::move(subject), .found = std::move(found)};
}

Finding readingsFinding(const KelvinbarStore& store) {
    const auto& readings = store.readings().value();
    const std::size_t count = readings.size();
    // Native readings are the system's own facts.
    const bool hasSensors =
        std::ranges::any_of(readings, [](const SMCReading& reading) { return reading.type != nativeType; });
    return {.subject = "shown",
            .state = hasSensors ? FindingState::good : FindingState::problem,
            .found = std::to_string(count) + (count == 1 ? " reading; " : " readings; ") +
                     store.statusMessage().value(),
            .advice = hasSensors ? "" : "See what is said of the sources below"};
}

Finding silentFinding(const SilentDevice& device) {
    return {.subject = "no answer",
            .state = FindingState::problem,
            .found = "reading " + device.file + " does not come back",
            .advice =
                "Look for its driver in the kernel's log (\"sudo dmesg\"); the other sensors are read on"};
}

} // namespace

std::vector<FindingSection> Examination::examine(const Machine& machine, const Look& look) {
    std::vector<FindingSection> sections = examinePasses(machine);
    // Each device that does not answer costs one attempt.
    for (std::size_t attempt = 0; attempt <= ReadWatch::mostSilent; ++attempt) {
        auto found =
            watchedLook(machine, mainQueue_, backgroundQueue_, [machine, look] { return look(machine); });
        if (!found) continue;
        std::ranges::move(*found, std::back_inserter(sections));
        break;
    }
    return sections;
}

std::vector<FindingSection> Examination::examinePasses(const Machine& machine) {
    InMemoryUserDefaults defaults;
    KeyContinuity::markCarriedOver(defaults);
    NotificationCenter notifications;
    SystemWallClock wallClock;
    const CostMeter search;
    const auto store = KelvinbarStore::create({.machine = machine,
                                               .defaults = defaults,
                                               .notifications = notifications,
                                               .mainQueue = mainQueue_,
                                               .backgroundQueue = backgroundQueue_,
                                               .wallClock = wallClock});
    const auto waitForPass = [&] { mainQueue_.runUntil([&] { return !store->isReading(); }); };
    waitForPass();
    Finding first = costFinding("first pass, which looks for devices", search.cost(), *store);
    const CostMeter pass;
    store->refresh(false);
    waitForPass();
    Finding second = costFinding("pass", pass.cost(), *store);
    accessesOfLastPass_ = store->accessesOfLastPass();
    FindingSection readings{.title = "Readings", .findings = {readingsFinding(*store)}};
    std::ranges::transform(store->silentDevices(), std::back_inserter(readings.findings), silentFinding);
    store->shutdown();
    return {std::move(readings),
            {.title = "Cost of reading", .findings = {std::move(first), std::move(second)}}};
}

} // namespace kelvinbar
