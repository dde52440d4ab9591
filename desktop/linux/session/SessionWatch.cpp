#include "desktop/linux/session/SessionWatch.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QtGlobal>
#include <optional>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto userInterface = "org.freedesktop.login1.User";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

QDBusMessage managerQuestion(const QString& method, const QVariant& argument) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, managerPath, managerInterface, method);
    question << argument;
    return question;
}

QDBusMessage propertyQuestion(const QString& path, const QString& interface, const QString& property) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, propertiesInterface, "Get");
    question << interface << property;
    return question;
}

/// Empty if the answer is no path, or the one that stands for none.
QString pathIn(const QVariant& answer) {
    const QString path = answer.value<QDBusObjectPath>().path();
    return path == "/" ? QString() : path;
}

/// The id and the path of the object that a property names. No value if it has another type.
template <typename Id>
std::optional<std::pair<Id, QString>> referenceIn(const QVariant& answer, const char* signature) {
    const auto argument = answer.value<QDBusVariant>().variant().value<QDBusArgument>();
    if (argument.currentSignature() != signature) return std::nullopt;
    Id id{};
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> id >> path;
    argument.endStructure();
    return std::pair(id, pathIn(QVariant::fromValue(path)));
}

} // namespace

SessionWatch::SessionWatch(const QDBusConnection& bus, std::function<void()> onAway)
    : bus_(bus), onAway_(std::move(onAway)) {
    moveTo(bus);
}

void SessionWatch::moveTo(const QDBusConnection& bus) {
    bus_ = bus;
    questions_ = std::make_unique<QObject>();
    isLocked_ = false;
    isActive_ = true;
    if (!bus_.isConnected()) return;
    bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
                 SLOT(preparingForSleep(bool)));
    findSessionOfProcess();
}

/// Does not wait. The answer to a question that fails is invalid.
void SessionWatch::ask(QDBusMessage question, const Answer& onAnswered) {
    question.setAutoStartService(false);
    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(question), questions_.get());
    connect(call, &QDBusPendingCallWatcher::finished, this, [call, onAnswered] {
        call->deleteLater();
        onAnswered(call->isError() ? QVariant() : call->reply().arguments().value(0));
    });
}

void SessionWatch::findSessionOfProcess() {
    const auto process = static_cast<uint>(QCoreApplication::applicationPid());
    ask(managerQuestion("GetSessionByPID", process), [this](const QVariant& answer) {
        const QString session = pathIn(answer);
        session.isEmpty() ? findSessionOfEnvironment() : follow(session);
    });
}

void SessionWatch::findSessionOfEnvironment() {
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    if (id.isEmpty()) {
        findUser();
        return;
    }
    ask(managerQuestion("GetSession", id), [this](const QVariant& answer) {
        const QString session = pathIn(answer);
        session.isEmpty() ? findUser() : follow(session);
    });
}

void SessionWatch::findUser() {
    ask(managerQuestion("GetUser", static_cast<uint>(::getuid())), [this](const QVariant& answer) {
        const QString user = pathIn(answer);
        user.isEmpty() ? followEverySession() : findMainSessionOf(user);
    });
}

void SessionWatch::findMainSessionOf(const QString& user) {
    ask(propertyQuestion(user, userInterface, "Display"), [this](const QVariant& answer) {
        const auto session = referenceIn<QString>(answer, "(so)");
        session && !session->second.isEmpty() ? follow(session->second) : followEverySession();
    });
}

/// Desktops request a lock, or lock by themselves and then say so, or do both.
void SessionWatch::follow(const QString& session) {
    bus_.connect(service, session, sessionInterface, "Lock", this, SLOT(lockRequested()));
    bus_.connect(service, session, propertiesInterface, "PropertiesChanged", {sessionInterface}, {}, this,
                 SLOT(sessionChanged(QString, QVariantMap)));
}

/// Requests only: the properties of all sessions change often.
void SessionWatch::followEverySession() {
    bus_.connect(service, {}, sessionInterface, "Lock", this, SLOT(lockRequestedSomewhere(QDBusMessage)));
}

void SessionWatch::lockRequestedSomewhere(const QDBusMessage& signal) {
    ask(propertyQuestion(signal.path(), sessionInterface, "User"), [this](const QVariant& answer) {
        const auto user = referenceIn<uint>(answer, "(uo)");
        if (!user || user->first == ::getuid()) onAway_();
    });
}

void SessionWatch::sessionChanged(const QString& /*interface*/, const QVariantMap& changed) {
    const bool wasLocked = std::exchange(isLocked_, changed.value("LockedHint", isLocked_).toBool());
    const bool wasActive = std::exchange(isActive_, changed.value("Active", isActive_).toBool());
    const bool becomesLocked = isLocked_ && !wasLocked;
    const bool becomesInactive = wasActive && !isActive_;
    if (becomesLocked || becomesInactive) onAway_();
}

} // namespace kelvinbar
