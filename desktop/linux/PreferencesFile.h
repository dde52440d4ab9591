#pragma once

#include "desktop/qt/QtUserDefaults.h"

namespace kelvinbar {

/// Preferences in a file of the user's. Another process that writes other keys at the same time loses none of
/// them, and a damaged file is kept aside before a new one is written.
class PreferencesFile final : public QtUserDefaults {
  public:
    /// The file of the program `name`. Logs where it is.
    PreferencesFile(const QString& name, Log& log);

  protected:
    void change(const std::function<void()>& make) override;

  private:
    void waitForAnotherTimeStamp();
    bool keepDamagedFileAside();

    bool isDamaged_ = false;
};

} // namespace kelvinbar
