#include "base/Log.h"
#include "desktop/Desktop.h"
#include "desktop/macos/ActiveInput.h"
#include "desktop/macos/CocoaApplication.h"
#include "desktop/macos/CocoaStatusBar.h"
#include "desktop/macos/CocoaTimers.h"
#include "desktop/macos/CocoaWindow.h"
#include "desktop/macos/ItemMenu.h"
#include "desktop/macos/LoginRefusal.h"
#include "desktop/macos/MacScreens.h"
#include "desktop/macos/MainAppLoginItem.h"
#include "desktop/macos/OpeningAgain.h"
#include "desktop/macos/RoundedFontFile.h"
#include "desktop/macos/SystemSymbolMask.h"
#include "desktop/macos/SystemUserDefaults.h"
#include "desktop/qt/TerminationSignals.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// Makes the domain of the preferences equal to the bundle identifier, "org.kelvinbar." and the name.
constexpr const char* preferencesOwner = "kelvinbar.org";

class AccessoryApplication final : public Application {
  public:
    void becomeAccessory() override {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        becomeAccessoryApplication();
    }

    void setReadingsInView(bool areInView) override { activity_ = areInView ? runOnTime() : nullptr; }

  private:
    std::shared_ptr<void> activity_;
};

/// The system's view behind a window, which is created for it if need be.
void* viewOf(QWindow& window) { return reinterpret_cast<void*>(window.winId()); }

std::string programFile() { return QCoreApplication::applicationFilePath().toStdString(); }

class MacDesktop final : public Desktop {
  public:
    MacDesktop(const std::string& name, Log& log)
        : log_(log)
        , userDefaults_(preferencesOwner, QString::fromStdString(name), log)
        , reopen_([this] { openAgain(handlers_.openPanel, [this] { return statusBar_.itemSight(); }, log_); })
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

    RepeatingTimers& timers() override { return timers_; }

    UserDefaults& userDefaults() override { return userDefaults_; }

    [[nodiscard]] std::string preferencesPlace() const override { return userDefaults_.path().toStdString(); }

    /// Each change is written at once.
    void flushUserDefaults(std::chrono::milliseconds /*limit*/) override {}

    [[nodiscard]] bool prefersReducedMotion() const override { return systemPrefersReducedMotion(); }

    [[nodiscard]] bool prefersMoreContrast() const override { return systemPrefersMoreContrast(); }

    [[nodiscard]] SystemSymbols systemSymbols() const override { return systemSymbolMask; }

    [[nodiscard]] std::string roundedFontFile() const override { return kelvinbar::roundedFontFile(); }

  private:
    ItemMenu::Requests menuRequests() {
        return {.isOnItem = [this](Point place) { return statusBar_.isOnItem(place); },
                .watchSecondaryPresses =
                    [](auto onPress) {
                        return watchPressesInOtherPrograms(MouseButtons::secondary, std::move(onPress));
                    },
                .popUp = [this](const auto& items,
                                auto onChosen) { statusBar_.popUpMenu(items, std::move(onChosen)); }};
    }

    ActiveInput::Requests inputRequests() {
        return {.activate = activateApplication,
                .hide = hideApplication,
                .watchPresses =
                    [](auto onPress) {
                        return watchPressesInOtherPrograms(MouseButtons::all, std::move(onPress));
                    },
                .isOnItem = [this](Point place) { return statusBar_.isOnItem(place); },
                .setItemHighlighted = [this](bool isOpen) { statusBar_.setItemHighlighted(isOpen); },
                .followActiveSpace = [](QWindow& window) { followActiveSpace(viewOf(window)); },
                .updateShadow = [](QWindow& window) { updateShadow(viewOf(window)); }};
    }

    Log& log_;
    DesktopHandlers handlers_;
    AccessoryApplication application_;
    CocoaStatusBar statusBar_{[this] { menu_.open(); }};
    ItemMenu menu_{menuRequests(), handlers_};
    MainAppLoginItem loginItem_{
        [this] { log_.write(LogCategory::login, LogLevel::error, whyLoginIsRefused(programFile())); }};
    ActiveInput popoverInput_{inputRequests()};
    MacScreens screens_;
    CocoaTimers timers_;
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

/// Another process cannot see whether the item is in the menu bar.
std::vector<FindingSection> desktopFindings(const std::string& /*name*/, Log& /*log*/) {
    return {{.title = "Menu bar",
             .findings = {{.subject = "status item",
                           .state = FindingState::note,
                           .found = "only the running program knows whether it can be seen",
                           .advice = "Open Kelvinbar again: its panel opens, and its log says why"}}}};
}

std::unique_ptr<Desktop> makeDesktop(const ProgramStart& start, const std::vector<std::string>& /*command*/,
                                     Log& log) {
    return std::make_unique<MacDesktop>(start.name, log);
}

} // namespace kelvinbar
