#include "desktop/linux/session/ProgramOnBus.h"

#include "shell/Sampling.h"

#include <Kelvinbar1Adaptor.h>
#include <utility>

namespace kelvinbar {

namespace {

/// Adds what `measured` tells to `cost`.
void addMeasured(QVariantMap& cost, const ProcessCost& measured) {
    const double minutes = std::chrono::duration<double, std::ratio<60>>(measured.time).count();
    cost.insert("MeasuredTime", measured.time.count());
    cost.insert("CpuTimePerMinute", measured.cpuTime.count() / minutes);
    cost.insert("WakeUpsPerMinute", static_cast<double>(measured.wakeUps) / minutes);
    if (!measured.memory) return;
    cost.insert("ResidentMemory", qulonglong{measured.memory->resident});
    cost.insert("PrivateMemory", qulonglong{measured.memory->withoutShared});
}

} // namespace

ProgramOnBus::ProgramOnBus(const QDBusConnection& bus, KelvinbarStore& store, std::function<void()> openPanel,
                           Clock now)
    : BusObject(path, CallLimit(burst, rate))
    , store_(store)
    , openPanel_(std::move(openPanel))
    , now_(std::move(now))
    , observers_{store.readings().observe([this](const auto&) { announceSoon(); }),
                 store.lastUpdated().observe([this](const auto&) { announceSoon(); }),
                 store.menuBarKeys().observe([this](const auto&) { announceSoon(); })} {
    registerOfferedReadingTypes();
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the object owns its adaptors
    new Kelvinbar1Adaptor(this);
    moveTo(bus);
}

QString ProgramOnBus::title() const { return QString::fromStdString(store_.menuBarTitle()).trimmed(); }

OfferedReadings ProgramOnBus::readings() const { return offeredReadings(store_.readings().value()); }

QStringList ProgramOnBus::pinned() const {
    QStringList keys;
    for (const std::string& key : store_.menuBarKeys().value()) keys.append(QString::fromStdString(key));
    return keys;
}

qulonglong ProgramOnBus::lastUpdated() const {
    const auto time = store_.lastUpdated().value();
    if (!time) return 0;
    return static_cast<qulonglong>(
        std::chrono::duration_cast<std::chrono::milliseconds>(time->time_since_epoch()).count());
}

QVariantMap ProgramOnBus::cost() const {
    QVariantMap cost;
    addMeasured(cost, costMeter_.cost());
    if (const auto accesses = store_.accessesOfLastPass())
        cost.insert("AccessesOfLastPass", static_cast<uint>(*accesses));
    return cost;
}

bool ProgramOnBus::Refresh() {
    const auto now = now_();
    const bool isTooSoon =
        lastRefresh_ && now - *lastRefresh_ < samplingAt(store_.samplingRate().value()).interval;
    if (isTooSoon) return false;
    lastRefresh_ = now;
    store_.refresh(false);
    return true;
}

void ProgramOnBus::OpenPanel() { queue_.post(openPanel_); }

/// The store tells before its fields have changed, and of each field.
void ProgramOnBus::announceSoon() {
    if (std::exchange(isAnnouncementPosted_, true)) return;
    queue_.post([this] {
        isAnnouncementPosted_ = false;
        emit Refreshed(lastUpdated());
    });
}

} // namespace kelvinbar
