#pragma once

#include "catalogue/NotificationNames.h"

namespace kelvinbar {

/// The one place that posts the store's notifications. It remembers what was posted last, so that the shell
/// hears of real changes only. Main thread.
class ChangeAnnouncer {
  public:
    /// `center` outlives the object.
    explicit ChangeAnnouncer(const NotificationCenter& center) : center_(center) {}

    void samplingRateChanged(SMCSamplingRate rate) { center_.post(kelvinbarSamplingRateChanged, rate); }

    /// Posts unless `change` equals the last one; texts count as empty before the first.
    void menuBarReadingChanged(const MenuBarReadingChange& change);

    /// Posts unless `change` equals the last one; the first is always posted.
    void displayModeChanged(const DisplayModeChange& change);

    /// Always posts, so that the panel can apply an unchanged size again.
    void manualSizeChanged(const ManualSizeChange& change) {
        center_.post(kelvinbarManualSizeChanged, change);
    }

  private:
    const NotificationCenter& center_;
    MenuBarReadingChange lastMenuBarReading_{.title = "", .toolTip = ""};
    std::optional<DisplayModeChange> lastDisplayMode_;
};

} // namespace kelvinbar
