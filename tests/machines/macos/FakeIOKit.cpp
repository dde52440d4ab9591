#include "tests/machines/macos/FakeIOKit.h"

#include "machines/macos/AutoreleaseScope.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>

namespace {

using kelvinbar::fakes::FakeIOKit;
using kelvinbar::fakes::FakeNumber;
using kelvinbar::fakes::FakeRegistryEntry;
using kelvinbar::fakes::FakeValue;
using kelvinbar::fakes::OtherObject;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "FakeIOKit: %s\n", what);
    std::abort();
}

FakeIOKit& fake() { return FakeIOKit::shared(); }

// Ports

enum class PortKind { service, connection, iterator, entry };

struct Port {
    PortKind kind;
    std::size_t position = 0; ///< index of an entry, or progress of an iterator
};

std::map<io_object_t, Port>& ports() {
    static std::map<io_object_t, Port> all;
    return all;
}

io_object_t makePort(PortKind kind, std::size_t position = 0) {
    static io_object_t last = 0x100;
    ports()[++last] = {kind, position};
    ++fake().live;
    return last;
}

Port& portOf(io_object_t object, PortKind kind) {
    const auto found = ports().find(object);
    if (found == ports().end()) fail("a port that is not there");
    if (found->second.kind != kind) fail("a port of another kind");
    return found->second;
}

void dropPort(io_object_t object) {
    if (ports().erase(object) == 0) fail("a port released twice");
    --fake().live;
}

// Objects

enum Type : CFTypeID {
    textType = 7,
    numberType = 22,
    booleanType = 21,
    dataType = 20,
    otherType = 42,
    dictionaryType = 18
};

struct Object {
    explicit Object(Type itsType) : type(itsType) {}

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    Type type;
    bool isValue = false; ///< of a property in a dictionary
};

std::vector<std::unique_ptr<Object>>& graveyard() {
    static std::vector<std::unique_ptr<Object>> all; // includes released objects, to detect their use
    return all;
}

struct Text final : Object {
    explicit Text(std::u16string characters) : Object(textType), text(std::move(characters)) {}

    std::u16string text;
};

struct Scalar final : Object {
    Scalar(Type itsType, FakeValue held) : Object(itsType), value(std::move(held)) {}

    FakeValue value;
};

std::unique_ptr<Object> makeObject(const FakeValue& value) {
    if (const auto* text = std::get_if<std::u16string>(&value)) return std::make_unique<Text>(*text);
    if (std::holds_alternative<FakeNumber>(value)) return std::make_unique<Scalar>(numberType, value);
    if (std::holds_alternative<bool>(value)) return std::make_unique<Scalar>(booleanType, value);
    if (std::holds_alternative<OtherObject>(value)) return std::make_unique<Scalar>(otherType, value);
    return std::make_unique<Scalar>(dataType, value);
}

struct Table final : Object {
    Table() : Object(dictionaryType) {}

    std::vector<std::unique_ptr<Object>> names;
    std::vector<std::unique_ptr<Object>> values;
};

/// The program owns the object and must release it.
const void* given(std::unique_ptr<Object> object) {
    ++fake().live;
    return object.release();
}

const Object& objectOf(const void* handle) {
    if (handle == nullptr) fail("no object");
    const auto& object = *static_cast<const Object*>(handle);
    const bool isBuried =
        std::ranges::any_of(graveyard(), [&](const auto& dead) { return dead.get() == handle; });
    if (isBuried) fail("an object used after its release");
    return object;
}

/// A null handle has no type.
template <typename T>
const T& objectOf(const void* handle, Type type) {
    const Object& object = objectOf(handle);
    if (object.type != type) fail("an object of another type");
    return static_cast<const T&>(object);
}

/// The number of UTF-16 units of the code point at `position`; 0 for an unpaired surrogate.
std::size_t unitCount(const std::u16string& text, std::size_t position) {
    const char16_t unit = text[position];
    if (unit < 0xD800 || unit > 0xDFFF) return 1;
    const bool isPair = unit < 0xDC00 && position + 1 < text.size() && text[position + 1] >= 0xDC00 &&
                        text[position + 1] <= 0xDFFF;
    return isPair ? 2 : 0;
}

std::string utf8Of(const std::u16string& text, std::size_t position, std::size_t count) {
    const std::uint32_t point =
        count == 1 ? text[position]
                   : 0x10000U + ((text[position] - 0xD800U) << 10U) + (text[position + 1] - 0xDC00U);
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    if (point < 0x80) return {byte(point)};
    if (point < 0x800) return {byte(0xC0U | (point >> 6U)), byte(0x80U | (point & 0x3FU))};
    if (point < 0x10000) {
        return {byte(0xE0U | (point >> 12U)), byte(0x80U | ((point >> 6U) & 0x3FU)),
                byte(0x80U | (point & 0x3FU))};
    }
    return {byte(0xF0U | (point >> 18U)), byte(0x80U | ((point >> 12U) & 0x3FU)),
            byte(0x80U | ((point >> 6U) & 0x3FU)), byte(0x80U | (point & 0x3FU))};
}

/// 1 if the number equals an integer of 64 bits, else 0.
template <typename Number>
Boolean convert(Number number, std::int64_t& whole) {
    if constexpr (std::is_floating_point_v<Number>) {
        constexpr auto limit = static_cast<Number>(9223372036854775808.0);
        if (!(number >= -limit && number < limit)) return 0;
    } else if (!std::in_range<std::int64_t>(number)) {
        return 0;
    }
    whole = static_cast<std::int64_t>(number);
    return static_cast<Number>(whole) == number ? 1 : 0;
}

const FakeRegistryEntry& entryOf(io_object_t object) {
    return fake().entries.at(portOf(object, PortKind::entry).position);
}

kern_return_t writeName(const std::string& text, io_name_t name) {
    // The system truncates a name that does not fit, and terminates it.
    const std::size_t length = std::min(text.size(), sizeof(io_name_t) - 1);
    std::memcpy(name, text.data(), length);
    name[length] = '\0';
    return KERN_SUCCESS;
}

} // namespace

namespace kelvinbar::fakes {

FakeIOKit& FakeIOKit::shared() {
    static FakeIOKit one;
    return one;
}

void FakeIOKit::reset() {
    if (live != 0) fail("something is still alive");
    graveyard().clear();
    live = 0;
    *this = FakeIOKit();
}

} // namespace kelvinbar::fakes

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;

void* objc_autoreleasePoolPush() {
    ++fake().scopes;
    return reinterpret_cast<void*>(++fake().openScopes);
}

void objc_autoreleasePoolPop(void* pool) {
    if (pool != reinterpret_cast<void*>(fake().openScopes--)) fail("scopes that end in another order");
}

#ifndef __APPLE__ // in the C library there
mach_port_t mach_task_self() { return 0x103; }
#endif

kern_return_t IOObjectRelease(io_object_t object) {
    dropPort(object);
    return KERN_SUCCESS;
}

kern_return_t IOObjectGetClass(io_object_t object, io_name_t className) {
    const FakeRegistryEntry& entry = entryOf(object);
    return entry.nameCode == KERN_SUCCESS ? writeName(entry.className, className) : entry.nameCode;
}

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    auto matching = std::make_unique<Table>();
    const std::string text(name);
    matching->names.push_back(std::make_unique<Text>(std::u16string(text.begin(), text.end())));
    return static_cast<CFMutableDictionaryRef>(const_cast<void*>(given(std::move(matching))));
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
    if (mainPort != MACH_PORT_NULL) fail("another port than the main one");
    const auto& wanted = static_cast<const Text&>(*objectOf<Table>(matching, dictionaryType).names.front());
    const bool isThere = !fake().serviceClass.empty() &&
                         std::string(wanted.text.begin(), wanted.text.end()) == fake().serviceClass;
    CFRelease(matching);
    return isThere ? makePort(PortKind::service) : IO_OBJECT_NULL;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connect) {
    portOf(service, PortKind::service);
    if (owningTask != mach_task_self() || type != 0) fail("opened for another task or type");
    if (fake().opensHandle) *connect = makePort(PortKind::connection);
    return fake().openCode;
}

kern_return_t IOServiceClose(io_connect_t connect) {
    portOf(connect, PortKind::connection);
    dropPort(connect);
    return KERN_SUCCESS;
}

kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector, const void* input,
                                        size_t inputSize, void* output, size_t* outputSize) {
    portOf(connection, PortKind::connection);
    return fake().call(selector, input, inputSize, output, outputSize);
}

kern_return_t IORegistryCreateIterator(mach_port_t mainPort, const io_name_t plane, IOOptionBits options,
                                       io_iterator_t* iterator) {
    if (mainPort != MACH_PORT_NULL) fail("another port than the main one");
    fake().openedPlane = plane;
    fake().openedOptions = options;
    if (fake().iteratorCode == KERN_SUCCESS) *iterator = makePort(PortKind::iterator);
    return fake().iteratorCode;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    Port& port = portOf(iterator, PortKind::iterator);
    const std::size_t end =
        std::min(fake().entries.size(), fake().invalidAfter.value_or(fake().entries.size()));
    return port.position < end ? makePort(PortKind::entry, port.position++) : IO_OBJECT_NULL;
}

kern_return_t IORegistryEntryGetName(io_registry_entry_t object, io_name_t name) {
    const FakeRegistryEntry& entry = entryOf(object);
    return entry.nameCode == KERN_SUCCESS ? writeName(entry.name, name) : entry.nameCode;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t object,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef /*allocator*/, IOOptionBits /*options*/) {
    const FakeRegistryEntry& entry = entryOf(object);
    if (entry.propertiesCode != KERN_SUCCESS || entry.givesNoDictionary) return entry.propertiesCode;
    auto table = std::make_unique<Table>();
    for (const auto& [name, value] : entry.properties) {
        table->names.push_back(makeObject(name));
        table->values.push_back(makeObject(value));
        table->values.back()->isValue = true;
    }
    *properties = static_cast<CFMutableDictionaryRef>(const_cast<void*>(given(std::move(table))));
    return KERN_SUCCESS;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t object, CFStringRef key,
                                          CFAllocatorRef /*allocator*/, IOOptionBits /*options*/) {
    const std::u16string& wanted = objectOf<Text>(key, textType).text;
    for (const auto& [name, value] : entryOf(object).properties) {
        if (name == FakeValue(wanted)) return given(makeObject(value));
    }
    return nullptr;
}

void CFRelease(CFTypeRef object) {
    objectOf(object);
    std::unique_ptr<Object> dead(const_cast<Object*>(static_cast<const Object*>(object)));
    --fake().live;
    graveyard().push_back(std::move(dead));
}

CFTypeID CFGetTypeID(CFTypeRef handle) {
    auto& object = const_cast<Object&>(objectOf(handle));
    if (std::exchange(object.isValue, false)) ++fake().convertedValues;
    return object.type;
}

CFTypeID CFStringGetTypeID() { return textType; }

CFTypeID CFNumberGetTypeID() { return numberType; }

CFTypeID CFBooleanGetTypeID() { return booleanType; }

CFTypeID CFDataGetTypeID() { return dataType; }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean /*isExternalRepresentation*/) {
    if (encoding != kCFStringEncodingUTF8) fail("another encoding");
    // The program only creates property names, which are ASCII.
    if (std::any_of(bytes, bytes + count, [](UInt8 byte) { return byte >= 0x80; })) return nullptr;
    return static_cast<CFStringRef>(given(std::make_unique<Text>(std::u16string(bytes, bytes + count))));
}

CFIndex CFStringGetLength(CFStringRef text) {
    return static_cast<CFIndex>(objectOf<Text>(text, textType).text.size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean /*isExternalRepresentation*/, UInt8* buffer, CFIndex room, CFIndex* used) {
    const std::u16string& text = objectOf<Text>(string, textType).text;
    if (encoding != kCFStringEncodingUTF8 || lossByte != 0) fail("another encoding");
    std::string bytes;
    auto position = static_cast<std::size_t>(range.location);
    const auto end = static_cast<std::size_t>(range.location + range.length);
    while (position < end) {
        const std::size_t units = unitCount(text, position);
        if (units == 0) break;
        const std::string character = utf8Of(text, position, units);
        if (buffer != nullptr && bytes.size() + character.size() > static_cast<std::size_t>(room)) break;
        bytes += character;
        position += units;
    }
    if (buffer != nullptr) std::memcpy(buffer, bytes.data(), bytes.size());
    *used = static_cast<CFIndex>(bytes.size());
    return static_cast<CFIndex>(position) - range.location;
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
    const auto& held = std::get<FakeNumber>(objectOf<Scalar>(number, numberType).value);
    return std::holds_alternative<float>(held) || std::holds_alternative<double>(held) ? 1 : 0;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const auto& held = std::get<FakeNumber>(objectOf<Scalar>(number, numberType).value);
    if (type == kCFNumberFloat64Type) {
        *static_cast<double*>(value) = std::visit([](auto each) { return static_cast<double>(each); }, held);
        return 1;
    }
    if (type != kCFNumberSInt64Type) fail("a type of number that is not asked for");
    return std::visit([&](auto each) { return convert(each, *static_cast<std::int64_t*>(value)); }, held);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return std::get<bool>(objectOf<Scalar>(boolean, booleanType).value) ? 1 : 0;
}

CFIndex CFDataGetLength(CFDataRef data) {
    const auto& scalar = objectOf<Scalar>(data, dataType);
    return static_cast<CFIndex>(std::get<std::vector<std::uint8_t>>(scalar.value).size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return std::get<std::vector<std::uint8_t>>(objectOf<Scalar>(data, dataType).value).data();
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>(objectOf<Table>(dictionary, dictionaryType).names.size());
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    const auto& table = objectOf<Table>(dictionary, dictionaryType);
    for (std::size_t index = 0; index < table.names.size(); ++index) {
        keys[index] = table.names[index].get();
        values[index] = table.values[index].get();
    }
}

} // extern "C"
