#pragma once

#include "base/HandlerList.h"
#include "panel/PanelContentState.h"
#include "panel/PanelControls.h"
#include "panel/SensorList.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <qqmlregistration.h>
#include <string>
#include <vector>

namespace kelvinbar {

class KelvinbarStore;

/// What the views show of the store. It follows the store once an event loop's turn, and only while the panel
/// is open. Main thread.
class PanelContent final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(QString scanningText READ scanningText CONSTANT)
    Q_PROPERTY(kelvinbar::SensorList* sensors READ sensors CONSTANT)
    Q_PROPERTY(kelvinbar::PanelControls* controls READ controls CONSTANT)
    /// The height that the content is laid out for at least, in points.
    Q_PROPERTY(double leastHeight READ leastHeight CONSTANT)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)

  public:
    enum State {
        Scanning = static_cast<int>(PanelContentState::scanning),
        Sections = static_cast<int>(PanelContentState::sections),
        NothingFound = static_cast<int>(PanelContentState::nothingFound),
        Unavailable = static_cast<int>(PanelContentState::unavailable),
    };
    Q_ENUM(State)

    /// `closeAction` closes the panel. Store and login item outlive the content.
    PanelContent(KelvinbarStore& store, LoginItemManager& loginItem, const SensorListMetrics& metrics,
                 std::function<void()> closeAction);

    [[nodiscard]] State state() const { return state_; }

    [[nodiscard]] QString scanningText() const;

    [[nodiscard]] QString statusMessage() const { return statusMessage_; }

    [[nodiscard]] SensorList* sensors() { return &sensors_; }

    [[nodiscard]] PanelControls* controls() { return &controls_; }

    [[nodiscard]] static double leastHeight();

    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    /// The panel opens: the content is that of now. `reducedMotion`: whether the desktop asks for less
    /// motion.
    void panelWillOpen(bool reducedMotion);
    void panelDidClose();

    /// Runs `change`, which moves the rows on the screen, now or when no second click can come any more; then
    /// the last such change counts.
    void whenRowsMayMove(std::function<void()> change);

    Q_INVOKABLE void close() { closeAction_(); }

    /// A press on a row: a second one may follow, and is to meet the same row.
    Q_INVOKABLE void pressRow(const QString& key);
    /// Both presses of a double-click are over; nothing happens when they were on two rows.
    Q_INVOKABLE void doubleClickRow(const QString& key);
    Q_INVOKABLE void toggleRow(const QString& key);
    Q_INVOKABLE void hideRow(const QString& key);
    /// A press on a row's button. The second click of a double-click, which meets the next row, hides none.
    Q_INVOKABLE void pressHideButton(const QString& key);

  signals:
    void opened();
    void stateChanged();
    void statusMessageChanged();
    void reducedMotionChanged();

  private:
    using RowAction = void (KelvinbarStore::*)(const SMCReading& reading);

    void observe();
    void postUpdate();
    void updateAsPosted();
    void update();
    void updateTexts();
    void apply(RowAction action, const QString& key);
    void secondClickMayNotComeAnyMore();

    KelvinbarStore& store_;
    std::function<void()> closeAction_;
    SensorList sensors_;
    PanelControls controls_;
    State state_ = Scanning;
    QString statusMessage_;
    bool reducedMotion_ = false;
    bool isOpen_ = false;
    bool isUpdatePosted_ = false;
    bool areSensorsStale_ = true;
    QString pressedKey_;
    bool isSameRowPressed_ = false; ///< as by the press before
    QTimer secondClickWait_;
    QElapsedTimer sinceHideButton_;
    std::function<void()> changeAfterWait_;
    std::vector<Registration> observers_;
};

} // namespace kelvinbar
