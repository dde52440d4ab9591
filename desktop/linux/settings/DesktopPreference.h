#pragma once

#include "desktop/linux/settings/PortalSettings.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariant>
#include <map>
#include <span>

namespace kelvinbar {

/// A setting, and how to tell from its value that it expresses a preference.
struct PreferenceSetting {
    const char* group;
    const char* name;
    bool (*isExpressedBy)(const QVariant& value);
};

/// For reduced motion: a common setting, and older ones of single desktops.
std::span<const PreferenceSetting> reducedMotionSettings();
/// The same for more contrast.
std::span<const PreferenceSetting> moreContrastSettings();

/// Whether the user has expressed a preference in one of several settings, each of which is enough. Follows
/// them in the desktop's settings portal.
///
/// Limits: false until the portal has replied, and on desktops without a portal. Main thread.
class DesktopPreference final : public QObject {
    Q_OBJECT

  public:
    /// `settings` outlives the object.
    DesktopPreference(const QDBusConnection& bus, std::span<const PreferenceSetting> settings);

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus) { portal_.moveTo(bus); }

    [[nodiscard]] bool isExpressed() const;

  private:
    using Setting = PortalSettings::Setting;

    void update(const Setting& setting, const QVariant& value);

    std::span<const PreferenceSetting> settings_;
    PortalSettings portal_;
    std::map<Setting, bool> isExpressedBy_; ///< only settings that the desktop has
};

} // namespace kelvinbar
