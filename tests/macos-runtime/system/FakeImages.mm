#import "tests/macos-runtime/system/FakeAppKit.h"
#include "tests/macos-runtime/system/Runtime.h"

#import <CoreText/CoreText.h>
#include <vector>

using kelvinbar::Size;
using kelvinbar::fakes::FakeCocoa;
using kelvinbar::fakes::textOf;
using kelvinbar::objc::fail;

const NSFontWeight NSFontWeightRegular = kelvinbar::fakes::fakeRegularWeight;
const NSFontWeight NSFontWeightMedium = kelvinbar::fakes::fakeMediumWeight;
const NSFontWeight NSFontWeightSemibold = kelvinbar::fakes::fakeSemiboldWeight;
NSFontDescriptorSystemDesign const NSFontDescriptorSystemDesignRounded = @"rounded";
const CFStringRef kCTFontURLAttribute = (__bridge CFStringRef) @"file";
NSColorSpaceName const NSDeviceRGBColorSpace = @"device RGB";

namespace {

FakeCocoa& cocoa() { return FakeCocoa::shared(); }

} // namespace

// Fonts, colours and images

@implementation NSFontDescriptor

- (nullable instancetype)fontDescriptorWithDesign:(NSFontDescriptorSystemDesign)design {
    if (!cocoa().fontFiles.contains(textOf(design))) return nil;
    NSFontDescriptor* const made = [[NSFontDescriptor alloc] init];
    made.isRounded = textOf(design) == textOf(NSFontDescriptorSystemDesignRounded);
    return made;
}

- (nullable id)objectForKey:(NSFontDescriptorAttributeName)attribute {
    if (textOf(attribute) != textOf((__bridge NSString*)kCTFontURLAttribute)) fail("an unknown attribute");
    const auto found = cocoa().fontFiles.find(_isRounded ? kelvinbar::fakes::fakeRoundedDesign : "");
    if (!_isOfFont || found == cocoa().fontFiles.end() || found->second.empty()) return nil;
    return [NSURL URLWithString:kelvinbar::fakes::nsText(found->second)];
}

@end

@implementation NSFont

- (NSFontDescriptor*)fontDescriptor {
    NSFontDescriptor* const made = [[NSFontDescriptor alloc] init];
    made.isRounded = _isRounded;
    made.isOfFont = true;
    return made;
}

+ (nullable NSFont*)fontWithDescriptor:(NSFontDescriptor*)descriptor size:(CGFloat)size {
    if (descriptor == nil) fail("a font of no descriptor");
    NSFont* const font = [NSFont systemFontOfSize:size weight:NSFontWeightRegular];
    font.isRounded = descriptor.isRounded;
    return font;
}

+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSFont* const font = [[NSFont alloc] init];
    font.pointSize = size;
    font.weight = weight;
    return font;
}

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSFont* const font = [NSFont systemFontOfSize:size weight:weight];
    font.hasMonospacedDigits = true;
    return font;
}

@end

@implementation NSColor

+ (NSColor*)labelColor {
    NSColor* const color = [[NSColor alloc] init];
    color.name = "label";
    return color;
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSImageSymbolConfiguration* const configuration = [[NSImageSymbolConfiguration alloc] init];
    configuration.pointSize = size;
    configuration.weight = weight;
    return configuration;
}

- (id)copyWithZone:(struct _NSZone*)__unused zone {
    return self;
}

@end

@implementation NSImage

+ (NSImage*)imageOfSize:(const Size&)size name:(const std::string&)name {
    NSImage* const image = [[NSImage alloc] init];
    image.name = name;
    image.size = NSMakeSize(size.width, size.height);
    return image;
}

+ (nullable NSImage*)imageNamed:(NSString*)name {
    const auto found = cocoa().pictures.find(textOf(name));
    if (found == cocoa().pictures.end()) return nil;
    return [NSImage imageOfSize:found->second name:found->first];
}

+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description {
    const auto found = cocoa().symbols.find(textOf(name));
    if (found == cocoa().symbols.end()) return nil;
    NSImage* const image = [NSImage imageOfSize:found->second name:found->first];
    image.isSystemSymbol = true;
    image.isTemplate = true; // as all symbols are
    image.accessibilityDescription = description;
    return image;
}

- (void)setTemplate:(BOOL)isTemplate {
    _isTemplate = isTemplate;
}

/// A symbol keeps its proportions: its height is the font's here.
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    if (configuration == nil || !_isSystemSymbol) return nil;
    const double scale = configuration.pointSize / self.size.height;
    NSImage* const image = [NSImage imageOfSize:{self.size.width * scale, configuration.pointSize}
                                           name:_name];
    image.isSystemSymbol = true;
    image.configuration = configuration;
    return image;
}

- (void)drawInRect:(NSRect)rect {
    NSBitmapImageRep* const bitmap = NSGraphicsContext.currentContext.bitmap;
    if (bitmap == nil) fail("an image is drawn without a bitmap");
    cocoa().drawings.push_back({_name,
                                _configuration.pointSize,
                                _configuration.weight,
                                {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}});
    if (cocoa().paint) cocoa().paint(bitmap.bitmapData, static_cast<std::size_t>(bitmap.side));
}

@end

// Drawing

@implementation NSBitmapImageRep {
    std::vector<std::uint8_t> _bytes;
}

- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samplesPerPixel
                                         hasAlpha:(BOOL)hasAlpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel {
    const bool isAsMeant = planes == nullptr && width > 0 && width == height && bitsPerSample == 8 &&
                           samplesPerPixel == 4 && hasAlpha && !isPlanar && bytesPerRow == 4 * width &&
                           bitsPerPixel == 32 && textOf(colorSpaceName) == textOf(NSDeviceRGBColorSpace);
    if (!isAsMeant) fail("a bitmap that is not square with four bytes a pixel");
    if (!cocoa().givesBitmaps) return nil;
    _side = width;
    _bytes.assign(static_cast<std::size_t>(height * bytesPerRow), 0xAA); // the system promises no content
    return self;
}

- (nullable unsigned char*)bitmapData {
    return cocoa().givesBitmapBytes ? _bytes.data() : nullptr;
}

@end

namespace {

/// The state of the thread's drawing: the current context, and those that have been saved.
struct Drawing {
    NSGraphicsContext* current = nil;
    std::vector<NSGraphicsContext*> saved;
};

Drawing& drawing() {
    static Drawing one;
    return one;
}

} // namespace

@implementation NSGraphicsContext

+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap {
    if (!cocoa().givesGraphicsContexts) return nil;
    NSGraphicsContext* const context = [[NSGraphicsContext alloc] init];
    context.bitmap = bitmap;
    return context;
}

+ (nullable NSGraphicsContext*)currentContext {
    return drawing().current;
}

+ (void)setCurrentContext:(nullable NSGraphicsContext*)context {
    drawing().current = context;
}

+ (void)saveGraphicsState {
    drawing().saved.push_back(drawing().current);
    ++cocoa().savedGraphicsStates;
}

+ (void)restoreGraphicsState {
    if (drawing().saved.empty()) fail("a graphics state is restored that has not been saved");
    drawing().current = drawing().saved.back();
    drawing().saved.pop_back();
    --cocoa().savedGraphicsStates;
}

@end
