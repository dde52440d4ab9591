#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The part of Apple's Objective-C runtime that the program's Objective-C++ files need, for x86-64 Linux:
/// clang emits Apple's ABI for any target, and this runs it. Strict where the real one is lenient: it ends
/// the program with a message for a released object that is used, an object released too often, an unknown
/// selector, an object that is autoreleased without a pool, and pools that end in another order than they
/// began.
///
/// Limits: no categories, exceptions, forwarding, `+load` or `+initialize`; one thread at a time.
namespace kelvinbar::objc {

/// Prints the message and aborts.
[[noreturn]] void fail(const std::string& message);

/// From now on, a message to that class, a subclass or their objects from another thread than the caller's
/// ends the program.
void restrictToThisThread(const std::string& className);

/// The classes of the objects that have not been released, sorted. A block is "block".
[[nodiscard]] std::vector<std::string> liveObjects();

/// Returns the memory of released objects, which until then is kept to detect their use.
void forgetReleasedObjects();

/// Calls a block of one argument, both of which may disappear during the call: nothing is retained.
void callBlock(void* block, void* argument);

} // namespace kelvinbar::objc
