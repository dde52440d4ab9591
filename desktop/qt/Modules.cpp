#include "desktop/qt/Modules.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <array>
#include <iostream>

namespace kelvinbar {

namespace {

/// Where an installed program and one in its build folder have them, seen from the program's folder. The application object, which knows it, may not be there yet.
constexpr std::array moduleFolders{KELVINBAR_MODULE_FOLDER, "../lib/kelvinbar"};

QDir programFolder() { return QFileInfo(QFileInfo("/proc/self/exe").symLinkTarget()).dir(); }

} // namespace

QFunctionPointer moduleFunction(const char* module, const char* function) {
    QString error;
    for (const char* const folder : moduleFolders) {
        const QString file = programFolder().filePath(QString("%1/lib%2.so").arg(folder, module));
        if (!QFileInfo::exists(file)) continue;
        QLibrary library(QDir::cleanPath(file));
        if (const QFunctionPointer found = library.resolve(function)) return found;
        error = library.errorString();
    }
    if (error.isEmpty()) error = QString("lib%1.so is missing").arg(module);
    std::cerr << "kelvinbar: a part of the program cannot be loaded: " + error.toStdString() + "\n";
    return nullptr;
}

} // namespace kelvinbar
