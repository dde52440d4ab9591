#pragma once

#include "process/StandardStreams.h"

#include <string>
#include <string_view>

namespace kelvinbar {

/// The text that draws `page`, lines that end with a line feed, over the page before, without the flicker of
/// an empty screen. Lines that are too long for the terminal are cut, and lines that are too many are
/// counted in the last one: a terminal that wraps or scrolls would draw the next page at another place. The
/// cursor ends below the page.
///
/// Limits: every character counts as one column. Pure function; any thread.
std::string pageInPlace(std::string_view page, const TerminalSize& size);

} // namespace kelvinbar
