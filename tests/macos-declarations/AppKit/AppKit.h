// What the program calls of AppKit, declared for checks on machines without it. On a Mac, the system's own
// headers are used.
#pragma once

#import <Foundation/Foundation.h>
#include <sys/types.h>

typedef CGFloat NSFontWeight;

KELVINBAR_EXPORT const NSFontWeight NSFontWeightRegular;
KELVINBAR_EXPORT const NSFontWeight NSFontWeightMedium;
KELVINBAR_EXPORT const NSFontWeight NSFontWeightSemibold;
KELVINBAR_EXPORT NSAttributedStringKey const NSFontAttributeName;
KELVINBAR_EXPORT NSAttributedStringKey const NSForegroundColorAttributeName;
KELVINBAR_EXPORT NSAttributedStringKey const NSBaselineOffsetAttributeName;
KELVINBAR_EXPORT NSNotificationName const NSApplicationWillFinishLaunchingNotification;
KELVINBAR_EXPORT void NSBeep(void);

typedef NSString* NSColorSpaceName;

KELVINBAR_EXPORT NSColorSpaceName const NSDeviceRGBColorSpace;

typedef NSString* NSFontDescriptorSystemDesign;
typedef NSString* NSFontDescriptorAttributeName;

KELVINBAR_EXPORT NSFontDescriptorSystemDesign const NSFontDescriptorSystemDesignRounded;

@interface NSFontDescriptor : NSObject
- (nullable instancetype)fontDescriptorWithDesign:(NSFontDescriptorSystemDesign)design;
- (nullable id)objectForKey:(NSFontDescriptorAttributeName)attribute;
@end

@interface NSFont : NSObject
@property(readonly, strong) NSFontDescriptor* fontDescriptor;
+ (nullable NSFont*)fontWithDescriptor:(NSFontDescriptor*)descriptor size:(CGFloat)size;
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
@end

@interface NSColor : NSObject
@property(class, strong, readonly) NSColor* labelColor;
@end

@interface NSImageSymbolConfiguration : NSObject <NSCopying>
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight;
@end

@interface NSImage : NSObject
@property NSSize size;
@property(nullable, copy) NSString* accessibilityDescription;
- (void)setTemplate:(BOOL)isTemplate; // "template" itself is a word of C++
+ (nullable NSImage*)imageNamed:(NSString*)name;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description API_AVAILABLE(macos(11.0));
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration
    API_AVAILABLE(macos(11.0));
- (void)drawInRect:(NSRect)rect;
@end

@interface NSBitmapImageRep : NSObject
@property(readonly, nullable) unsigned char* bitmapData;
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samplesPerPixel
                                         hasAlpha:(BOOL)hasAlpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel;
@end

@interface NSGraphicsContext : NSObject
@property(class, strong, nullable) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) NSRect auxiliaryTopLeftArea API_AVAILABLE(macos(12.0));
@property(readonly) NSRect auxiliaryTopRightArea API_AVAILABLE(macos(12.0));
@end

typedef NSUInteger NSWindowCollectionBehavior;

enum : NSWindowCollectionBehavior {
    NSWindowCollectionBehaviorMoveToActiveSpace = 1UL << 1,
    NSWindowCollectionBehaviorTransient = 1UL << 3,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1UL << 8
};

@interface NSWindow : NSObject
@property(nullable, readonly, strong) NSScreen* screen;
@property NSWindowCollectionBehavior collectionBehavior;
- (void)invalidateShadow;
- (NSRect)convertRectToScreen:(NSRect)rect;
@end

typedef unsigned long long NSEventMask;

enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskRightMouseUp = 1ULL << 4,
    NSEventMaskOtherMouseDown = 1ULL << 25
};

typedef enum NSEventType : NSUInteger { NSEventTypeLeftMouseUp = 2, NSEventTypeRightMouseUp = 4 } NSEventType;

typedef NSUInteger NSEventModifierFlags;

enum : NSEventModifierFlags { NSEventModifierFlagControl = 1UL << 18 };

@interface NSEvent : NSObject
@property(class, readonly) NSPoint mouseLocation;
@property(readonly) NSEventType type;
@property(readonly) NSEventModifierFlags modifierFlags;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block;
+ (void)removeMonitor:(id)monitor;
@end

typedef enum NSCellImagePosition : NSUInteger { NSNoImage, NSImageOnly, NSImageLeft } NSCellImagePosition;

@interface NSView : NSObject
@property NSRect bounds;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@property(nullable, copy) NSString* toolTip;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@end

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end

@interface NSButton : NSControl
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@property(copy) NSAttributedString* attributedTitle;
- (void)highlight:(BOOL)isHighlighted;
@end

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@end

static const CGFloat NSVariableStatusItemLength = -1.0;

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString*)keyEquivalent;
@property(nullable, weak) id target;
@property NSInteger tag;
@end

@interface NSMenu : NSObject
- (void)addItem:(NSMenuItem*)item;
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem*)item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView*)view;
@end

typedef enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited
} NSApplicationActivationPolicy;

@interface NSApplication : NSObject
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, readonly, strong) NSEvent* currentEvent;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activateIgnoringOtherApps:(BOOL)ignoresOthers;
@property(getter=isHidden, readonly) BOOL hidden;
- (void)hide:(nullable id)sender;
- (void)unhideWithoutActivation;
@end

@interface NSRunningApplication : NSObject
@property(class, readonly, strong) NSRunningApplication* currentApplication;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDate* launchDate;
@property(readonly) pid_t processIdentifier;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@property(readonly) BOOL accessibilityDisplayShouldIncreaseContrast;
- (BOOL)openURL:(NSURL*)address;
@end
