#pragma once

namespace kelvinbar {

/// Runs the tests with a toolkit on a screen that nobody sees, in a home folder of their own, under a locale
/// whose numbers have a decimal comma. `isReady` says whether everything else that they need is there.
/// `platform` is the toolkit's, with its options. The exit status.
int runQtTests(int& argc, char** argv, bool (*isReady)(), const char* platform = "offscreen");

} // namespace kelvinbar
