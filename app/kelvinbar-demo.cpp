// kelvinbar-demo: the same program with the readings of an invented machine.

#include "app/KelvinbarApp.h"
#include "machines/Platform.h"
#include "machines/demo/DemoMachine.h"

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(
        argc, argv,
        [](kelvinbar::Log& log) { return kelvinbar::makeDemoMachine(kelvinbar::makePlatform(log).clock); },
        "kelvinbar-demo");
}
