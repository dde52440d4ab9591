// Compares the panel's states with their references, or draws them.
//
// usage: kelvinbar_panel_pictures [FOLDER]

#include "tests/QtTests.h"
#include "tests/panel/PanelScreens.h"
#include "tests/panel/pictures/PanelPictures.h"

#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

int drawAll(int& argc, char** argv) {
    const QString folder = argv[1];
    qputenv("QT_QPA_PLATFORM", kelvinbar::screens::platform);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    for (const auto& [name, draw] : kelvinbar::panelPictures()) {
        const QString file = QString("%1/%2.png").arg(folder, name);
        if (!draw().save(file)) return EXIT_FAILURE;
        std::puts(qPrintable(file));
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && !std::string_view(argv[1]).starts_with("--")) return drawAll(argc, argv);
    return kelvinbar::runQtTests(argc, argv, [] { return true; }, kelvinbar::screens::platform);
}
