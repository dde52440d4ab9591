#include "desktop/macos/SystemSymbolMask.h"

#include "desktop/macos/CocoaText.h"

#import <AppKit/AppKit.h>
#include <algorithm>

namespace kelvinbar {

namespace {

constexpr NSInteger bytesAPixel = 4;

NSBitmapImageRep* newBitmap(NSInteger side) {
    return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                   pixelsWide:side
                                                   pixelsHigh:side
                                                bitsPerSample:8
                                              samplesPerPixel:bytesAPixel
                                                     hasAlpha:YES
                                                     isPlanar:NO
                                               colorSpaceName:NSDeviceRGBColorSpace
                                                  bytesPerRow:side * bytesAPixel
                                                 bitsPerPixel:8 * bytesAPixel];
}

NSImage* symbolOfHeight(NSString* name, CGFloat height) {
    NSImage* const symbol = [NSImage imageWithSystemSymbolName:name accessibilityDescription:nil];
    NSImageSymbolConfiguration* const configuration =
        [NSImageSymbolConfiguration configurationWithPointSize:height weight:NSFontWeightMedium];
    return [symbol imageWithSymbolConfiguration:configuration];
}

/// The frame of `size` scaled to fit into a square of `side` and centred in it.
NSRect fitted(NSSize size, CGFloat side) {
    const CGFloat scale = side / std::max({size.width, size.height, CGFloat{1}});
    const NSSize drawn = NSMakeSize(size.width * scale, size.height * scale);
    return NSMakeRect((side - drawn.width) / 2, (side - drawn.height) / 2, drawn.width, drawn.height);
}

bool draw(NSImage* image, NSBitmapImageRep* bitmap, NSRect place) {
    NSGraphicsContext* const context = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
    if (context == nil) return false;
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = context;
    [image drawInRect:place];
    [NSGraphicsContext restoreGraphicsState];
    return true;
}

} // namespace

std::optional<SymbolMask> systemSymbolMask(const std::string& name, int side) {
    if (side <= 0) return std::nullopt;
    @autoreleasepool {
        NSImage* const symbol = symbolOfHeight(cocoaText(name), side);
        NSBitmapImageRep* const bitmap = newBitmap(side);
        unsigned char* const bytes = bitmap.bitmapData;
        if (symbol == nil || bytes == nullptr) return std::nullopt;
        const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
        std::fill_n(bytes, pixels * bytesAPixel, static_cast<unsigned char>(0));
        if (!draw(symbol, bitmap, fitted(symbol.size, side))) return std::nullopt;
        SymbolMask mask{.side = side, .coverage = std::vector<std::uint8_t>(pixels)};
        for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
            mask.coverage[pixel] = bytes[pixel * bytesAPixel + bytesAPixel - 1];
        }
        return mask;
    }
}

} // namespace kelvinbar
