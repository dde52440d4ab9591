// kelvinbar-demo: the same program over a made-up machine.

#include "platform/Platform.h"
#include "platform/demo/DemoMachine.h"
#include "shell/KelvinbarApp.h"

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(
        argc, argv, kelvinbar::makeDemoMachine(kelvinbar::makePlatform().clock), "kelvinbar-demo");
}
