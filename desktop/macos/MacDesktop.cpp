#include "desktop/Desktop.h"
#include "desktop/macos/ActiveInput.h"
#include "desktop/macos/CocoaApplication.h"
#include "desktop/macos/CocoaStatusBar.h"
#include "desktop/macos/MainAppLoginItem.h"
#include "desktop/macos/SystemSymbolMask.h"
#include "desktop/macos/SystemUserDefaults.h"
#include "desktop/qt/QtScreens.h"
#include "desktop/qt/TerminationSignals.h"

#include <QGuiApplication>
#include <cstdlib>
#include <utility>

namespace kelvinbar {

namespace {

/// Makes the domain of the preferences equal to the bundle identifier, "org.kelvinbar." and the name.
constexpr const char* organization = "kelvinbar.org";

class AccessoryApplication final : public Application {
  public:
    void becomeAccessory() override {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        becomeAccessoryApplication();
    }
};

class MacDesktop final : public Desktop {
  public:
    MacDesktop(const std::string& name, Log& log)
        : userDefaults_(organization, QString::fromStdString(name), log)
        , reopen_([this] {
            if (handlers_.openPanel) handlers_.openPanel();
        })
        , signals_([this] {
            if (handlers_.quit) handlers_.quit();
        }) {}

    std::optional<int> handOverToRunningInstance() override {
        return handOverToRunningApplication() ? std::optional(EXIT_SUCCESS) : std::nullopt;
    }

    void setHandlers(DesktopHandlers handlers) override { handlers_ = std::move(handlers); }

    Application& application() override { return application_; }

    StatusBar& statusBar() override { return statusBar_; }

    LoginItemService& loginItemService() override { return loginItem_; }

    PopoverInput& popoverInput() override { return popoverInput_; }

    QtScreens& screens() override { return screens_; }

    UserDefaults& userDefaults() override { return userDefaults_; }

    /// Each change is written at once.
    void flushUserDefaults(std::chrono::milliseconds /*limit*/) override {}

    [[nodiscard]] bool prefersReducedMotion() const override { return systemPrefersReducedMotion(); }

    [[nodiscard]] SystemSymbols systemSymbols() const override { return systemSymbolMask; }

  private:
    DesktopHandlers handlers_;
    AccessoryApplication application_;
    CocoaStatusBar statusBar_;
    MainAppLoginItem loginItem_;
    ActiveInput popoverInput_{{.activate = activateApplication,
                               .hide = hideApplication,
                               .watchPresses = watchPressesInOtherPrograms}};
    QtScreens screens_;
    SystemUserDefaults userDefaults_;
    ReopenObserver reopen_;
    TerminationSignals signals_;
};

} // namespace

std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& /*log*/) {
    // Otherwise Qt activates the program when it starts, although it has no window.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    return std::make_unique<QGuiApplication>(argc, argv);
}

/// Every start has a display here, and the system itself finds a running instance.
std::optional<int> handOverWithoutDisplay(const ProgramStart& /*start*/, Log& /*log*/) {
    return std::nullopt;
}

std::unique_ptr<Desktop> makeDesktop(const ProgramStart& start, const std::vector<std::string>& /*command*/,
                                     Log& log) {
    return std::make_unique<MacDesktop>(start.name, log);
}

} // namespace kelvinbar
