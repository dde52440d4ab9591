#include "tests/QtTests.h"

int main(int argc, char** argv) {
    return kelvinbar::runQtTests(argc, argv, [] { return true; });
}
