#pragma once

/// What the toolkit leaves to the program in a window, which is given by its view, an NSView. Main thread.
namespace kelvinbar {

/// Lets the window appear in the active space, also over another program's full-screen window, and only as
/// long as it is needed there. Call before it is shown.
void followActiveSpace(void* view);

/// Computes the shadow anew, from the size of the window and what is transparent in it.
void updateShadow(void* view);

} // namespace kelvinbar
