#include "desktop/macos/RoundedFontFile.h"

#import <AppKit/AppKit.h>
#import <CoreText/CoreText.h>

namespace kelvinbar {

std::string roundedFontFile() {
    @autoreleasepool {
        NSFontDescriptor* const usual = [NSFont systemFontOfSize:0 weight:NSFontWeightRegular].fontDescriptor;
        NSFontDescriptor* const rounded =
            [usual fontDescriptorWithDesign:NSFontDescriptorSystemDesignRounded];
        if (rounded == nil) return {};
        // The descriptor only asks for a design. That of the font which answers it knows the file.
        NSFont* const font = [NSFont fontWithDescriptor:rounded size:0];
        NSURL* const file = [font.fontDescriptor objectForKey:(__bridge NSString*)kCTFontURLAttribute];
        const char* const path = file.fileSystemRepresentation;
        return path == nullptr ? std::string() : path;
    }
}

} // namespace kelvinbar
