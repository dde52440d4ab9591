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

QDBusMessage callOfBus(const QString& method) {
    constexpr auto busService = "org.freedesktop.DBus";
    return QDBusMessage::createMethodCall(busService, "/org/freedesktop/DBus", busService, method);
}

/// Asks the bus for a name, unless another program has it.
QDBusMessage nameRequest(const QString& name) {
    constexpr uint doNotQueue = 4;
    QDBusMessage request = callOfBus("RequestName");
    request << name << doNotQueue;
    return request;
}

bool isGranted(const QDBusMessage& reply) {
    constexpr uint primaryOwner = 1;
    constexpr uint alreadyOwner = 4;
    const uint answer = reply.arguments().value(0).toUInt();
    return reply.type() == QDBusMessage::ReplyMessage && (answer == primaryOwner || answer == alreadyOwner);
}

QDBusMessage nameRelease(const QString& name) {
    QDBusMessage release = callOfBus("ReleaseName");
    release << name;
    return release;
}

bool hasOwner(const QDBusConnection& bus, const QString& name) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(name);
}

} // namespace

RunningInstance::RunningInstance(QDBusConnection bus, const QString& name, Activation onActivated)
    : bus_(std::move(bus)), name_(name), object_(objectPath(name)), onActivated_(std::move(onActivated)) {
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the object owns its adaptors
    new RunningInstanceAdaptor(*this, object_);
    // Register the object before the name, so that whoever sees the name can call it.
    object_.moveTo(bus_);
    claim();
}

bool RunningInstance::claim() {
    if (!isThisOne_) isThisOne_ = !bus_.isConnected() || isGranted(bus_.call(nameRequest(name_)));
    return isThisOne_;
}

void RunningInstance::moveTo(const QDBusConnection& bus) {
    bus_ = bus;
    object_.moveTo(bus_);
    if (isThisOne_) bus_.send(nameRequest(name_));
}

void RunningInstance::release() {
    if (std::exchange(isThisOne_, false) && bus_.isConnected()) bus_.send(nameRelease(name_));
}

/// Opening the panel takes time on a busy machine, and the caller takes a late reply for that of a hung
/// program.
void RunningInstance::activated(const QVariantMap& platformData) {
    const bool isPosted = activation_.has_value();
    activation_ = focusRightOf(platformData);
    if (!isPosted) queue_.post([this] { onActivated_(std::exchange(activation_, std::nullopt).value()); });
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
