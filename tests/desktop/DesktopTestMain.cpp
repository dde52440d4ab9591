// Runs the tests on the session bus of the environment.

#include "desktop/linux/InstanceLock.h"
#include "desktop/linux/PreferencesFile.h"
#include "desktop/qt/TerminationSignals.h"
#include "tests/QtTests.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

void print(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

/// Runs in a second process: an event loop that a signal ends. A slow one never finishes its shutdown.
int endBySignal(int& argc, char** argv, bool isSlow) {
    const QCoreApplication application(argc, argv);
    const kelvinbar::TerminationSignals watch([isSlow] {
        print("told\n");
        while (isSlow) ::pause();
        QCoreApplication::quit();
    });
    print("ready\n");
    return QCoreApplication::exec();
}

/// Runs in a second process: writes preferences with the keys `prefix`0, `prefix`1, and so on.
int writePreferences(const char* name, const std::string& prefix, int count) {
    kelvinbar::fakes::RecordingLog recording;
    kelvinbar::PreferencesFile defaults(QString::fromUtf8(name), recording.log);
    for (int number = 0; number < count; ++number) {
        defaults.setText(prefix + std::to_string(number), prefix);
    }
    return recording.lines().empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Runs in a second process: an event loop that quits on its own, and then two signals.
int quitThenGetSignals(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const kelvinbar::TerminationSignals watch([] { print("told\n"); });
    print("ready\n");
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
    std::raise(SIGTERM);
    print("survived one\n");
    std::raise(SIGTERM);
    print("survived two\n");
    return EXIT_SUCCESS;
}

/// Runs in a second process: holds an instance lock until it is killed.
int holdLock(const char* file) {
    kelvinbar::InstanceLock lock(file);
    if (!lock.take(kelvinbar::ownPlace())) return EXIT_FAILURE;
    while (true) ::pause();
}

bool isOnSessionBus() {
    if (QDBusConnection::sessionBus().isConnected()) return true;
    std::fputs("there is no session bus\n", stderr);
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 5 && std::string_view(argv[1]) == "--write-preferences") {
        return writePreferences(argv[2], argv[3], std::atoi(argv[4]));
    }
    if (argc == 2 && std::string_view(argv[1]) == "--end-by-signal") return endBySignal(argc, argv, false);
    if (argc == 2 && std::string_view(argv[1]) == "--end-slowly") return endBySignal(argc, argv, true);
    if (argc == 3 && std::string_view(argv[1]) == "--hold-lock") return holdLock(argv[2]);
    if (argc == 2 && std::string_view(argv[1]) == "--quit") return quitThenGetSignals(argc, argv);
    return kelvinbar::runQtTests(argc, argv, isOnSessionBus);
}
