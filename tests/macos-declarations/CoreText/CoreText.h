// What the program uses of Core Text, declared for checks on machines without it. On a Mac, the system's own
// headers are used.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

extern const CFStringRef kCTFontURLAttribute;

#ifdef __cplusplus
}
#endif
