#include "tests/macos-runtime/system/Runtime.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <thread>
#include <unordered_map>

namespace {

using kelvinbar::objc::fail;

// Layouts of the ABI, as clang emits them

using Implementation = void (*)();

struct Method {
    const char* selector;
    const char* types;
    Implementation implementation;
};

/// The methods follow.
struct MethodList {
    std::uint32_t entrySize;
    std::uint32_t count;
};

struct ClassData {
    std::uint32_t flags;
    std::uint32_t instanceStart;
    std::uint32_t instanceSize;
    std::uint32_t reserved;
    const std::uint8_t* ivarLayout;
    const char* name;
    const MethodList* methods;
};

struct Class;

struct Object {
    Class* isa;
};

struct Class : Object {
    Class* superclass;
    void* cache;
    void* table;
    const ClassData* data;
};

struct BlockDescriptor {
    std::uintptr_t reserved;
    std::uintptr_t size;
    void (*copy)(void* copied, const void* original); ///< only if the block has helpers
    void (*dispose)(void* block);                     ///< the same
};

struct Block : Object {
    std::int32_t flags;
    std::int32_t reserved;
    Implementation invoke;
    const BlockDescriptor* descriptor;
};

struct ReceiverAndClass {
    Object* receiver;
    Class* implementing;
};

constexpr std::int32_t blockHasHelpers = 1 << 25;

} // namespace

extern "C" {

// What clang refers to by name. A class of that name is the address of the array.
void* _NSConcreteStackBlock[32];
void* _NSConcreteMallocBlock[32];
void* _objc_empty_cache;

void objc_msgSend();
Object* objc_retain(Object* object);
void objc_release(Object* object);

extern Class* classListStart[] __asm("__start_objc_classlist");
extern Class* classListEnd[] __asm("__stop_objc_classlist");

} // extern "C"

namespace {

// Objects

enum class State { alive, ending };

struct Life {
    std::size_t references = 1;
    std::size_t size = 0;
    State state = State::alive;
};

struct Registry {
    std::unordered_map<Object*, Life> living;
    std::unordered_map<Object*, std::string> released; ///< with the names of their classes
    std::unordered_map<Object*, std::set<Object**>> weakPlaces;
    std::unordered_map<std::string, std::thread::id> threads; ///< of the classes that are restricted to one
};

Registry& registry() {
    static Registry one;
    return one;
}

bool isHeapBlock(const Object* object) {
    return object->isa == reinterpret_cast<Class*>(_NSConcreteMallocBlock);
}

std::string nameOf(const Object* object) { return isHeapBlock(object) ? "block" : object->isa->data->name; }

void requireAlive(Object* object) {
    const auto found = registry().released.find(object);
    if (found != registry().released.end()) fail("a released " + found->second + " is used");
}

/// Null for what is not counted: classes, constants and blocks on the stack.
Life* lifeOf(Object* object) {
    requireAlive(object);
    const auto found = registry().living.find(object);
    return found == registry().living.end() ? nullptr : &found->second;
}

Object* makeObject(std::size_t size) {
    auto* const object = static_cast<Object*>(std::calloc(1, size));
    registry().living[object] = {.size = size};
    return object;
}

Implementation ownMethod(const Class& owner, const char* selector) {
    const MethodList* const list = owner.data->methods;
    if (list == nullptr) return nullptr;
    const auto* const first = reinterpret_cast<const Method*>(list + 1);
    const auto* const found = std::find_if(first, first + list->count, [&](const Method& method) {
        return std::strcmp(method.selector, selector) == 0;
    });
    return found == first + list->count ? nullptr : found->implementation;
}

/// Null if there is none.
Implementation findMethod(const Class* owner, const char* selector) {
    for (; owner != nullptr; owner = owner->superclass) {
        if (const Implementation method = ownMethod(*owner, selector)) return method;
    }
    return nullptr;
}

void requireItsThread(const Class* receiver) {
    for (; receiver != nullptr; receiver = receiver->superclass) {
        const auto found = registry().threads.find(receiver->data->name);
        if (found == registry().threads.end() || found->second == std::this_thread::get_id()) continue;
        fail("a message to " + found->first + " from another thread than the main one");
    }
}

template <typename... Arguments>
Object* send(Object* receiver, const char* selector, Arguments... arguments) {
    using Send = Object* (*)(Object*, const char*, Arguments...);
    return reinterpret_cast<Send>(objc_msgSend)(receiver, selector, arguments...);
}

/// Calls a method that the compiler generates for members of C++ and for references, from the base class on.
void construct(Object* object, const Class* part) {
    if (part == nullptr) return;
    construct(object, part->superclass);
    if (const Implementation method = ownMethod(*part, ".cxx_construct")) {
        reinterpret_cast<void (*)(Object*, const char*)>(method)(object, ".cxx_construct");
    }
}

/// The opposite of `construct`, in the opposite order.
void destruct(Object* object) {
    for (const Class* part = object->isa; part != nullptr; part = part->superclass) {
        if (const Implementation method = ownMethod(*part, ".cxx_destruct")) {
            reinterpret_cast<void (*)(Object*, const char*)>(method)(object, ".cxx_destruct");
        }
    }
}

/// Keeps the memory, filled with nonsense, so that nothing else is found at the address.
void bury(Object* object) {
    const auto life = registry().living.find(object);
    registry().released[object] = nameOf(object);
    std::memset(static_cast<void*>(object), 0xDD, life->second.size);
    registry().living.erase(life);
}

void clearWeakPlaces(Object* object) {
    for (Object** const place : registry().weakPlaces[object]) *place = nullptr;
    registry().weakPlaces.erase(object);
}

void endBlock(Block& block) {
    if ((block.flags & blockHasHelpers) != 0) block.descriptor->dispose(&block);
    bury(&block);
}

void end(Object* object, Life& life) {
    life.state = State::ending;
    clearWeakPlaces(object);
    if (isHeapBlock(object)) {
        endBlock(*static_cast<Block*>(object));
    } else {
        send(object, "dealloc"); // up to NSObject, which calls objc_end
    }
}

// Autorelease pools

struct Pools {
    std::vector<Object*> objects;
    std::vector<std::size_t> starts; ///< index of the first object of each open pool
};

Pools& pools() {
    thread_local Pools own;
    return own;
}

/// The program would otherwise use members in each other's place.
__attribute__((constructor)) void requireLayoutsToFit() {
    for (Class** each = classListStart; each != classListEnd; ++each) {
        const Class* const base = (*each)->superclass;
        if (base == nullptr || (*each)->data->instanceStart >= base->data->instanceSize) continue;
        fail(std::string("the members of ") + (*each)->data->name + " overlap those of its base class");
    }
}

} // namespace

namespace kelvinbar::objc {

void fail(const std::string& message) {
    std::fprintf(stderr, "Objective-C: %s\n", message.c_str());
    std::fflush(nullptr);
    std::abort();
}

void restrictToThisThread(const std::string& className) {
    registry().threads[className] = std::this_thread::get_id();
}

std::vector<std::string> liveObjects() {
    std::vector<std::string> names;
    for (const auto& [object, life] : registry().living) names.push_back(nameOf(object));
    std::ranges::sort(names);
    return names;
}

void forgetReleasedObjects() {
    for (const auto& [object, name] : registry().released) std::free(object);
    registry().released.clear();
}

void callBlock(void* block, void* argument) {
    auto* const called = static_cast<Block*>(block);
    requireAlive(called);
    reinterpret_cast<void (*)(Block*, void*)>(called->invoke)(called, argument);
}

} // namespace kelvinbar::objc

extern "C" {

// Messages. The assembler code below calls these two with the registers of the arguments saved.

Implementation objc_find(Object* receiver, const char* selector) {
    requireAlive(receiver);
    requireItsThread(receiver->isa);
    if (const Implementation method = findMethod(receiver->isa, selector)) return method;
    fail(nameOf(receiver) + " does not implement " + selector);
}

Implementation objc_findSuper(const ReceiverAndClass* super, const char* selector) {
    if (const Implementation method = findMethod(super->implementing->superclass, selector)) return method;
    fail(std::string("no base class of ") + super->implementing->data->name + " implements " + selector);
}

bool objc_responds(Object* receiver, const char* selector) {
    return findMethod(receiver->isa, selector) != nullptr;
}

// Creation and end

Object* objc_create(Class* type) {
    Object* const object = makeObject(type->data->instanceSize);
    object->isa = type;
    construct(object, type);
    return object;
}

void objc_end(Object* object) {
    destruct(object);
    bury(object);
}

Object* objc_alloc(Object* type) { return send(type, "alloc"); }

Object* objc_alloc_init(Object* type) { return send(objc_alloc(type), "init"); }

// References

Object* objc_retain(Object* object) {
    if (object == nullptr) return nullptr;
    if (Life* const life = lifeOf(object)) ++life->references;
    return object;
}

void objc_release(Object* object) {
    if (object == nullptr) return;
    Life* const life = lifeOf(object);
    if (life == nullptr) return;
    if (life->references == 0) fail("a " + nameOf(object) + " is released while it ends");
    if (--life->references == 0 && life->state == State::alive) end(object, *life);
}

Object* objc_autorelease(Object* object) {
    if (object == nullptr || lifeOf(object) == nullptr) return object;
    if (pools().starts.empty()) fail("a " + nameOf(object) + " is autoreleased without a pool");
    pools().objects.push_back(object);
    return object;
}

Object* objc_autoreleaseReturnValue(Object* object) { return objc_autorelease(object); }

Object* objc_retainAutorelease(Object* object) { return objc_autorelease(objc_retain(object)); }

Object* objc_retainAutoreleaseReturnValue(Object* object) { return objc_retainAutorelease(object); }

Object* objc_retainAutoreleasedReturnValue(Object* object) { return objc_retain(object); }

Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) { return object; }

void* objc_autoreleasePoolPush() {
    pools().starts.push_back(pools().objects.size());
    return reinterpret_cast<void*>(pools().starts.size());
}

void objc_autoreleasePoolPop(void* pool) {
    if (pool != reinterpret_cast<void*>(pools().starts.size()))
        fail("pools end in another order than they began");
    while (pools().objects.size() > pools().starts.back()) {
        Object* const object = pools().objects.back();
        pools().objects.pop_back();
        objc_release(object);
    }
    pools().starts.pop_back();
}

void objc_storeStrong(Object** place, Object* value) {
    objc_retain(value);
    Object* const former = *place;
    *place = value;
    objc_release(former);
}

// Weak references

Object* objc_initWeak(Object** place, Object* value) {
    *place = value;
    if (value != nullptr && lifeOf(value) != nullptr) registry().weakPlaces[value].insert(place);
    return value;
}

void objc_destroyWeak(Object** place) {
    if (*place != nullptr) registry().weakPlaces[*place].erase(place);
}

Object* objc_storeWeak(Object** place, Object* value) {
    objc_destroyWeak(place);
    return objc_initWeak(place, value);
}

Object* objc_loadWeakRetained(Object** place) { return objc_retain(*place); }

// Properties

Object* objc_getProperty(Object* object, const char* /*selector*/, std::ptrdiff_t offset, bool /*isAtomic*/) {
    auto* const place = reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset);
    return objc_retainAutorelease(*place);
}

void objc_setProperty_atomic(Object* object, const char* /*selector*/, Object* value, std::ptrdiff_t offset) {
    objc_storeStrong(reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset), value);
}

void objc_setProperty_atomic_copy(Object* object, const char* selector, Object* value,
                                  std::ptrdiff_t offset) {
    Object* const copied = send(value, "copy");
    objc_setProperty_atomic(object, selector, copied, offset);
    objc_release(copied);
}

void objc_copyStruct(void* to, const void* from, std::ptrdiff_t size, bool /*isAtomic*/,
                     bool /*hasReferences*/) {
    std::memcpy(to, from, static_cast<std::size_t>(size));
}

// Collections

void objc_enumerationMutation(Object* collection) {
    fail("a " + nameOf(collection) + " changes while it is read");
}

// Blocks

Object* objc_retainBlock(Object* object) {
    if (object == nullptr) return nullptr;
    if (lifeOf(object) != nullptr) return objc_retain(object);
    if (object->isa != reinterpret_cast<Class*>(_NSConcreteStackBlock)) return object;
    auto* const original = static_cast<Block*>(object);
    auto* const copied = static_cast<Block*>(makeObject(original->descriptor->size));
    std::memcpy(static_cast<void*>(copied), original, original->descriptor->size);
    copied->isa = reinterpret_cast<Class*>(_NSConcreteMallocBlock);
    if ((copied->flags & blockHasHelpers) != 0) copied->descriptor->copy(copied, original);
    return copied;
}

} // extern "C"

// A message is sent by a jump: the method finds the arguments as they were, in registers and on the stack.
// Only what the lookup could change is saved. `receiver` is the register of the receiver, or of the pointer
// to receiver and class; `selector` that of the selector. Nil answers zero of every kind that is returned in
// registers.
__asm(R"(
.macro KELVINBAR_SEND name, lookup, receiver, selector, isSuper
    .globl \name
    .type \name, @function
\name:
    .cfi_startproc
    test \receiver, \receiver
    jz 1f
    push %rbp
    .cfi_def_cfa_offset 16
    .cfi_offset %rbp, -16
    mov %rsp, %rbp
    .cfi_def_cfa_register %rbp
    sub $192, %rsp
    mov %rdi, -8(%rbp)
    mov %rsi, -16(%rbp)
    mov %rdx, -24(%rbp)
    mov %rcx, -32(%rbp)
    mov %r8, -40(%rbp)
    mov %r9, -48(%rbp)
    mov %rax, -56(%rbp)
    movups %xmm0, -80(%rbp)
    movups %xmm1, -96(%rbp)
    movups %xmm2, -112(%rbp)
    movups %xmm3, -128(%rbp)
    movups %xmm4, -144(%rbp)
    movups %xmm5, -160(%rbp)
    movups %xmm6, -176(%rbp)
    movups %xmm7, -192(%rbp)
    mov \selector, %rax
    mov \receiver, %rdi
    mov %rax, %rsi
    call \lookup
    mov %rax, %r11
    mov -8(%rbp), %rdi
    mov -16(%rbp), %rsi
    mov -24(%rbp), %rdx
    mov -32(%rbp), %rcx
    mov -40(%rbp), %r8
    mov -48(%rbp), %r9
    mov -56(%rbp), %rax
    movups -80(%rbp), %xmm0
    movups -96(%rbp), %xmm1
    movups -112(%rbp), %xmm2
    movups -128(%rbp), %xmm3
    movups -144(%rbp), %xmm4
    movups -160(%rbp), %xmm5
    movups -176(%rbp), %xmm6
    movups -192(%rbp), %xmm7
    leave
    .cfi_def_cfa %rsp, 8
    .if \isSuper
    mov (%rdi), %rdi
    .endif
    jmp *%r11
1:
    xor %eax, %eax
    xor %edx, %edx
    pxor %xmm0, %xmm0
    pxor %xmm1, %xmm1
    ret
    .cfi_endproc
    .size \name, . - \name
.endm

    .text
    KELVINBAR_SEND objc_msgSend, objc_find, %rdi, %rsi, 0
    KELVINBAR_SEND objc_msgSend_stret, objc_find, %rsi, %rdx, 0
    KELVINBAR_SEND objc_msgSendSuper2, objc_findSuper, %rdi, %rsi, 1
)");
