#pragma once

#include <new>
#include <utility>

/// What happens when the system has no memory left. An allocation that fails throws std::bad_alloc, which
/// ends a pass over the sensors but not the program: whoever begins or ends a pass stops it here.
///
/// Pitfalls: a destructor that allocates ends the program, and so does an exception that leaves a thread or a
/// handler of the toolkit. Library functions that report errors as codes report a failed allocation as one,
/// too: a device then looks absent.
namespace kelvinbar {

/// Runs `work`. Returns false if it ended early for want of memory.
template <typename Work>
[[nodiscard]] bool hasMemoryFor(Work&& work) {
    try {
        std::forward<Work>(work)();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace kelvinbar
