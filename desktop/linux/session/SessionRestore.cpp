#include "desktop/linux/session/SessionRestore.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace kelvinbar {

namespace {

void decline(QSessionManager& manager) { manager.setRestartHint(QSessionManager::RestartNever); }

} // namespace

void declineSessionRestore(const QGuiApplication& application) {
    // Managers ask for one of them or for both, and want the hint with the answer.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, decline);
    QObject::connect(&application, &QGuiApplication::saveStateRequest, decline);
}

} // namespace kelvinbar
