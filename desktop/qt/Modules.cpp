#include "desktop/qt/Modules.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <array>
#include <string>

namespace kelvinbar {

namespace {

/// Folders of modules, relative to the program's: installed, and in the build folder. The program's folder is
/// determined below because the application object, which knows it, may not exist yet.
constexpr std::array moduleFolders{KELVINBAR_MODULE_FOLDER, "../lib/kelvinbar"};

QDir programFolder() { return QFileInfo(QFileInfo("/proc/self/exe").symLinkTarget()).dir(); }

} // namespace

QFunctionPointer moduleFunction(const char* module, const char* function, Log& log, LogCategory category) {
    QString error;
    for (const char* const folder : moduleFolders) {
        const QString file = programFolder().filePath(QString("%1/lib%2.so").arg(folder, module));
        if (!QFileInfo::exists(file)) continue;
        QLibrary library(QDir::cleanPath(file));
        if (const QFunctionPointer found = library.resolve(function)) {
            log.write(category, LogLevel::debug,
                      [&] { return library.fileName().toStdString() + " is loaded"; });
            return found;
        }
        error = library.errorString();
    }
    if (error.isEmpty()) error = QString("lib%1.so is missing").arg(module);
    log.write(category, LogLevel::error,
              [&] { return "a part of the program cannot be loaded: " + error.toStdString(); });
    return nullptr;
}

} // namespace kelvinbar
