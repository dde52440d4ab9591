#pragma once

/// To be called before anything is printed.
void useHostStreams();
