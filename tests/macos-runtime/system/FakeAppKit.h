#pragma once

#include "tests/macos-runtime/system/FakeCocoa.h"
#import "tests/macos-runtime/system/FakeFoundation.h"

#import <AppKit/AppKit.h>
#include <vector>

// What the fakes add to the classes of AppKit.

/// Descriptors ask for a design; those of fonts know a file as well.
@interface NSFontDescriptor ()
@property(nonatomic) bool isRounded;
@property(nonatomic) bool isOfFont;
@end

@interface NSFont ()
@property(nonatomic) bool isRounded;
@property(nonatomic) double pointSize;
@property(nonatomic) double weight;
@property(nonatomic) bool hasMonospacedDigits;
@end

@interface NSColor ()
@property(nonatomic) std::string name;
@end

@interface NSImageSymbolConfiguration ()
@property(nonatomic) double pointSize;
@property(nonatomic) double weight;
@end

@interface NSImage ()
@property(nonatomic) std::string name;
@property(nonatomic) bool isSystemSymbol;
@property(nonatomic) bool isTemplate;
@property(nonatomic, strong) NSImageSymbolConfiguration* configuration;
@end

@interface NSBitmapImageRep ()
@property(nonatomic) NSInteger side;
@end

@interface NSGraphicsContext ()
@property(nonatomic, strong) NSBitmapImageRep* bitmap;
@end

@interface NSScreen ()
- (instancetype)initWithScreen:(const kelvinbar::fakes::FakeScreen&)screen;
@end

@interface NSRunningApplication ()
- (instancetype)initWithProgram:(const kelvinbar::fakes::FakeProgram&)program;
@end

@interface NSWindow ()
@property(nonatomic) int shadowUpdates;
@end

@interface NSEvent ()
@property(readwrite) NSEventType type;
@property(readwrite) NSEventModifierFlags modifierFlags;
@end

@interface NSApplication ()
@property(nonatomic, strong) NSEvent* event; ///< the last one
@end

@interface NSControl ()
@property(nonatomic) NSEventMask actionMask;
@end

@interface NSButton ()
@property(nonatomic) bool isHighlighted;
@end

/// The view of a window of the program.
@interface FakeWindowView : NSView
@end

@interface NSStatusItem ()
- (instancetype)initWithLength:(CGFloat)length;
- (CGFloat)length;
@end

@interface NSMenuItem ()
@property(nonatomic) std::string title;
@property(nonatomic) SEL action;
@property(nonatomic) bool isSeparator;
- (void)choose;
@end

@interface NSStatusBar ()
- (const std::vector<NSStatusItem*>&)items;
@end

namespace kelvinbar::fakes {

/// The handlers of mouse presses in other programs.
struct FakeMonitors {
    struct Monitor {
        NSObject* token; ///< what the program holds
        NSEventMask mask;
        void (^handler)(NSEvent*);
    };

    std::vector<Monitor> installed;
};

FakeMonitors& fakeMonitors();

} // namespace kelvinbar::fakes
