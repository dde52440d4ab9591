// kelvinbar: shows the readings of this machine in the menu bar or tray.

#include "app/KelvinbarApp.h"
#include "machines/Platform.h"

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(argc, argv, kelvinbar::makePlatform, "kelvinbar");
}
