#pragma once

#include "base/Log.h"

#include <QtGlobal>
#include <string>

namespace kelvinbar {

/// While it lives, a toolkit that cannot go on, as without a display, ends the program with one sentence on
/// standard error and exit status 1 instead of aborting it. The toolkit's own messages are logged at level
/// info.
///
/// For the construction of the application object only: later, a fatal message is a defect and leaves a core
/// dump. Only one object at a time. Messages may come from any thread.
class DisplayFailure {
  public:
    /// Call before anything is changed in the arguments and in the environment, which the sentence names. The
    /// log must outlive the object.
    DisplayFailure(int argc, const char* const* argv, Log& log);
    DisplayFailure(const DisplayFailure&) = delete;
    DisplayFailure& operator=(const DisplayFailure&) = delete;
    ~DisplayFailure();

  private:
    QtMessageHandler earlier_;
};

/// Says which settings of the command line and of the environment led to no display, and what to do.
std::string displayFailureText(int argc, const char* const* argv);

} // namespace kelvinbar
