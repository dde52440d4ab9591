#pragma once

#import <Foundation/Foundation.h>
#include <string_view>

namespace kelvinbar {

/// Converts UTF-8. Returns an empty text for invalid bytes, never nil.
inline NSString* cocoaText(std::string_view text) {
    NSString* const result = [[NSString alloc] initWithBytes:text.data()
                                                      length:text.size()
                                                    encoding:NSUTF8StringEncoding];
    return result == nil ? @"" : result;
}

} // namespace kelvinbar
