#pragma once

#import <Foundation/Foundation.h>
#include <string_view>

namespace kelvinbar {

/// An empty text for bytes that are not UTF-8.
inline NSString* cocoaText(std::string_view text) {
    NSString* const result = [[NSString alloc] initWithBytes:text.data()
                                                      length:text.size()
                                                    encoding:NSUTF8StringEncoding];
    return result == nil ? @"" : result;
}

} // namespace kelvinbar
