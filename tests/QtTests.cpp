#include "tests/QtTests.h"

#include "tests/CommaLocale.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

namespace kelvinbar {

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

int failure(const char* reason) {
    std::fputs(reason, stderr);
    return EXIT_FAILURE;
}

} // namespace

int runQtTests(int& argc, char** argv, bool (*isReady)(), const char* platform) {
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir home;
    enterHome(home);
    if (!enterCommaLocale(KELVINBAR_LOCALES)) return failure("the locale with a decimal comma is missing\n");
    qputenv("QT_QPA_PLATFORM", platform);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (!isReady()) return EXIT_FAILURE;
    const int result = RUN_ALL_TESTS();
    const bool didRun = testing::UnitTest::GetInstance()->test_to_run_count() > 0;
    return didRun ? result : failure("no test ran\n");
}

} // namespace kelvinbar
