#pragma once

#include "catalogue/NotificationNames.h"

namespace kelvinbar {

/// Posts all notifications of the store, and remembers what it posted so that observers are called only for
/// real changes. Main thread.
class ChangeAnnouncer {
  public:
    /// `center` must outlive the object.
    explicit ChangeAnnouncer(const NotificationCenter& center) : center_(center) {}

    void samplingRateChanged(SMCSamplingRate rate) { center_.post(kelvinbarSamplingRateChanged, rate); }

    /// Posts unless `change` equals the last one. Before the first, both texts count as empty.
    void menuBarReadingChanged(const MenuBarReadingChange& change);

    /// Posts unless `change` equals the last one. The first is always posted.
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
