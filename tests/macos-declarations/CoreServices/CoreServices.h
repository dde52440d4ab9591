// What the program uses of Core Services, declared for checks on machines without it. On a Mac, the system's
// own headers are used.
#pragma once

enum { kCoreEventClass = 0x61657674 }; // 'aevt'

enum { kAEReopenApplication = 0x72617070 }; // 'rapp'
