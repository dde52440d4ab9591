// Runs the tests on the X server of the environment.

#include "desktop/linux/window/x11/X11Connection.h"
#include "tests/QtTests.h"

#include <cstdio>

namespace {

/// A server without clients would begin anew between two tests, so a connection stays.
bool hasDisplay() {
    static const kelvinbar::X11Connection connection = kelvinbar::connectToX11();
    if (connection == nullptr) std::fputs("there is no X server\n", stderr);
    return connection != nullptr;
}

} // namespace

int main(int argc, char** argv) { return kelvinbar::runQtTests(argc, argv, hasDisplay); }
