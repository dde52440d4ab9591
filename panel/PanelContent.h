#pragma once

#include "base/HandlerList.h"
#include "panel/HiddenRows.h"
#include "panel/PanelContentState.h"
#include "panel/PanelControls.h"
#include "panel/RowSearch.h"
#include "panel/SensorList.h"
#include "panel/SensorRowMenu.h"

#include <QObject>
#include <QPointF>
#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <qqmlregistration.h>
#include <string>
#include <vector>

namespace kelvinbar {

class KelvinbarStore;

/// The root of what the views show: binds a store to QML.
///
/// The store changes one field after the other. This object observes them, and updates itself once all
/// changes of an event-loop turn have been made. While the panel is closed it ignores them, and is brought up
/// to date when it opens. Views contain no rules: what is shown and what a click does is decided here, in
/// SensorList and in PanelControls.
///
/// Pitfall: rows must not move between the two clicks of a double-click, or the second would hit another row.
/// After a press they therefore keep their places for the system's double-click interval; values and texts
/// follow the store regardless. Whatever moves rows by other means must go through `whenRowsMayMove`.
///
/// A refresh without readings scans anew each time. What the panel shows and says stays until a scan takes
/// longer than `longScan`, so that it does not flip with every refresh.
///
/// Main thread. Store and login item outlive it.
class PanelContent final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// For people; why there are no readings.
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(QString scanningText READ scanningText CONSTANT)
    /// What the mark of a pinned row says.
    Q_PROPERTY(QString pinnedText READ pinnedText CONSTANT)
    /// What can be done with a row that is not pinned, and with one that is.
    Q_PROPERTY(QString pinText READ pinText CONSTANT)
    Q_PROPERTY(QString unpinText READ unpinText CONSTANT)
    /// Above the first card: that no sensor is read. Else empty.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(kelvinbar::SensorList* sensors READ sensors CONSTANT)
    Q_PROPERTY(kelvinbar::PanelControls* controls READ controls CONSTANT)
    Q_PROPERTY(kelvinbar::HiddenRows* hidden READ hidden CONSTANT)
    Q_PROPERTY(kelvinbar::RowSearch* search READ search CONSTANT)
    Q_PROPERTY(kelvinbar::SensorRowMenu* rowMenu READ rowMenu CONSTANT)
    /// What dynamic mode gives beyond the height of the list, in points: for categories that share a card,
    /// and for readings without one. The footer takes it.
    Q_PROPERTY(double spareHeight READ spareHeight NOTIFY spareHeightChanged)
    /// The smallest height of the layout, in points. A lower window shows its upper part.
    Q_PROPERTY(double minimumHeight READ minimumHeight CONSTANT)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)

  public:
    enum State {
        Scanning = static_cast<int>(PanelContentState::scanning),
        Sections = static_cast<int>(PanelContentState::sections),
        NothingFound = static_cast<int>(PanelContentState::nothingFound),
        Unavailable = static_cast<int>(PanelContentState::unavailable),
    };
    Q_ENUM(State)

    static constexpr std::chrono::milliseconds longScan{400};

    /// `closeAction` closes the panel. `environment` is that of the controls. Store and login item outlive
    /// the content.
    PanelContent(KelvinbarStore& store, LoginItemManager& loginItem, const SensorListMetrics& metrics,
                 std::function<void()> closeAction,
                 PanelEnvironment environment = PanelEnvironment::ofThisProgram({}));

    [[nodiscard]] State state() const { return state_; }

    [[nodiscard]] QString scanningText() const;

    [[nodiscard]] QString pinnedText() const;
    [[nodiscard]] QString pinText() const;
    [[nodiscard]] QString unpinText() const;

    [[nodiscard]] QString notice() const { return notice_; }

    [[nodiscard]] QString statusMessage() const { return statusMessage_; }

    [[nodiscard]] SensorList* sensors() { return &sensors_; }

    [[nodiscard]] PanelControls* controls() { return &controls_; }

    [[nodiscard]] HiddenRows* hidden() { return &hidden_; }

    [[nodiscard]] RowSearch* search() { return &search_; }

    [[nodiscard]] SensorRowMenu* rowMenu() { return &rowMenu_; }

    [[nodiscard]] double spareHeight() const { return spareHeight_; }

    [[nodiscard]] static double minimumHeight();

    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    /// Call when the panel opens: updates everything and follows the store from then on. `reducedMotion`:
    /// whether the desktop asks for less motion.
    void panelWillOpen(bool reducedMotion);
    /// Call when the panel has closed. Ends the wait for a second click.
    void panelDidClose();

    /// Runs `change`, which moves rows on the screen: when the double-click interval has passed, or at once
    /// where no row is under the pointer. Of several changes during one interval only the last runs.
    void whenRowsMayMove(std::function<void()> change);

    /// Opens what the panel says about the program. Call while the panel is open.
    void showAbout() { emit aboutRequested(); }

    /// The close action may destroy the content.
    Q_INVOKABLE void close();

    /// Call when the list begins or ends to move by itself or under a finger. While it moves, rows keep
    /// their places in it.
    Q_INVOKABLE void setListMoving(bool isMoving);

    /// Call for each press on a row, with its place in the window. Makes it the current row, and keeps all
    /// rows in place until a second press can no longer follow.
    Q_INVOKABLE void pressRow(const QString& key, const QPointF& place);
    /// Call after both presses of a double-click. Pins or unpins the row; does nothing if the presses were on
    /// different rows.
    Q_INVOKABLE void doubleClickRow(const QString& key);
    /// Pins the reading to the menu bar, or unpins it. Unknown keys are ignored, here and below.
    Q_INVOKABLE void toggleRow(const QString& key);
    Q_INVOKABLE void hideRow(const QString& key);
    /// Name and value of the current row, to the clipboard. Does nothing without one.
    Q_INVOKABLE void copyCurrentRow() const;
    /// Hides the row whose button is pressed, however quickly presses follow each other. Ignores the second
    /// press of a double-click that began on another row.
    Q_INVOKABLE void pressHideButton(const QString& key, const QPointF& place);

  signals:
    /// The content is up to date and the panel is about to be shown.
    void opened();
    void aboutRequested();
    void stateChanged();
    void statusMessageChanged();
    void noticeChanged();
    void reducedMotionChanged();
    void spareHeightChanged();

  private:
    using RowAction = std::function<void(const SMCReading& reading)>;

    void observe();
    /// Schedules `update` for the end of this turn of the event loop.
    void postUpdate();
    void updateAsPosted();
    void update();
    void updateSensors();
    void updateTexts();
    void setState(State state);
    void updateNotice();
    [[nodiscard]] bool isSecondPressAt(const QPointF& place) const;
    /// Runs `action` on the reading with `key`, after updates that were delayed.
    void apply(const RowAction& action, const QString& key);
    void updateSpareHeight();
    void endDoubleClickWait();

    KelvinbarStore& store_;
    std::function<void()> closeAction_;
    SensorList sensors_;
    PanelControls controls_;
    HiddenRows hidden_;
    RowSearch search_;
    SensorRowMenu rowMenu_;
    State state_ = Scanning;
    QString statusMessage_;
    QString notice_;
    bool reducedMotion_ = false;
    bool isOpen_ = false;
    bool isUpdatePosted_ = false;
    bool areSensorsStale_ = true; ///< the list lags behind the store
    bool isListMoving_ = false;
    double spareHeight_ = 0;
    QString pressedKey_;
    QPointF pressedPlace_;          ///< in the window
    bool isSameRowPressed_ = false; ///< by the last two presses
    QTimer secondClickWait_;
    QTimer scanWait_;                       ///< runs while a scan is not shown yet
    bool isScanLong_ = false;               ///< it takes longer than `longScan`
    std::function<void()> changeAfterWait_; ///< see `whenRowsMayMove`
    std::vector<Registration> observers_;
};

} // namespace kelvinbar
