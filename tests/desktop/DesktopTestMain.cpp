// Runs the tests on a screen that nobody sees, in a home folder of their own, under a locale whose numbers
// have a decimal comma.

#include "platform/qt/QtUserDefaults.h"
#include "tests/CommaLocale.h"

#include <QDBusConnection>
#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

void enterHome(const QTemporaryDir& home) {
    const auto enter = [&](const char* variable, const char* folder) {
        const QString path = home.filePath(folder);
        QDir().mkpath(path);
        qputenv(variable, path.toUtf8());
    };
    enter("HOME", "home");
    enter("XDG_CONFIG_HOME", "config");
    enter("XDG_RUNTIME_DIR", "runtime");
    QFile::setPermissions(home.filePath("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// This program as another process that writes preferences: `prefix`0, `prefix`1, … .
int writePreferences(const char* name, const std::string& prefix, int count) {
    bool isReported = false;
    kelvinbar::QtUserDefaults defaults(QString::fromUtf8(name),
                                       [&](const std::string&) { isReported = true; });
    for (int number = 0; number < count; ++number) {
        defaults.setText(prefix + std::to_string(number), prefix);
    }
    return isReported ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 5 && std::string_view(argv[1]) == "--write-preferences") {
        return writePreferences(argv[2], argv[3], std::atoi(argv[4]));
    }
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir home;
    enterHome(home);
    if (!kelvinbar::enterCommaLocale(KELVINBAR_LOCALES)) {
        std::fputs("the locale with a decimal comma is missing\n", stderr);
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (!QDBusConnection::sessionBus().isConnected()) {
        std::fputs("there is no session bus\n", stderr);
        return EXIT_FAILURE;
    }
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        std::fputs("no test ran\n", stderr);
        return EXIT_FAILURE;
    }
    return result;
}
