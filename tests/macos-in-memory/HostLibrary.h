#pragma once

/// Call before anything is printed.
void useHostStreams();
