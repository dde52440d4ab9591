#include "shell/AppDelegate.h"

#include "base/OutOfMemory.h"
#include "catalogue/NotificationNames.h"
#include "shell/PopoverSizing.h"
#include "shell/Sampling.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

StatusImage ownImage() {
    return {.source = StatusImage::Source::resource,
            .name = "MenuBarIcon",
            .size = Size{17, 17},
            .isTemplate = false,
            .accessibilityDescription = ""};
}

StatusImage fallbackImage() {
    return {.source = StatusImage::Source::systemSymbol,
            .name = "thermometer.medium",
            .size = std::nullopt,
            .isTemplate = true,
            .accessibilityDescription = "Kelvinbar"};
}

} // namespace

std::shared_ptr<AppDelegate> AppDelegate::create(const ShellPorts& ports, const StorePorts& storePorts) {
    return std::make_unique<AppDelegate>(Token(), ports, storePorts); // callbacks do not keep its memory
}

AppDelegate::AppDelegate(Token /*token*/, const ShellPorts& ports, const StorePorts& storePorts)
    : ports_(ports), store_(KelvinbarStore::create(storePorts)) {}

void AppDelegate::applicationDidFinishLaunching() {
    const auto self = shared_from_this();
    ports_.application.becomeAccessory();
    configureStatusItem();
    configurePopover();
    installRefreshTimer();
    observeStore();
    ports_.screens.setChangeHandler([this] { screensChanged(); });
    updateStatusItemTitle(store_->menuBarTitle(), store_->menuBarToolTip());
    noteWhatIsInView(store_->menuBarKeys().value());
}

void AppDelegate::applicationWillTerminate() {
    const auto self = shared_from_this();
    for (Registration& observer : observers_) observer = {};
    ports_.screens.setChangeHandler(nullptr);
    if (refreshTimer_ != nullptr) refreshTimer_->invalidate();
    refreshTimer_ = nullptr;
    ports_.popover.performClose();
    ports_.popover.setContent(nullptr);
    statusItem_ = nullptr;
    setReadingsInView(false);
    store_->shutdown();
}

// Status item

StatusItemButton* AppDelegate::statusButton() {
    return statusItem_ == nullptr ? nullptr : statusItem_->button();
}

void AppDelegate::configureStatusItem() {
    statusItem_ = ports_.statusBar.makeItem();
    StatusItemButton* const button = statusButton();
    if (button == nullptr) return;
    const StatusImage own = ownImage();
    button->setImageLeftOfTitle(ports_.statusBar.hasImageResource(own.name) ? own : fallbackImage());
    applyStatusTitle(store_->menuBarTitle(), *button);
    button->setToolTip(store_->menuBarToolTip());
    button->setAction(ifAlive(&AppDelegate::togglePopover));
}

void AppDelegate::applyStatusTitle(const std::string& title, StatusItemButton& button) {
    button.setTitle({.text = title, .style = {}});
}

void AppDelegate::updateStatusItemTitle(const std::string& title, const std::string& tooltip) {
    StatusItemButton* const button = statusButton();
    if (button == nullptr) return;
    if (title != lastStatusTitle_) {
        applyStatusTitle(title, *button);
        lastStatusTitle_ = title;
    }
    if (tooltip != lastStatusToolTip_) {
        button->setToolTip(tooltip);
        lastStatusToolTip_ = tooltip;
    }
}

// Sampling

void AppDelegate::installRefreshTimer() {
    if (refreshTimer_ != nullptr) refreshTimer_->invalidate();
    const Sampling sampling = samplingAt(store_->samplingRate().value());
    refreshTimer_ = ports_.timers.start(sampling.interval, sampling.tolerance, ifAlive(&AppDelegate::tick));
}

void AppDelegate::tick() {
    if (isTickPosted_) return;
    isTickPosted_ = hasMemoryFor([this] { ports_.mainQueue.post(ifAlive(&AppDelegate::tickAsPosted)); });
}

void AppDelegate::tickAsPosted() {
    isTickPosted_ = false;
    // The program may have ended since the tick was posted.
    if (refreshTimer_ != nullptr) refreshWhatIsShown();
}

void AppDelegate::refreshWhatIsShown() {
    if (ports_.popover.isShown()) {
        store_->refresh(false);
    } else if (!store_->menuBarKeys().value().empty()) {
        store_->refreshMenuBarOnly();
    }
}

void AppDelegate::noteWhatIsInView(const std::vector<std::string>& menuBarKeys) {
    setReadingsInView(ports_.popover.isShown() || !menuBarKeys.empty());
}

void AppDelegate::setReadingsInView(bool areInView) {
    if (std::exchange(areReadingsInView_, areInView) == areInView) return;
    ports_.application.setReadingsInView(areInView);
}

// Notifications of the store

void AppDelegate::observeStore() {
    NotificationCenter& center = ports_.notifications;
    const auto resize = ifAlive([](AppDelegate& self, const auto&) { self.popoverSizeMayHaveChanged(); });
    observers_ = {
        center.addObserver(kelvinbarSamplingRateChanged,
                           {ifAlive([](AppDelegate& self, const auto&) { self.samplingRateChanged(); })}),
        center.addObserver(kelvinbarMenuBarReadingChanged, {ifAlive(&AppDelegate::menuBarReadingChanged)}),
        center.addObserver(kelvinbarDisplayModeChanged, {resize}),
        center.addObserver(kelvinbarManualSizeChanged, {resize}),
        store_->menuBarKeys().observe(ifAlive(&AppDelegate::noteWhatIsInView)),
    };
}

void AppDelegate::samplingRateChanged() {
    installRefreshTimer();
    refreshWhatIsShown();
}

void AppDelegate::menuBarReadingChanged(const MenuBarReadingChange& change) {
    updateStatusItemTitle(change.title ? *change.title : store_->menuBarTitle(),
                          change.toolTip ? *change.toolTip : store_->menuBarToolTip());
}

void AppDelegate::popoverSizeMayHaveChanged() { applyPopoverSize(calculatedPopoverSize()); }

void AppDelegate::screensChanged() {
    ports_.popover.updatePlace();
    popoverSizeMayHaveChanged();
}

// Panel

void AppDelegate::configurePopover() {
    Popover& popover = ports_.popover;
    popover.setTransient(true);
    popover.setAnimates(false);
    popover.setDidCloseHandler(ifAlive(&AppDelegate::popoverDidClose));
    popover.setContentSize(fixedPopoverSize);
    popover.setContent(makePopoverContent());
}

std::unique_ptr<PopoverContent> AppDelegate::makePopoverContent() {
    return ports_.contentFactory.make(*store_,
                                      ifAlive([](AppDelegate& self) { self.ports_.popover.performClose(); }));
}

void AppDelegate::ensurePopoverContentController() {
    if (ports_.popover.content() == nullptr) ports_.popover.setContent(makePopoverContent());
}

Rect AppDelegate::visibleFrameForPopover() {
    StatusItemButton* const button = statusButton();
    auto frame = button == nullptr ? std::nullopt : button->visibleFrameOfScreen();
    if (!frame) frame = ports_.screens.mainVisibleFrame();
    if (frame) return *frame;
    const auto frames = ports_.screens.visibleFrames();
    return frames.empty() ? Rect{} : frames.front();
}

Size AppDelegate::calculatedPopoverSize() {
    return targetPopoverSize({.visibleFrame = visibleFrameForPopover(),
                              .displayMode = store_->displayMode().value(),
                              .manualPopoverHeight = store_->manualPopoverHeight().value(),
                              .readings = store_->readings().value(),
                              .hiddenKeys = store_->hiddenKeys().value()});
}

void AppDelegate::applyPopoverSize(Size size) {
    Popover& popover = ports_.popover;
    popover.setContentSize(size);
    PopoverContent* const content = popover.content();
    if (!popover.isShown() || content == nullptr) return;
    content->setViewSize(size);
    content->setViewNeedsLayout();
    if (content->hasWindow()) content->setWindowContentSize(size);
}

void AppDelegate::togglePopover() {
    const auto self = shared_from_this();
    StatusItemButton* const button = statusButton();
    if (button == nullptr) return;
    Popover& popover = ports_.popover;
    if (popover.isShown()) {
        popover.performClose();
        return;
    }
    ensurePopoverContentController();
    store_->refresh(false);
    const Size target = calculatedPopoverSize();
    applyPopoverSize({target.width, std::min(target.height, openingPopoverHeight)});
    popover.show(*button, PopoverEdge::minY);
    noteWhatIsInView(store_->menuBarKeys().value());
    animatePopoverOpen(target);
    if (PopoverContent* const content = popover.content()) content->makeWindowKey();
}

void AppDelegate::openPopover() {
    if (!ports_.popover.isShown()) togglePopover();
}

void AppDelegate::popoverDidClose() { noteWhatIsInView(store_->menuBarKeys().value()); }

void AppDelegate::animatePopoverOpen(Size size) {
    PopoverContent* const content = ports_.popover.content();
    if (content == nullptr || !content->hasWindow()) {
        applyPopoverSize(size);
        return;
    }
    content->animateWindowContentSize(size, 160ms,
                                      ifAlive([size](AppDelegate& self) { self.applyPopoverSize(size); }));
}

} // namespace kelvinbar
