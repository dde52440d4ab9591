#pragma once

#include "base/Value.h"

#include <optional>
#include <string>

namespace kelvinbar {

/// What the desktop program has stored for the user, read again when it has been stored anew. Main thread.
class FollowedPreferences {
  public:
    /// As `storedPreferenceLists`.
    std::optional<Dictionary> read();

    /// The preferences if they have been stored since the last time, or no value.
    std::optional<Dictionary> changed();

  private:
    std::string stamp_;
};

} // namespace kelvinbar
