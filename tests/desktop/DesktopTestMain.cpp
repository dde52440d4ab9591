// Runs the tests on the session bus of the environment.

#include "tests/QtTests.h"
#include "tests/desktop/ChildProcess.h"
#include "tests/desktop/OwnBus.h"

#include <QDBusConnection>
#include <cstdio>

namespace {

bool isOnSessionBus() {
    kelvinbar::OwnBus::chooseAddress();
    if (QDBusConnection::sessionBus().isConnected()) return true;
    std::fputs("there is no session bus\n", stderr);
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (const auto status = kelvinbar::playedPart(argc, argv)) return *status;
    return kelvinbar::runQtTests(argc, argv, isOnSessionBus);
}
