// What the program calls of Core Foundation, declared for checks on machines without it. On a Mac, the
// system's own headers are used.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFAllocator* CFAllocatorRef;

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned int CFStringEncoding;
typedef CFIndex CFNumberType;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

enum { kCFStringEncodingUTF8 = 0x08000100 };

enum { kCFNumberSInt64Type = 4, kCFNumberFloat64Type = 6 };

extern const CFAllocatorRef kCFAllocatorDefault;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef text);
CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex room, CFIndex* used);

CFTypeID CFNumberGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CFTypeID CFDataGetTypeID(void);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values);

#ifdef __cplusplus
}
#endif
