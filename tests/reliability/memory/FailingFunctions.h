#pragma once

namespace kelvinbar::fakes {

/// Whoever links FailingFunctions.cpp defines this function, which the C library's malloc, calloc and realloc
/// then ask before each allocation: whether it is to fail. It must not allocate. Any thread.
bool isAllocationToFail();

} // namespace kelvinbar::fakes
