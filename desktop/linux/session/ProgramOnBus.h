#pragma once

#include "base/HandlerList.h"
#include "desktop/linux/session/BusObject.h"
#include "desktop/linux/session/OfferedReading.h"
#include "desktop/qt/QtMainQueue.h"
#include "process/CostMeter.h"
#include "store/KelvinbarStore.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <array>
#include <chrono>
#include <functional>
#include <optional>

namespace kelvinbar {

/// The program as other programs of the user see it on the session bus: readings, pins and cost to read,
/// Refresh and OpenPanel to call. org.kelvinbar.Kelvinbar1.xml, of which the adaptor is made, says what each
/// of them means.
///
/// Properties are made when they are asked for, and reading them reads no sensor. A signal is sent when a
/// pass has ended, which nothing causes here but Refresh. A bus does not tell its senders whether anybody
/// listens, so the signal is sent in any case: one small message for each pass.
///
/// Main thread.
class ProgramOnBus final : public BusObject {
    Q_OBJECT
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(kelvinbar::OfferedReadings Readings READ readings)
    Q_PROPERTY(QStringList Pinned READ pinned)
    Q_PROPERTY(qulonglong LastUpdated READ lastUpdated)
    Q_PROPERTY(QVariantMap Cost READ cost)

  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    static constexpr auto path = "/org/kelvinbar/Kelvinbar1";

    /// Calls that are answered at once. An answer can have many readings, so fewer than of other objects.
    static constexpr double burst = 50;
    static constexpr double rate = 20; ///< calls a second that are answered in the long run

    /// The store must outlive the object. `openPanel` is called from the event loop, after the caller has its
    /// reply.
    ProgramOnBus(const QDBusConnection& bus, KelvinbarStore& store, std::function<void()> openPanel,
                 Clock now = std::chrono::steady_clock::now);

    [[nodiscard]] QString title() const;
    [[nodiscard]] OfferedReadings readings() const;
    [[nodiscard]] QStringList pinned() const;
    [[nodiscard]] qulonglong lastUpdated() const;
    [[nodiscard]] QVariantMap cost() const;

    /// Starts a pass over all sensors. Returns false, and does nothing, if that was done less than a sampling
    /// period ago.
    bool Refresh();
    void OpenPanel();

  signals:
    void Refreshed(qulonglong lastUpdated);

  private:
    void announceSoon();

    KelvinbarStore& store_;
    std::function<void()> openPanel_;
    Clock now_;
    CostMeter costMeter_;
    std::optional<std::chrono::steady_clock::time_point> lastRefresh_;
    bool isAnnouncementPosted_ = false;
    QtMainQueue queue_;
    std::array<Registration, 3> observers_;
};

} // namespace kelvinbar
