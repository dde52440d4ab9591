#pragma once

#include "base/HandlerList.h"
#include "panel/Acknowledgement.h"
#include "panel/ProgramFacts.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>
#include <qqmlregistration.h>

namespace kelvinbar {

class KelvinbarStore;
class LoginItemManager;

/// What the controls need besides the store. Tests replace it.
struct PanelEnvironment {
    QStringList programLines; ///< see programLines()
    QString author;
    QString contact;                               ///< an e-mail address; may be empty
    QString donationPage;                          ///< a web address; may be empty
    std::function<void(const QUrl& address)> open; ///< in the desktop's program for it
    std::function<void()> quit;

    /// With these facts, in the running desktop.
    [[nodiscard]] static PanelEnvironment ofThisProgram(const ProgramFacts& facts);
};

/// The controls of header and footer for QML: their state, texts and actions. Each `Q_INVOKABLE` is the
/// action of one button. Actions change the store; the properties follow when PanelContent updates. Main
/// thread.
class PanelControls final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    /// Whether readings are refreshed every second instead of every three.
    Q_PROPERTY(bool isFast READ isFast NOTIFY isFastChanged)
    Q_PROPERTY(QString fastToolTip READ fastToolTip CONSTANT)
    /// Whether the panel grows to show more readings, up to the height of the screen.
    Q_PROPERTY(bool isDynamic READ isDynamic NOTIFY isDynamicChanged)
    Q_PROPERTY(QString dynamicToolTip READ dynamicToolTip NOTIFY isDynamicChanged)
    /// In points, as the stepper shows it.
    Q_PROPERTY(double manualHeight READ manualHeight NOTIFY manualHeightChanged)
    /// Whether a step down or up has no effect.
    Q_PROPERTY(bool isLowest READ isLowest NOTIFY isLowestChanged)
    Q_PROPERTY(bool isGreatest READ isGreatest NOTIFY isGreatestChanged)
    /// That the snapshot is on the clipboard, and that the refresh that was asked for has ended.
    Q_PROPERTY(kelvinbar::Acknowledgement* copied READ copied CONSTANT)
    Q_PROPERTY(kelvinbar::Acknowledgement* refreshed READ refreshed CONSTANT)
    /// What that refresh has found.
    Q_PROPERTY(QString refreshAnswer READ refreshAnswer NOTIFY refreshAnswerChanged)
    /// Whether the login item is enabled, as the system reported when the panel opened.
    Q_PROPERTY(bool runAtLogin READ runAtLogin NOTIFY runAtLoginChanged)
    Q_PROPERTY(QString loginToolTip READ loginToolTip CONSTANT)
    /// Texts of the About popover; a view hides what is empty.
    Q_PROPERTY(QString about READ about CONSTANT)
    Q_PROPERTY(QStringList programLines READ programLines CONSTANT)
    Q_PROPERTY(QString author READ author CONSTANT)
    Q_PROPERTY(QString contact READ contact CONSTANT)
    Q_PROPERTY(QString donationPage READ donationPage CONSTANT)

  public:
    /// Store and login item outlive the object.
    PanelControls(KelvinbarStore& store, LoginItemManager& loginItem,
                  PanelEnvironment environment = PanelEnvironment::ofThisProgram({}));

    [[nodiscard]] bool isFast() const { return isFast_; }

    [[nodiscard]] static QString fastToolTip();

    [[nodiscard]] bool isDynamic() const { return isDynamic_; }

    [[nodiscard]] QString dynamicToolTip() const;

    [[nodiscard]] double manualHeight() const { return manualHeight_; }

    [[nodiscard]] bool isLowest() const { return isLowest_; }

    [[nodiscard]] bool isGreatest() const { return isGreatest_; }

    [[nodiscard]] Acknowledgement* copied() { return &copied_; }

    [[nodiscard]] Acknowledgement* refreshed() { return &refreshed_; }

    [[nodiscard]] QString refreshAnswer() const { return refreshAnswer_; }

    [[nodiscard]] bool runAtLogin() const { return runAtLogin_; }

    [[nodiscard]] QString loginToolTip() const;

    /// What the program is.
    [[nodiscard]] QString about() const;

    [[nodiscard]] QStringList programLines() const { return environment_.programLines; }

    [[nodiscard]] QString author() const { return environment_.author; }

    [[nodiscard]] QString contact() const { return environment_.contact; }

    [[nodiscard]] QString donationPage() const { return environment_.donationPage; }

    /// Call when the store may have changed: takes over its settings, and answers a refresh that has ended.
    void storeChanged();

    /// Call when the panel closes: a refresh that still runs is not answered.
    void forgetRefresh() { isRefreshAsked_ = false; }

    /// Call when the panel opens: asks the system for the state of the login item, which the user may have
    /// changed in the system's settings.
    void readLoginItem();

    Q_INVOKABLE void toggleFast();
    Q_INVOKABLE void toggleDynamic();
    Q_INVOKABLE void decreaseHeight();
    Q_INVOKABLE void resetHeight();
    Q_INVOKABLE void increaseHeight();
    /// Registers or unregisters the login item, and shows the state that results.
    Q_INVOKABLE void toggleRunAtLogin();
    Q_INVOKABLE void refresh();
    /// Copies a snapshot of the readings to the clipboard.
    Q_INVOKABLE void copy();
    /// Makes all hidden readings visible.
    Q_INVOKABLE void showAll();
    Q_INVOKABLE void quit() const;
    Q_INVOKABLE void openDonationPage();
    Q_INVOKABLE void writeToAuthor();

  signals:
    void isFastChanged();
    void isDynamicChanged();
    void manualHeightChanged();
    void isLowestChanged();
    void isGreatestChanged();
    /// A web page or a mail program has been opened, so the panel should close.
    void linkOpened();
    void runAtLoginChanged();
    void refreshAnswerChanged();

  private:
    void takeSettings();
    void setRunAtLogin(bool runAtLogin);
    void answerRefresh();
    /// Opens a web or mail address, then emits `linkOpened`.
    void open(const QString& address);

    KelvinbarStore& store_;
    LoginItemManager& loginItem_;
    PanelEnvironment environment_;
    bool isFast_ = false;
    bool isDynamic_ = false;
    double manualHeight_ = 0;
    bool isLowest_ = false;
    bool isGreatest_ = false;
    bool runAtLogin_ = false;
    Acknowledgement copied_;
    Acknowledgement refreshed_;
    QString refreshAnswer_;
    bool isRefreshAsked_ = false;
    bool areReadingsNew_ = false; ///< since the refresh was asked for
    Registration readingsObserver_;
};

} // namespace kelvinbar
