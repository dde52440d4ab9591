#pragma once

#include "desktop/linux/settings/PortalSettings.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariant>
#include <map>

namespace kelvinbar {

/// Whether the user has enabled reduced motion. Follows the setting of the desktop's settings portal. There
/// is a common setting, and older ones of single desktops; one of them is enough.
///
/// Limits: false until the portal has replied, and on desktops without a portal. Main thread.
class MotionPreference final : public QObject {
    Q_OBJECT

  public:
    explicit MotionPreference(const QDBusConnection& bus);

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus) { settings_.moveTo(bus); }

    [[nodiscard]] bool prefersReducedMotion() const;

  private:
    using Setting = PortalSettings::Setting;

    void update(const Setting& setting, const QVariant& value);

    PortalSettings settings_;
    std::map<Setting, bool> isReduced_; ///< only settings that the desktop has
};

} // namespace kelvinbar
