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

/// Starts the program at login, or stops doing so. Keeps no state of its own: the service knows. Main thread.
class LoginItemManager {
  public:
    LoginItemManager() = delete;

    /// The service of the machine that the program runs on; outlives the program's use of this class.
    static void useService(LoginItemService& service);

    [[nodiscard]] static bool isEnabled();

    /// Makes it so, or opens the system's settings where the program cannot. Returns whether it is enabled
    /// afterwards; a failure only sounds.
    static bool setEnabled(bool enabled);

    /// Whether the system lets the program register itself.
    [[nodiscard]] static bool canRegister();
};

} // namespace kelvinbar
