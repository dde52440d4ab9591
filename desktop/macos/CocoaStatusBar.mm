#include "desktop/macos/CocoaStatusBar.h"

#include "desktop/macos/CocoaText.h"
#include "desktop/macos/ScreenCoordinates.h"

#import <AppKit/AppKit.h>

/// The target of a button must be an Objective-C object.
@interface KelvinbarClickTarget : NSObject
@property(nonatomic) std::function<void()> action;
- (void)togglePopover:(id)sender;
@end

@implementation KelvinbarClickTarget

- (void)togglePopover:(id)__unused sender {
    if (_action) _action();
}

@end

namespace kelvinbar {

namespace {

Rect placeOnScreen(NSRect place) {
    // The origin of system coordinates is a corner of the first screen.
    const NSRect mainScreen = NSScreen.screens.firstObject.frame;
    return fromSystemCoordinates({place.origin.x, place.origin.y, place.size.width, place.size.height},
                                 mainScreen.size.height);
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

class CocoaStatusItem final : public StatusItem, public StatusItemButton {
  public:
    CocoaStatusItem()
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength])
        , target_([[KelvinbarClickTarget alloc] init]) {}

    CocoaStatusItem(const CocoaStatusItem&) = delete;
    CocoaStatusItem& operator=(const CocoaStatusItem&) = delete;

    ~CocoaStatusItem() override {
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
        }
    }

    [[nodiscard]] std::optional<Rect> frameOnScreen() const override {
        @autoreleasepool {
            NSStatusBarButton* const button = item_.button;
            NSWindow* const window = button.window;
            if (window == nil) return std::nullopt;
            const NSRect inWindow = [button convertRect:button.bounds toView:nil];
            return placeOnScreen([window convertRectToScreen:inWindow]);
        }
    }

    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override {
        @autoreleasepool {
            NSScreen* const screen = item_.button.window.screen;
            if (screen == nil) return std::nullopt;
            return placeOnScreen(screen.visibleFrame);
        }
    }

  private:
    NSStatusItem* item_;
    KelvinbarClickTarget* target_;
};

} // namespace

std::unique_ptr<StatusItem> CocoaStatusBar::makeItem() {
    @autoreleasepool {
        return std::make_unique<CocoaStatusItem>();
    }
}

bool CocoaStatusBar::hasImageResource(const std::string& name) const {
    @autoreleasepool {
        return [NSImage imageNamed:cocoaText(name)] != nil;
    }
}

} // namespace kelvinbar
