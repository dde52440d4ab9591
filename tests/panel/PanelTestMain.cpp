#include "tests/QtTests.h"
#include "tests/panel/PanelScreens.h"

int main(int argc, char** argv) {
    return kelvinbar::runQtTests(argc, argv, [] { return true; }, kelvinbar::screens::platform);
}
