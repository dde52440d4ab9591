// kelvinbar: the readings of this machine in its menu bar or tray.

#include "platform/Platform.h"
#include "shell/KelvinbarApp.h"

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(argc, argv, kelvinbar::makePlatform(), "kelvinbar");
}
