#include "desktop/macos/CocoaStatusBar.h"

#include "desktop/macos/CocoaPlace.h"
#include "desktop/macos/CocoaText.h"

#import <AppKit/AppKit.h>
#include <utility>

/// The target of a button, and of entries of a menu, must be an Objective-C object.
@interface KelvinbarClickTarget : NSObject
@property(nonatomic) std::function<void()> action;
@property(nonatomic) std::function<void()> secondaryAction;
@property(nonatomic) std::function<void(kelvinbar::StatusMenuCommand)> onChosen;
- (void)togglePopover:(id)sender;
- (void)chooseEntry:(NSMenuItem*)entry;
@end

@implementation KelvinbarClickTarget

- (void)togglePopover:(id)__unused sender {
    NSEvent* const event = NSApplication.sharedApplication.currentEvent;
    const bool isSecondary =
        event.type == NSEventTypeRightMouseUp ||
        (event.type == NSEventTypeLeftMouseUp && (event.modifierFlags & NSEventModifierFlagControl) != 0);
    const auto handler = isSecondary ? _secondaryAction : _action; // a copy: the call may replace it
    if (handler) handler();
}

- (void)chooseEntry:(NSMenuItem*)entry {
    const auto handler = _onChosen;
    if (handler) handler(static_cast<kelvinbar::StatusMenuCommand>(entry.tag));
}

@end

namespace kelvinbar {

namespace {

BarScreen barScreen(NSScreen* screen) {
    BarScreen result{.frames = {placeOnScreen(screen.frame), placeOnScreen(screen.visibleFrame)}};
    if (@available(macOS 12.0, *)) {
        result.leftOfNotch = placeOnScreen(screen.auxiliaryTopLeftArea);
        result.rightOfNotch = placeOnScreen(screen.auxiliaryTopRightArea);
    }
    return result;
}

std::vector<BarScreen> barScreens() {
    std::vector<BarScreen> screens;
    for (NSScreen* screen in NSScreen.screens) screens.push_back(barScreen(screen));
    return screens;
}

NSMenuItem* menuEntry(const StatusMenuItem& item, KelvinbarClickTarget* target) {
    if (item.command == StatusMenuCommand::none) return [NSMenuItem separatorItem];
    NSMenuItem* const entry = [[NSMenuItem alloc] initWithTitle:cocoaText(item.text)
                                                         action:@selector(chooseEntry:)
                                                  keyEquivalent:@""];
    entry.target = target;
    entry.tag = static_cast<NSInteger>(item.command);
    return entry;
}

/// Nil if neither the program nor this version of the system has the image.
NSImage* namedImage(const StatusImage& image) {
    NSString* const name = cocoaText(image.name);
    if (image.source == StatusImage::Source::systemSymbol) {
        NSImage* const symbol = [NSImage imageWithSystemSymbolName:name
                                          accessibilityDescription:cocoaText(image.accessibilityDescription)];
        if (symbol != nil) return symbol;
        // The bundle contains symbols that older versions of the system lack. imageNamed: needs the extension
        // if the name contains a dot.
        NSImage* const picture = [NSImage imageNamed:cocoaText(image.name + ".png")];
        picture.accessibilityDescription = cocoaText(image.accessibilityDescription);
        return picture;
    }
    return [NSImage imageNamed:name];
}

NSFont* fontOf(const StatusTitleStyle& style) {
    const NSFontWeight weight = style.isSemibold ? NSFontWeightSemibold : NSFontWeightRegular;
    return style.hasMonospacedDigits ? [NSFont monospacedDigitSystemFontOfSize:style.pointSize weight:weight]
                                     : [NSFont systemFontOfSize:style.pointSize weight:weight];
}

} // namespace

class CocoaStatusItem final : public StatusItem, public StatusItemButton {
  public:
    explicit CocoaStatusItem(CocoaStatusBar& bar)
        : bar_(bar)
        , item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength])
        , target_([[KelvinbarClickTarget alloc] init]) {
        target_.secondaryAction = bar.onSecondaryClick_;
        bar_.item_ = this;
    }

    CocoaStatusItem(const CocoaStatusItem&) = delete;
    CocoaStatusItem& operator=(const CocoaStatusItem&) = delete;

    ~CocoaStatusItem() override {
        bar_.item_ = nullptr;
        @autoreleasepool {
            item_.button.target = nil;
            [NSStatusBar.systemStatusBar removeStatusItem:item_];
        }
    }

    StatusItemButton* button() override {
        @autoreleasepool {
            return item_.button == nil ? nullptr : this;
        }
    }

    void setImageLeftOfTitle(const StatusImage& image) override {
        @autoreleasepool {
            NSImage* const picture = namedImage(image);
            if (image.size) picture.size = NSMakeSize(image.size->width, image.size->height);
            [picture setTemplate:image.isTemplate];
            item_.button.image = picture;
            item_.button.imagePosition = NSImageLeft;
        }
    }

    void setTitle(const StatusTitle& title) override {
        @autoreleasepool {
            item_.button.attributedTitle = [[NSAttributedString alloc]
                initWithString:cocoaText(title.text)
                    attributes:@{
                        NSFontAttributeName : fontOf(title.style),
                        NSForegroundColorAttributeName : NSColor.labelColor,
                        NSBaselineOffsetAttributeName : @(title.style.baselineOffset),
                    }];
        }
    }

    void setToolTip(const std::string& text) override {
        @autoreleasepool {
            item_.button.toolTip = cocoaText(text);
        }
    }

    void setAction(std::function<void()> action) override {
        @autoreleasepool {
            target_.action = std::move(action);
            item_.button.target = target_;
            item_.button.action = @selector(togglePopover:);
            [item_.button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
        }
    }

    [[nodiscard]] std::optional<Rect> frameOnScreen() const override {
        @autoreleasepool {
            return frameInBar(reportedFrame(), barScreens());
        }
    }

    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override {
        @autoreleasepool {
            NSScreen* const screen = item_.button.window.screen;
            if (screen == nil) return std::nullopt;
            return placeOnScreen(screen.visibleFrame);
        }
    }

    [[nodiscard]] ItemSight sight() const {
        @autoreleasepool {
            return sightOf(reportedFrame(), barScreens());
        }
    }

    [[nodiscard]] bool contains(Point place) const {
        @autoreleasepool {
            return kelvinbar::isOnItem(place, reportedFrame(), barScreens());
        }
    }

    void setHighlighted(bool isHighlighted) {
        @autoreleasepool {
            isHighlighted_ = isHighlighted;
            [item_.button highlight:isHighlighted];
        }
    }

    void popUp(const std::vector<StatusMenuItem>& items, std::function<void(StatusMenuCommand)> onChosen) {
        @autoreleasepool {
            target_.onChosen = std::move(onChosen);
            NSMenu* const menu = [[NSMenu alloc] init];
            for (const StatusMenuItem& item : items) [menu addItem:menuEntry(item, target_)];
            NSStatusBarButton* const button = item_.button;
            [button highlight:YES];
            [menu popUpMenuPositioningItem:nil atLocation:systemFrame().origin inView:nil];
            [button highlight:isHighlighted_];
        }
    }

  private:
    /// In system coordinates. Empty without a window.
    [[nodiscard]] NSRect systemFrame() const {
        NSStatusBarButton* const button = item_.button;
        return [button.window convertRectToScreen:[button convertRect:button.bounds toView:nil]];
    }

    /// The frame as the system has it, also of an item that cannot be seen.
    [[nodiscard]] std::optional<Rect> reportedFrame() const {
        if (item_.button.window == nil) return std::nullopt;
        return placeOnScreen(systemFrame());
    }

    CocoaStatusBar& bar_;
    NSStatusItem* item_;
    KelvinbarClickTarget* target_;
    bool isHighlighted_ = false; ///< while no menu is open
};

CocoaStatusBar::CocoaStatusBar(std::function<void()> onSecondaryClick)
    : onSecondaryClick_(std::move(onSecondaryClick)) {}

std::unique_ptr<StatusItem> CocoaStatusBar::makeItem() {
    @autoreleasepool {
        return std::make_unique<CocoaStatusItem>(*this);
    }
}

ItemSight CocoaStatusBar::itemSight() const {
    return item_ == nullptr ? ItemSight::notInBar : item_->sight();
}

bool CocoaStatusBar::isOnItem(Point place) const { return item_ != nullptr && item_->contains(place); }

void CocoaStatusBar::setItemHighlighted(bool isHighlighted) {
    if (item_ != nullptr) item_->setHighlighted(isHighlighted);
}

void CocoaStatusBar::popUpMenu(const std::vector<StatusMenuItem>& items,
                               std::function<void(StatusMenuCommand)> onChosen) {
    if (item_ != nullptr) item_->popUp(items, std::move(onChosen));
}

bool CocoaStatusBar::hasImageResource(const std::string& name) const {
    @autoreleasepool {
        return [NSImage imageNamed:cocoaText(name)] != nil;
    }
}

} // namespace kelvinbar
