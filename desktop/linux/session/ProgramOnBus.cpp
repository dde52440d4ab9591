#include "desktop/linux/session/ProgramOnBus.h"

#include "process/ProgramCost.h"
#include "shell/Sampling.h"

#include <Kelvinbar1Adaptor.h>
#include <utility>

namespace kelvinbar {

namespace {

template <typename Number>
void addKnown(QVariantMap& cost, const QString& name, const std::optional<Number>& number) {
    if (number) cost.insert(name, QVariant::fromValue(*number));
}

/// What `measured` tells, as the bus interface names it.
QVariantMap namedCost(const ProgramCost& measured) {
    QVariantMap cost;
    addKnown(cost, "MeasuredTime", measured.measuredTime);
    addKnown(cost, "CpuTimePerMinute", measured.cpuTimePerMinute);
    addKnown(cost, "WakeUpsPerMinute", measured.wakeUpsPerMinute);
    addKnown<qulonglong>(cost, "ResidentMemory", measured.residentMemory);
    addKnown<qulonglong>(cost, "PrivateMemory", measured.privateMemory);
    return cost;
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
    QVariantMap cost = namedCost(programCost(costMeter_.cost(), std::chrono::seconds(0)));
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
