// The layouts, constants and signatures of the SDK that this folder relies on, as static assertions.

#include "machines/macos/MainPort.h"
#include "smc/ReturnCode.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#import <Foundation/Foundation.h>
#include <IOKit/IOKitLib.h>
#include <sys/sysctl.h>
#include <type_traits>

namespace kelvinbar {

namespace {

template <typename Actual, typename Expected>
constexpr bool isSame = std::is_same_v<Actual, Expected>;

} // namespace

// Calls of I/O Kit
static_assert(isSame<decltype(&IOServiceMatching), CFMutableDictionaryRef (*)(const char*)>);
static_assert(isSame<decltype(&IOServiceGetMatchingService), io_service_t (*)(mach_port_t, CFDictionaryRef)>);
static_assert(isSame<decltype(&IOServiceOpen),
                     kern_return_t (*)(io_service_t, task_port_t, std::uint32_t, io_connect_t*)>);
static_assert(isSame<decltype(&IOServiceClose), kern_return_t (*)(io_connect_t)>);
static_assert(
    isSame<decltype(&IOConnectCallStructMethod),
           kern_return_t (*)(mach_port_t, std::uint32_t, const void*, std::size_t, void*, std::size_t*)>);
static_assert(isSame<decltype(&IOObjectRelease), kern_return_t (*)(io_object_t)>);
static_assert(isSame<decltype(&IOObjectGetClass), kern_return_t (*)(io_object_t, io_name_t)>);
static_assert(isSame<decltype(&IOIteratorNext), io_object_t (*)(io_iterator_t)>);
static_assert(isSame<decltype(&IORegistryCreateIterator),
                     kern_return_t (*)(mach_port_t, const io_name_t, IOOptionBits, io_iterator_t*)>);
static_assert(isSame<decltype(&IORegistryEntryGetName), kern_return_t (*)(io_registry_entry_t, io_name_t)>);
static_assert(
    isSame<decltype(&IORegistryEntryCreateCFProperties),
           kern_return_t (*)(io_registry_entry_t, CFMutableDictionaryRef*, CFAllocatorRef, IOOptionBits)>);
static_assert(isSame<decltype(&IORegistryEntryCreateCFProperty),
                     CFTypeRef (*)(io_registry_entry_t, CFStringRef, CFAllocatorRef, IOOptionBits)>);

// Handles and return codes, which pass through ports with types of their own
static_assert(isSame<io_object_t, mach_port_t> && sizeof(io_object_t) == 4);
static_assert(std::is_unsigned_v<io_object_t> && isSame<io_connect_t, io_object_t>);
static_assert(isSame<SMCDriver::Service, std::uint32_t> && isSame<SMCDriver::Connection, std::uint32_t>);
static_assert(sizeof(kern_return_t) == sizeof(ReturnCode));
static_assert(IO_OBJECT_NULL == 0 && mainPort == MACH_PORT_NULL);
static_assert(KERN_SUCCESS == kernSuccess && KERN_INVALID_ARGUMENT == kernInvalidArgument);
static_assert(KERN_FAILURE == kernFailure && KERN_NOT_FOUND == kernNotFound);
static_assert(sizeof(io_name_t) == 128);
static_assert(kIORegistryIterateRecursively == 1);
static_assert(sizeof(SMCParamBlock) == 80);

// Core Foundation
static_assert(sizeof(CFIndex) == 8 && std::is_signed_v<CFIndex> && sizeof(CFRange) == 16);
static_assert(sizeof(Boolean) == 1 && sizeof(UInt8) == 1);
static_assert(kCFStringEncodingUTF8 == 0x08000100);
static_assert(kCFNumberSInt64Type == 4 && kCFNumberFloat64Type == 6);
static_assert(isSame<decltype(&CFStringGetBytes), CFIndex (*)(CFStringRef, CFRange, CFStringEncoding, UInt8,
                                                              Boolean, UInt8*, CFIndex, CFIndex*)>);
static_assert(isSame<decltype(&CFStringCreateWithBytes),
                     CFStringRef (*)(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean)>);
static_assert(
    isSame<decltype(&CFDictionaryGetKeysAndValues), void (*)(CFDictionaryRef, const void**, const void**)>);
static_assert(isSame<decltype(&CFNumberGetValue), Boolean (*)(CFNumberRef, CFNumberType, void*)>);

// Process information
static_assert(NSProcessInfoThermalStateNominal == 0 && NSProcessInfoThermalStateFair == 1);
static_assert(NSProcessInfoThermalStateSerious == 2 && NSProcessInfoThermalStateCritical == 3);
static_assert(isSame<decltype(&sysctlbyname), int (*)(const char*, void*, std::size_t*, void*, std::size_t)>);

} // namespace kelvinbar
