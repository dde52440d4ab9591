#pragma once

#include "base/Log.h"

#include <QFunctionPointer>

namespace kelvinbar {

/// The function of a module of the program, which is loaded with that: beside the program as it is built, or
/// where it is installed. Null when it cannot be loaded, which is logged as an error.
QFunctionPointer moduleFunction(const char* module, const char* function, Log& log, LogCategory category);

} // namespace kelvinbar
