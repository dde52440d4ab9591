// What the C library of a Mac declares and that of this machine does not.
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

int sysctlbyname(const char* name, void* value, size_t* size, void* newValue, size_t newSize);

#ifdef __cplusplus
}
#endif
