#pragma once

#include "shell/LoginItemManager.h"
#include "shell/ShellPorts.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// Fakes of all ports of the shell. They record their calls in one journal, so that tests can check the
/// order.
namespace kelvinbar::fakes {

/// The recorded calls, in order.
class ShellJournal {
  public:
    std::vector<std::string> entries;

    /// Called after each entry. May inspect the fakes and call the program.
    std::function<void(const std::string& entry)> whenAdded;

    void add(std::string entry) {
        entries.push_back(entry);
        if (whenAdded) whenAdded(entry);
    }

    /// Returns the entries and clears the journal.
    std::vector<std::string> taken() { return std::exchange(entries, {}); }
};

/// "462 x 690".
inline std::string sizeText(Size size) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << size.width << " x " << size.height;
    return text.str();
}

class FakeApplication final : public Application {
  public:
    explicit FakeApplication(ShellJournal& journal) : journal_(journal) {}

    std::vector<bool> viewChanges; ///< what the program has reported of readings in view

    void becomeAccessory() override { journal_.add("application: accessory"); }

    void setReadingsInView(bool areInView) override { viewChanges.push_back(areInView); }

  private:
    ShellJournal& journal_;
};

class FakeStatusItemButton final : public StatusItemButton {
  public:
    std::optional<StatusImage> image;
    std::optional<StatusTitle> title;
    std::string toolTip;
    std::function<void()> action;
    std::optional<Rect> frame;
    std::optional<Rect> visibleFrame;

    explicit FakeStatusItemButton(ShellJournal& journal) : journal_(journal) {}

    void setImageLeftOfTitle(const StatusImage& newImage) override {
        image = newImage;
        journal_.add(std::string("button: image ").append(newImage.name));
    }

    void setTitle(const StatusTitle& newTitle) override {
        title = newTitle;
        journal_.add("button: title '" + newTitle.text + "'");
    }

    void setToolTip(const std::string& text) override {
        toolTip = text;
        journal_.add("button: tooltip '" + text + "'");
    }

    void setAction(std::function<void()> newAction) override {
        action = std::move(newAction);
        journal_.add("button: action");
    }

    [[nodiscard]] std::optional<Rect> frameOnScreen() const override { return frame; }

    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override { return visibleFrame; }

  private:
    ShellJournal& journal_;
};

/// A status bar with one button, which survives its item so that tests can inspect it.
class FakeStatusBar final : public StatusBar {
  public:
    bool hasButton = true;
    std::vector<std::string> imageResources{"MenuBarIcon"};
    FakeStatusItemButton button;
    int itemCount = 0; ///< items in the bar

    explicit FakeStatusBar(ShellJournal& journal) : button(journal), journal_(journal) {}

    std::unique_ptr<StatusItem> makeItem() override {
        journal_.add("status bar: item added");
        return std::make_unique<Item>(*this);
    }

    [[nodiscard]] bool hasImageResource(const std::string& name) const override {
        return std::ranges::find(imageResources, name) != imageResources.end();
    }

  private:
    class Item final : public StatusItem {
      public:
        explicit Item(FakeStatusBar& bar) : bar_(bar) { ++bar_.itemCount; }

        Item(const Item&) = delete;
        Item& operator=(const Item&) = delete;

        ~Item() override {
            --bar_.itemCount;
            bar_.journal_.add("status bar: item removed");
        }

        StatusItemButton* button() override { return bar_.hasButton ? &bar_.button : nullptr; }

      private:
        FakeStatusBar& bar_;
    };

    ShellJournal& journal_;
};

class FakePopover final : public Popover {
  public:
    std::unique_ptr<PopoverContent> currentContent;
    bool shown = false;

    explicit FakePopover(ShellJournal& journal) : journal_(journal) {}

    void setTransient(bool isTransient) override {
        journal_.add(isTransient ? "popover: transient" : "popover: not transient");
    }

    void setAnimates(bool animates) override {
        journal_.add(animates ? "popover: animates" : "popover: does not animate");
    }

    void setDidCloseHandler(std::function<void()> handler) override {
        didClose_ = std::move(handler);
        journal_.add("popover: did-close handler");
    }

    void setContentSize(Size size) override { journal_.add("popover: content size " + sizeText(size)); }

    void setContent(std::unique_ptr<PopoverContent> content) override {
        currentContent = std::move(content);
        journal_.add(currentContent == nullptr ? "popover: content dropped" : "popover: content set");
    }

    PopoverContent* content() override { return currentContent.get(); }

    [[nodiscard]] bool isShown() const override { return shown; }

    void show(StatusItemButton& /*button*/, PopoverEdge edge) override {
        shown = true;
        journal_.add("popover: shown at edge " + std::to_string(static_cast<int>(edge)));
    }

    void updatePlace() override { journal_.add("popover: place updated"); }

    void performClose() override {
        journal_.add("popover: close");
        closeByClickOutside();
    }

    /// Closes the popover without a call of the program, as a user's click does.
    void closeByClickOutside() {
        if (std::exchange(shown, false) && didClose_) didClose_();
    }

  private:
    ShellJournal& journal_;
    std::function<void()> didClose_;
};

/// Creates contents that have a window while the popover is shown.
class FakePopoverContentFactory final : public PopoverContentFactory {
  public:
    struct Animation {
        Size size;
        std::chrono::milliseconds duration;
        std::function<void()> completion;
    };

    bool hasWindows = true;
    std::vector<const KelvinbarStore*> stores;
    std::vector<std::function<void()>> closeActions;
    std::vector<Animation> animations; ///< started; the test completes them

    FakePopoverContentFactory(ShellJournal& journal, const FakePopover& popover)
        : journal_(journal), popover_(popover) {}

    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override {
        stores.push_back(&store);
        closeActions.push_back(std::move(closeAction));
        journal_.add("factory: content made");
        return std::make_unique<Content>(*this);
    }

  private:
    class Content final : public PopoverContent {
      public:
        explicit Content(FakePopoverContentFactory& factory) : factory_(factory) {}

        void setViewSize(Size size) override { add("content: view size " + sizeText(size)); }

        void setViewNeedsLayout() override { add("content: needs layout"); }

        [[nodiscard]] bool hasWindow() const override {
            return factory_.hasWindows && factory_.popover_.isShown();
        }

        void setWindowContentSize(Size size) override { add("content: window size " + sizeText(size)); }

        void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                      std::function<void()> completion) override {
            factory_.animations.push_back({size, duration, std::move(completion)});
            add("content: window grows to " + sizeText(size));
        }

        void makeWindowKey() override {
            if (hasWindow()) add("content: window is key");
        }

      private:
        void add(std::string entry) { factory_.journal_.add(std::move(entry)); }

        FakePopoverContentFactory& factory_;
    };

    ShellJournal& journal_;
    const FakePopover& popover_;
};

/// Timers that a test fires by hand until they are invalidated or destroyed.
class FakeRepeatingTimers final : public RepeatingTimers {
  public:
    explicit FakeRepeatingTimers(ShellJournal& journal) : journal_(journal) {}

    std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                          std::chrono::milliseconds tolerance,
                                          std::function<void()> block) override {
        journal_.add("timer: started, every " + std::to_string(interval.count()) + " ms, tolerance " +
                     std::to_string(tolerance.count()) + " ms");
        auto state = std::make_shared<std::function<void()>>(std::move(block));
        blocks_.push_back(state);
        return std::make_unique<Timer>(journal_, std::move(state));
    }

    [[nodiscard]] std::size_t activeCount() const {
        return static_cast<std::size_t>(std::ranges::count_if(blocks_, isActive));
    }

    /// Fires every active timer once.
    void fire() {
        const auto blocks = blocks_;
        for (const auto& block : blocks) {
            if (isActive(block)) (*block.lock())();
        }
    }

  private:
    using Block = std::function<void()>;

    class Timer final : public RepeatingTimer {
      public:
        Timer(ShellJournal& journal, std::shared_ptr<Block> block)
            : journal_(journal), block_(std::move(block)) {}

        void invalidate() override {
            block_.reset();
            journal_.add("timer: invalidated");
        }

      private:
        ShellJournal& journal_;
        std::shared_ptr<Block> block_;
    };

    static bool isActive(const std::weak_ptr<Block>& block) { return !block.expired(); }

    ShellJournal& journal_;
    std::vector<std::weak_ptr<Block>> blocks_;
};

class FakeScreens final : public Screens {
  public:
    std::optional<Rect> main;
    std::vector<Rect> all;

    [[nodiscard]] std::optional<Rect> mainVisibleFrame() const override { return main; }

    [[nodiscard]] std::vector<Rect> visibleFrames() const override { return all; }

    void setChangeHandler(std::function<void()> handler) override { changed = std::move(handler); }

    std::function<void()> changed; ///< null unless the program listens
};

class FakeLoginItemService final : public LoginItemService {
  public:
    bool allowsRegistration = true;
    bool registered = false;
    bool succeeds = true;
    bool needsApproval = false; ///< registering succeeds, but does not enable the item

    explicit FakeLoginItemService(ShellJournal& journal) : journal_(journal) {}

    /// Restores the initial state and clears the journal.
    void reset() {
        journal_.entries.clear();
        allowsRegistration = true;
        registered = false;
        succeeds = true;
        needsApproval = false;
    }

    [[nodiscard]] bool canRegister() const override { return allowsRegistration; }

    [[nodiscard]] bool isRegistered() const override { return registered; }

    bool registerItem() override {
        journal_.add("login item: register");
        if (succeeds && !needsApproval) registered = true;
        return succeeds;
    }

    bool unregisterItem() override {
        journal_.add("login item: unregister");
        if (succeeds) registered = false;
        return succeeds;
    }

    void openLoginItemsSettings() override { journal_.add("login item: settings opened"); }

    void beep() override { journal_.add("login item: beep"); }

  private:
    ShellJournal& journal_;
};

/// All fakes, with one journal.
struct FakeShell {
    ShellJournal journal;
    FakeApplication application{journal};
    FakeStatusBar statusBar{journal};
    FakePopover popover{journal};
    FakePopoverContentFactory contentFactory{journal, popover};
    FakeRepeatingTimers timers{journal};
    FakeScreens screens;

    FakeShell() = default;
    FakeShell(const FakeShell&) = delete;
    FakeShell& operator=(const FakeShell&) = delete;

    [[nodiscard]] ShellPorts ports(MainQueue& mainQueue, NotificationCenter& notifications) {
        return {.application = application,
                .statusBar = statusBar,
                .popover = popover,
                .contentFactory = contentFactory,
                .timers = timers,
                .screens = screens,
                .mainQueue = mainQueue,
                .notifications = notifications};
    }
};

} // namespace kelvinbar::fakes
