#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace kelvinbar {

/// A bus of the test, which it can end and start again at the same address. It takes the place of the system
/// bus in the whole process.
class OwnBus {
  public:
    /// Chooses the address. Call once, before the first use of a bus: the library reads it only then.
    static void chooseAddress();

    OwnBus() { start(); }

    OwnBus(const OwnBus&) = delete;
    OwnBus& operator=(const OwnBus&) = delete;

    ~OwnBus() { stop(); }

    void start();
    void stop();

    void restart() {
        stop();
        start();
    }

    /// A new connection, which stays open until the bus ends.
    static QDBusConnection connection();

  private:
    QProcess daemon_;
};

} // namespace kelvinbar
