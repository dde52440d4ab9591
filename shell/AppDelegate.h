#pragma once

#include "base/NotificationCenter.h"
#include "shell/Geometry.h"
#include "shell/ShellPorts.h"
#include "store/KelvinbarStore.h"

#include <array>
#include <memory>
#include <string>

namespace kelvinbar {

/// The program between its model and the desktop: the item in the status bar, the panel that drops down from
/// it, and the timer that drives all sampling. Main thread only.
class AppDelegate {
  public:
    /// Makes the store, whose first refresh begins with that.
    AppDelegate(const ShellPorts& ports, const StorePorts& storePorts);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() = default;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    /// The status item's click: opens the panel, or closes it.
    void togglePopover();

    /// Opens the panel unless it is open: what a second start of the program does.
    void openPopover();

    [[nodiscard]] KelvinbarStore& store() { return store_; }

  private:
    void configureStatusItem();
    void installRefreshTimer();
    void tick();
    void refreshWhatIsShown();
    void updateStatusItemTitle(const std::string& title, const std::string& tooltip);
    static void applyStatusTitle(const std::string& title, StatusItemButton& button);
    [[nodiscard]] StatusItemButton* statusButton();

    void observeStore();
    void samplingRateChanged();
    void menuBarReadingChanged(const MenuBarReadingChange& change);
    void popoverSizeMayHaveChanged();

    void configurePopover();
    void ensurePopoverContentController();
    [[nodiscard]] std::unique_ptr<PopoverContent> makePopoverContent();
    [[nodiscard]] Size calculatedPopoverSize();
    [[nodiscard]] Rect visibleFrameForPopover();
    void applyPopoverSize(Size size);
    void animatePopoverOpen(Size size);

    void popoverDidClose() {} // the content and the state of its views are kept for the next opening

    ShellPorts ports_;
    KelvinbarStore store_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<RepeatingTimer> refreshTimer_;
    std::string lastStatusTitle_;
    std::string lastStatusToolTip_;
    std::array<Registration, 4> observers_;

    /// Lets a callback find out on the main thread whether the delegate is still there.
    std::shared_ptr<AppDelegate*> self_ = std::make_shared<AppDelegate*>(this);
};

} // namespace kelvinbar
