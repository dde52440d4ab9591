// What the program calls of I/O Kit, declared for checks on machines without it. On a Mac, the system's own
// headers are used.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __APPLE__
#include <mach/mach.h>
#else
typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef mach_port_t task_port_t;
#define MACH_PORT_NULL 0
#define KERN_SUCCESS 0
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef mach_port_t io_object_t;
typedef io_object_t io_connect_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef uint32_t IOOptionBits;
typedef char io_name_t[128];

#define IO_OBJECT_NULL ((io_object_t)0)
#define kIOServicePlane "IOService"

enum { kIORegistryIterateRecursively = 0x00000001 };

#ifndef __APPLE__
mach_port_t mach_task_self(void);
#endif

kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IOObjectGetClass(io_object_t object, io_name_t className);

CFMutableDictionaryRef IOServiceMatching(const char* name);
io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);
kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connect);
kern_return_t IOServiceClose(io_connect_t connect);
kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector, const void* input,
                                        size_t inputSize, void* output, size_t* outputSize);

io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IORegistryCreateIterator(mach_port_t mainPort, const io_name_t plane, IOOptionBits options,
                                       io_iterator_t* iterator);
kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);

#ifdef __cplusplus
}
#endif
