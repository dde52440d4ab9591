// Runs the tests on the session bus of the environment.

#include "desktop/linux/PreferencesFile.h"
#include "desktop/qt/QtTimers.h"
#include "tests/QtTests.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QLockFile>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

/// Runs in a second process: writes preferences with the keys `prefix`0, `prefix`1, and so on, one by one.
int writePreferences(const char* name, const std::string& prefix, int count) {
    kelvinbar::fakes::RecordingLog recording;
    kelvinbar::PreferencesFile defaults(QString::fromUtf8(name), recording.log);
    for (int number = 0; number < count; ++number) {
        defaults.setText(prefix + std::to_string(number), prefix);
        defaults.flush(std::chrono::seconds(10));
    }
    return recording.lines().empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Runs in a second process, until that is killed.
int holdLock(const char* path) {
    QLockFile lock(QString::fromUtf8(path));
    if (!lock.lock()) return EXIT_FAILURE;
    for (;;) ::pause();
}

/// Runs in a second process, until that is killed: prints the milliseconds since the earlier tick at every
/// tick.
int printTicks(int& argc, char** argv, std::chrono::milliseconds interval) {
    const QCoreApplication application(argc, argv);
    QElapsedTimer sinceTick;
    sinceTick.start();
    kelvinbar::QtTimers timers;
    const auto timer = timers.start(interval, interval / 50, [&] {
        std::printf("%lld\n", static_cast<long long>(sinceTick.restart()));
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
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
    if (argc == 3 && std::string_view(argv[1]) == "--hold-lock") return holdLock(argv[2]);
    if (argc == 3 && std::string_view(argv[1]) == "--print-ticks") {
        return printTicks(argc, argv, std::chrono::milliseconds(std::atoi(argv[2])));
    }
    return kelvinbar::runQtTests(argc, argv, isOnSessionBus);
}
