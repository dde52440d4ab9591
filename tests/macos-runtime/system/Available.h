// Included before everything in the program's Objective-C++ files: clang knows no version of macOS here, so
// the fake decides which one runs.
#pragma once

/// `requirement` is a text such as "macOS 13.0".
extern "C" bool fakeSystemIsAtLeast(const char* requirement);

#define available(platform, ...) selector(init) && fakeSystemIsAtLeast(#platform)
