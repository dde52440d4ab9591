// A Qt program that does nothing but connect to the session bus: the baseline for any program of this kind.

#include <QDBusConnection>
#include <QGuiApplication>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    static_cast<void>(QDBusConnection::sessionBus().isConnected());
    return QGuiApplication::exec();
}
