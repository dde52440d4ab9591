#include "tests/desktop/ChildProcess.h"

#include "desktop/linux/session/InstanceLock.h"
#include "desktop/linux/settings/PreferencesFile.h"
#include "desktop/qt/QtTimers.h"
#include "desktop/qt/TerminationSignals.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLockFile>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <unistd.h>

namespace kelvinbar {

namespace {

void print(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

/// Runs an event loop that a signal ends. A slow one never finishes its shutdown.
int endBySignal(int& argc, char** argv, bool isSlow) {
    const QCoreApplication application(argc, argv);
    const TerminationSignals watch([isSlow] {
        print("told\n");
        while (isSlow) ::pause();
        QCoreApplication::quit();
    });
    print("ready\n");
    return QCoreApplication::exec();
}

/// Writes preferences with the keys `prefix`0, `prefix`1, and so on.
int writePreferences(const char* name, const std::string& prefix, int count) {
    fakes::RecordingLog recording;
    PreferencesFile defaults(QString::fromUtf8(name), recording.log);
    for (int number = 0; number < count; ++number) {
        defaults.setText(prefix + std::to_string(number), prefix);
        defaults.flush(std::chrono::seconds(10));
    }
    return recording.lines().empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Holds a lock file until it is killed.
int holdLock(const char* path) {
    QLockFile lock(QString::fromUtf8(path));
    if (!lock.lock()) return EXIT_FAILURE;
    for (;;) ::pause();
}

/// Prints, until it is killed, the milliseconds since the earlier tick at every
/// tick.
int printTicks(int& argc, char** argv, std::chrono::milliseconds interval) {
    const QCoreApplication application(argc, argv);
    QElapsedTimer sinceTick;
    sinceTick.start();
    QtTimers timers;
    const auto timer = timers.start(interval, interval / 50, [&] {
        std::printf("%lld\n", static_cast<long long>(sinceTick.restart()));
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}

/// Runs an event loop that quits on its own, and then two signals.
int quitThenGetSignals(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const TerminationSignals watch([] { print("told\n"); });
    print("ready\n");
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
    std::raise(SIGTERM);
    print("survived one\n");
    std::raise(SIGTERM);
    print("survived two\n");
    return EXIT_SUCCESS;
}

/// Holds an instance lock until it is killed.
int holdInstanceLock(const char* file) {
    InstanceLock lock(file);
    if (!lock.take(ownPlace())) return EXIT_FAILURE;
    while (true) ::pause();
}

} // namespace

std::optional<int> playedPart(int& argc, char** argv) {
    const std::string_view part = argc > 1 ? argv[1] : "";
    if (part == "--write-preferences" && argc == 5)
        return writePreferences(argv[2], argv[3], std::atoi(argv[4]));
    if (part == "--hold-lock" && argc == 3) return holdLock(argv[2]);
    if (part == "--hold-instance-lock" && argc == 3) return holdInstanceLock(argv[2]);
    if (part == "--print-ticks" && argc == 3)
        return printTicks(argc, argv, std::chrono::milliseconds(std::atoi(argv[2])));
    if (part == "--end-by-signal") return endBySignal(argc, argv, false);
    if (part == "--end-slowly") return endBySignal(argc, argv, true);
    if (part == "--quit") return quitThenGetSignals(argc, argv);
    return std::nullopt;
}

} // namespace kelvinbar
