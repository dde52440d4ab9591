#pragma once

namespace kelvinbar {

/// Port: the system service that starts this program at login. Main thread.
class LoginItemService {
  public:
    virtual ~LoginItemService() = default;
    /// Whether a program can register itself on this system. Otherwise only the user can, in the system's
    /// settings.
    [[nodiscard]] virtual bool canRegister() const = 0;
    [[nodiscard]] virtual bool isRegistered() const = 0;
    /// Returns false on failure.
    virtual bool registerItem() = 0;
    /// Returns false on failure.
    virtual bool unregisterItem() = 0;
    virtual void openLoginItemsSettings() = 0;
    /// Plays the system's alert sound.
    virtual void beep() = 0;
};

/// Switches starting at login on and off. Keeps no state: the user can change the service's state at any
/// time. Main thread.
class LoginItemManager {
  public:
    /// `service` must outlive the object.
    explicit LoginItemManager(LoginItemService& service) : service_(service) {}

    [[nodiscard]] bool isEnabled() const;

    /// Registers or unregisters the program, or opens the system's settings if it cannot register itself.
    /// Returns whether it is registered afterwards. Plays the alert sound on failure.
    bool setEnabled(bool enabled);

    /// See LoginItemService.
    [[nodiscard]] bool canRegister() const { return service_.canRegister(); }

  private:
    LoginItemService& service_;
};

} // namespace kelvinbar
