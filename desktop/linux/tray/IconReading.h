#pragma once

#include "shell/StatusMenuItems.h"

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

namespace kelvinbar {

/// Chooses which pinned reading is drawn into the icon: the first that has a number, until `goOn` is called.
/// Plain C++; any thread.
class IconReading {
  public:
    /// The text to draw, such as "48°". Empty if no reading has a number.
    [[nodiscard]] QString text(const std::vector<PinnedReading>& pinned) const;

    /// Chooses the next reading that has a number, and the first again after the last.
    void goOn(const std::vector<PinnedReading>& pinned);

    /// Chooses the first again.
    void startOver() { key_.clear(); }

    /// How many readings could be drawn.
    [[nodiscard]] static std::size_t choices(const std::vector<PinnedReading>& pinned);

  private:
    std::string key_; ///< of the chosen reading; that of no reading for the first
};

} // namespace kelvinbar
