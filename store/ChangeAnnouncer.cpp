#include "store/ChangeAnnouncer.h"

namespace kelvinbar {

void ChangeAnnouncer::menuBarReadingChanged(const MenuBarReadingChange& change) {
    if (change == lastMenuBarReading_) return;
    lastMenuBarReading_ = change; // before posting: an observer may cause the next change
    center_.post(kelvinbarMenuBarReadingChanged, change);
}

void ChangeAnnouncer::displayModeChanged(const DisplayModeChange& change) {
    if (lastDisplayMode_ == change) return;
    lastDisplayMode_ = change;
    center_.post(kelvinbarDisplayModeChanged, change);
}

} // namespace kelvinbar
