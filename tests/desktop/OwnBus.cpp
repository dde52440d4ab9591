#include "tests/desktop/OwnBus.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

const QString& socketFile() {
    static const QTemporaryDir folder;
    static const QString file = folder.filePath("bus");
    return file;
}

} // namespace

void OwnBus::chooseAddress() {
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", QFile::encodeName("unix:path=" + socketFile()));
}

void OwnBus::start() {
    // It prints its address when it listens.
    daemon_.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address",
                                  "--address=unix:path=" + socketFile()});
    EXPECT_TRUE(daemon_.waitForReadyRead()) << daemon_.readAllStandardError().toStdString();
}

void OwnBus::stop() {
    daemon_.kill();
    daemon_.waitForFinished();
    QFile::remove(socketFile());
}

QDBusConnection OwnBus::connection() {
    static int count = 0;
    return QDBusConnection::connectToBus(QDBusConnection::SystemBus, QString("own-bus-%1").arg(++count));
}

} // namespace kelvinbar
