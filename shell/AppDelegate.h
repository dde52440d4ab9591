#pragma once

#include "base/NotificationCenter.h"
#include "shell/Geometry.h"
#include "shell/ShellPorts.h"
#include "store/KelvinbarStore.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// The program as a user meets it, on any desktop: a status item with the pinned readings, a panel that drops
/// down from it, and the timer that drives all sampling. The desktop is reached through the ports in
/// ShellPorts.h, so that everything here is tested without one.
///
/// Sampling follows what is visible. While the panel is open each tick refreshes everything; while it is
/// closed only pinned readings are read, and without pins nothing is.
///
/// Limits: one status item, one panel, one timer. Pitfalls: a tick is posted to the main queue and may arrive
/// after the timer has ended, and the desktop may close the panel on its own.
namespace kelvinbar {

/// Connects the store to the desktop. Callbacks that outlive the delegate do nothing; one that releases it
/// keeps it alive until the outermost call has returned. Main thread only.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
    struct Token {
        explicit Token() = default;
    };

  public:
    /// Creates the store and thereby starts its first refresh. Shows nothing yet.
    static std::shared_ptr<AppDelegate> create(const ShellPorts& ports, const StorePorts& storePorts);

    /// For `create` alone.
    AppDelegate(Token token, const ShellPorts& ports, const StorePorts& storePorts);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() = default;

    /// Adds the status item, creates the panel and starts the timer. Call once the event loop can run.
    void applicationDidFinishLaunching();

    /// Undoes the above and shuts the store down. Call once, before the event loop ends.
    void applicationWillTerminate();

    /// Opens the panel, or closes it if it is open. The action of the status item.
    void togglePopover();

    /// Opens the panel unless it is open. Called when the program is started a second time.
    void openPopover();

    [[nodiscard]] KelvinbarStore& store() { return *store_; }

  private:
    /// A callback that does nothing if the delegate is gone, and keeps it alive until it returns. `action` is
    /// called with the delegate and the arguments.
    template <typename Action>
    auto ifAlive(Action action) {
        return [self = weak_from_this(), action](const auto&... arguments) {
            if (const auto delegate = self.lock()) std::invoke(action, *delegate, arguments...);
        };
    }

    void configureStatusItem();
    void installRefreshTimer();
    void tick();
    void tickAsPosted();
    void refreshWhatIsShown();
    void noteWhatIsInView(const std::vector<std::string>& menuBarKeys);
    void setReadingsInView(bool areInView);
    void updateStatusItemTitle(const std::string& title, const std::string& tooltip);
    static void applyStatusTitle(const std::string& title, StatusItemButton& button);
    [[nodiscard]] StatusItemButton* statusButton();

    void observeStore();
    void samplingRateChanged();
    void menuBarReadingChanged(const MenuBarReadingChange& change);
    void popoverSizeMayHaveChanged();
    void screensChanged();

    void configurePopover();
    void ensurePopoverContentController();
    [[nodiscard]] std::unique_ptr<PopoverContent> makePopoverContent();
    [[nodiscard]] Size calculatedPopoverSize();
    [[nodiscard]] Rect visibleFrameForPopover();
    void applyPopoverSize(Size size);
    void animatePopoverOpen(Size size);

    /// Called by the popover. Keeps the content, and with it the state of its views, for the next opening.
    void popoverDidClose();

    ShellPorts ports_;
    std::shared_ptr<KelvinbarStore> store_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<RepeatingTimer> refreshTimer_;
    bool isTickPosted_ = false;
    bool areReadingsInView_ = false;
    std::string lastStatusTitle_;
    std::string lastStatusToolTip_;
    std::array<Registration, 5> observers_;
};

} // namespace kelvinbar
