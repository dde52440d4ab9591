#pragma once

#include "desktop/qt/QtUserDefaults.h"

namespace kelvinbar {

/// Preferences in a file in the user's configuration folder. Processes that write different keys at the same
/// time do not lose each other's changes. A damaged file is copied to a backup before it is replaced.
/// Main thread.
///
/// Pitfall: writing waits for other processes, at most about a second.
class PreferencesFile final : public QtUserDefaults {
  public:
    /// Opens the file of the program `name` and logs its path. The log must outlive the object.
    PreferencesFile(const QString& name, Log& log);

  protected:
    void change(const std::function<void()>& make) override;

  private:
    void waitForDistinctTimeStamp();
    bool keepDamagedFileAside();

    bool isDamaged_ = false;
};

} // namespace kelvinbar
