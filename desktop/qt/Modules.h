#pragma once

#include "base/Log.h"

#include <QFunctionPointer>

namespace kelvinbar {

/// Loads a module of the program, from the build folder or from where it is installed, and returns one of its
/// functions. Null on failure, which is logged as an error. Does not need the application object. Modules are
/// never unloaded.
QFunctionPointer moduleFunction(const char* module, const char* function, Log& log, LogCategory category);

} // namespace kelvinbar
