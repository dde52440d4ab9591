#pragma once

#include <QFunctionPointer>

namespace kelvinbar {

/// The function of a module of the program, which is loaded with that: beside the program as it is built, or
/// where it is installed. Null when it cannot be loaded, which is reported.
QFunctionPointer moduleFunction(const char* module, const char* function);

} // namespace kelvinbar
