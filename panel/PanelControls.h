#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>
#include <qqmlregistration.h>

namespace kelvinbar {

class KelvinbarStore;
class LoginItemManager;

/// What the controls use besides the store: the values of the build, and the desktop.
struct PanelEnvironment {
    QString author;
    QString contact;      ///< an e-mail address; empty for none
    QString donationPage; ///< empty for none
    std::function<void(const QUrl& address)> open;
    std::function<void()> quit;

    [[nodiscard]] static PanelEnvironment ofThisProgram();
};

/// The header's and footer's controls: what they show of the store and the login item, and what they do.
/// Main thread.
class PanelControls final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(bool isFast READ isFast NOTIFY changed)
    Q_PROPERTY(QString fastToolTip READ fastToolTip CONSTANT)
    Q_PROPERTY(bool isDynamic READ isDynamic NOTIFY changed)
    Q_PROPERTY(QString dynamicToolTip READ dynamicToolTip NOTIFY changed)
    Q_PROPERTY(double manualHeight READ manualHeight NOTIFY changed)
    Q_PROPERTY(bool runAtLogin READ runAtLogin NOTIFY runAtLoginChanged)
    Q_PROPERTY(QString loginToolTip READ loginToolTip CONSTANT)
    Q_PROPERTY(QString author READ author CONSTANT)
    Q_PROPERTY(QString contact READ contact CONSTANT)
    Q_PROPERTY(QString donationPage READ donationPage CONSTANT)

  public:
    /// The store and the login item outlive the object.
    PanelControls(KelvinbarStore& store, LoginItemManager& loginItem,
                  PanelEnvironment environment = PanelEnvironment::ofThisProgram());

    [[nodiscard]] bool isFast() const;
    [[nodiscard]] static QString fastToolTip();
    [[nodiscard]] bool isDynamic() const;
    [[nodiscard]] QString dynamicToolTip() const;
    [[nodiscard]] double manualHeight() const;

    [[nodiscard]] bool runAtLogin() const { return runAtLogin_; }

    [[nodiscard]] QString loginToolTip() const;

    [[nodiscard]] QString author() const { return environment_.author; }

    [[nodiscard]] QString contact() const { return environment_.contact; }

    [[nodiscard]] QString donationPage() const { return environment_.donationPage; }

    /// Something that is shown of the store may have changed.
    void storeChanged() { emit changed(); }

    /// The panel is shown: asks the system whether the program starts at login.
    void readLoginItem();

    Q_INVOKABLE void toggleFast();
    Q_INVOKABLE void toggleDynamic();
    Q_INVOKABLE void decreaseHeight();
    Q_INVOKABLE void resetHeight();
    Q_INVOKABLE void increaseHeight();
    Q_INVOKABLE void toggleRunAtLogin();
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void copy();
    Q_INVOKABLE void showAll();
    Q_INVOKABLE void quit();
    Q_INVOKABLE void openDonationPage();
    Q_INVOKABLE void writeToAuthor();

  signals:
    void changed();
    /// Another program has been asked to show something.
    void linkOpened();
    void runAtLoginChanged();

  private:
    void setRunAtLogin(bool runAtLogin);
    void open(const QString& address);

    KelvinbarStore& store_;
    LoginItemManager& loginItem_;
    PanelEnvironment environment_;
    bool runAtLogin_ = false;
};

} // namespace kelvinbar
