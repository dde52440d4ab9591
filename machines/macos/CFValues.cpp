#include "machines/macos/CFValues.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

bool hasType(CFTypeRef object, CFTypeID type) { return object != nullptr && CFGetTypeID(object) == type; }

std::optional<Value> numberValue(CFNumberRef number) {
    // The conversion fails when it would lose precision; a number that exceeds 64 bits becomes a double.
    std::int64_t whole = 0;
    if (CFNumberIsFloatType(number) == 0 && CFNumberGetValue(number, kCFNumberSInt64Type, &whole) != 0) {
        return Value(whole);
    }
    double real = 0;
    CFNumberGetValue(number, kCFNumberFloat64Type, &real);
    return Value(real);
}

Data dataIn(CFDataRef data) {
    const UInt8* const bytes = CFDataGetBytePtr(data);
    const CFIndex count = CFDataGetLength(data);
    return count > 0 ? Data(bytes, bytes + count) : Data();
}

} // namespace

std::optional<std::string> textIn(CFTypeRef object) {
    if (!hasType(object, CFStringGetTypeID())) return std::nullopt;
    const auto* const text = static_cast<CFStringRef>(object);
    const CFRange all{0, CFStringGetLength(text)};
    CFIndex size = 0;
    const CFIndex measured = CFStringGetBytes(text, all, kCFStringEncodingUTF8, 0, 0, nullptr, 0, &size);
    if (measured != all.length) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, 0, 0, reinterpret_cast<UInt8*>(bytes.data()), size,
                     &size);
    return bytes;
}

std::optional<Value> valueIn(CFTypeRef object) {
    if (hasType(object, CFNumberGetTypeID())) return numberValue(static_cast<CFNumberRef>(object));
    if (hasType(object, CFBooleanGetTypeID())) {
        return Value(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
    }
    if (hasType(object, CFDataGetTypeID())) return Value(dataIn(static_cast<CFDataRef>(object)));
    if (auto text = textIn(object)) return Value(*std::move(text));
    return std::nullopt;
}

Dictionary dictionaryIn(CFDictionaryRef dictionary, const std::function<bool(std::string_view)>& isWanted) {
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
    std::vector<const void*> names(count);
    std::vector<const void*> values(count);
    CFDictionaryGetKeysAndValues(dictionary, names.data(), values.data());
    Dictionary result;
    for (std::size_t index = 0; index < count; ++index) {
        const auto name = textIn(names[index]);
        if (!name || !isWanted(*name)) continue;
        if (auto value = valueIn(values[index])) result.append(*name, *std::move(value));
    }
    return result;
}

CFStringRef createString(std::string_view text) {
    return CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                   static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, 0);
}

} // namespace kelvinbar
