#include "desktop/linux/session/RunningInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <array>
#include <utility>

namespace kelvinbar {

namespace {

/// Keys of the platform data, with the environment variables that launchers pass them in.
constexpr auto startupIdKey = "desktop-startup-id";
constexpr auto activationTokenKey = "activation-token";
constexpr std::array<std::pair<const char*, const char*>, 2> platformVariables{{
    {startupIdKey, "DESKTOP_STARTUP_ID"},
    {activationTokenKey, "XDG_ACTIVATION_TOKEN"},
}};

QString objectPath(QString name) { return "/" + name.replace('.', '/'); }

QVariantMap ownPlatformData() {
    QVariantMap data;
    for (const auto& [key, variable] : platformVariables) {
        if (!qEnvironmentVariableIsEmpty(variable)) data.insert(key, qEnvironmentVariable(variable));
    }
    return data;
}

/// The X server's time at the end of a startup id: "…_TIME1234".
uint timeOfStartupId(const QString& id) {
    constexpr QLatin1String mark("_TIME");
    const qsizetype place = id.lastIndexOf(mark);
    return place < 0 ? 0 : id.mid(place + mark.size()).toUInt();
}

FocusRight focusRightOf(const QVariantMap& platformData) {
    return {.activationToken = platformData.value(activationTokenKey).toString(),
            .timestamp = timeOfStartupId(platformData.value(startupIdKey).toString())};
}

bool hasOwner(const QDBusConnection& bus, const QString& name) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(name);
}

} // namespace

RunningInstance::RunningInstance(QDBusConnection bus, const QString& name, Activation onActivated)
    : bus_(std::move(bus)), name_(name), path_(objectPath(name)), onActivated_(std::move(onActivated)) {
    new RunningInstanceAdaptor(
        *this); // NOLINT(cppcoreguidelines-owning-memory): the object owns its adaptors
    // Register the object before the name, so that whoever sees the name can call it.
    if (bus_.isConnected()) bus_.registerObject(path_, this);
    claim();
}

RunningInstance::~RunningInstance() {
    release();
    if (bus_.isConnected()) bus_.unregisterObject(path_);
}

bool RunningInstance::claim() {
    if (!isThisOne_) isThisOne_ = !bus_.isConnected() || bus_.registerService(name_);
    return isThisOne_;
}

void RunningInstance::release() {
    if (std::exchange(isThisOne_, false) && bus_.isConnected()) bus_.unregisterService(name_);
}

/// Opening the panel takes time on a busy machine, and the caller takes a late reply for that of a hung
/// program.
void RunningInstance::activated(const QVariantMap& platformData) {
    queue_.post([this, right = focusRightOf(platformData)] { onActivated_(right); });
}

ActivationResult activateRunningInstance(const QDBusConnection& bus, const QString& name,
                                         std::chrono::milliseconds limit) {
    if (!hasOwner(bus, name)) return ActivationResult::nobodyRuns;
    QDBusMessage call =
        QDBusMessage::createMethodCall(name, objectPath(name), "org.freedesktop.Application", "Activate");
    call.setAutoStartService(false); // this process is what the bus would start
    call << ownPlatformData();
    const QDBusMessage reply = bus.call(call, QDBus::Block, static_cast<int>(limit.count()));
    if (reply.type() == QDBusMessage::ReplyMessage) return ActivationResult::opened;
    // An instance that ends while it is asked does not reply either.
    return hasOwner(bus, name) ? ActivationResult::unanswered : ActivationResult::nobodyRuns;
}

} // namespace kelvinbar
