#pragma once

namespace kelvinbar {

/// Port: the system's service that starts programs at login, for this program. Main thread.
class LoginItemService {
  public:
    virtual ~LoginItemService() = default;
    /// Whether the system lets a program register itself; where it does not, the user is sent to its
    /// settings.
    [[nodiscard]] virtual bool canRegister() const = 0;
    [[nodiscard]] virtual bool isRegistered() const = 0;
    /// False when it fails.
    virtual bool registerItem() = 0;
    /// False when it fails.
    virtual bool unregisterItem() = 0;
    virtual void openLoginItemsSettings() = 0;
    /// The system's alert sound.
    virtual void beep() = 0;
};

/// Starts the program at login, or stops doing so. The state is the service's alone. Main thread.
class LoginItemManager {
  public:
    /// `service` outlives the object.
    explicit LoginItemManager(LoginItemService& service) : service_(service) {}

    [[nodiscard]] bool isEnabled() const;

    /// Registers or unregisters the program, or opens the system's settings where it cannot register itself.
    /// Returns whether it is registered afterwards. A failure sounds the alert.
    bool setEnabled(bool enabled);

    /// Whether the system lets the program register itself.
    [[nodiscard]] bool canRegister() const { return service_.canRegister(); }

  private:
    LoginItemService& service_;
};

} // namespace kelvinbar
