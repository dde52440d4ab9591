// A Qt program that does nothing, with a connection to the session bus: what any program of this kind costs.

#include <QDBusConnection>
#include <QGuiApplication>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    static_cast<void>(QDBusConnection::sessionBus().isConnected());
    return QGuiApplication::exec();
}
