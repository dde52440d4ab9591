// kelvinbar: shows the readings of this machine in the menu bar or tray.

#include "app/KelvinbarApp.h"
#include "machines/Platform.h"

#include <string_view>

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(
        argc, argv, {.name = "kelvinbar", .machineNames = {}, .usualMachineName = {}, .offersDoctor = true},
        [](std::string_view /*name*/, kelvinbar::Log& log) { return kelvinbar::makePlatform(log); });
}
