// Locks and threads. Objects of the host's library fit into those of macOS, but other bytes are in them.

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <mach/mach_types.h>
#include <pthread.h>
#include <sched.h>

namespace {

/// The function of the host that one of ours stands before.
template <typename Function>
Function* hostFunction(const char* name, Function* /*ours*/) {
    // No handle: everything that is loaded.
    return reinterpret_cast<Function*>(dlsym(nullptr, name));
}

constexpr int hostTimedOut = 110;
constexpr int hostRecursive = 1;

/// A lock that nothing but an initialiser has touched begins with a signature, where the host's has zeros.
void translateInitialValue(void* lock, long signature) {
    __atomic_compare_exchange_n(static_cast<long*>(lock), &signature, 0, false, __ATOMIC_ACQ_REL,
                                __ATOMIC_ACQUIRE);
}

void translateInitialValue(pthread_mutex_t* mutex) { translateInitialValue(mutex, _PTHREAD_MUTEX_SIG_init); }

void translateInitialValue(pthread_cond_t* condition) {
    translateInitialValue(condition, _PTHREAD_COND_SIG_init);
}

/// A variable of threads. Its function returns the address for the calling thread.
struct ThreadVariable {
    void* (*function)(ThreadVariable*);
    std::size_t key; ///< plus one; null before the first use
    const void* initialValue;
};

/// No such variable is larger, in the program and in the C++ library.
constexpr std::size_t variableSize = 2 * sizeof(void*);

pthread_key_t keyOf(ThreadVariable& variable) {
    static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    if (variable.key == 0) {
        pthread_key_t created = 0;
        pthread_key_create(&created, std::free);
        variable.key = created + 1;
    }
    pthread_mutex_unlock(&mutex);
    return variable.key - 1;
}

} // namespace

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const auto host = hostFunction("pthread_mutex_lock", pthread_mutex_lock);
    translateInitialValue(mutex);
    return host(mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) {
    static const auto host = hostFunction("pthread_mutex_trylock", pthread_mutex_trylock);
    translateInitialValue(mutex);
    return host(mutex);
}

int pthread_mutexattr_settype(pthread_mutexattr_t* attributes, int type) {
    static const auto host = hostFunction("pthread_mutexattr_settype", pthread_mutexattr_settype);
    return host(attributes, type == PTHREAD_MUTEX_RECURSIVE ? hostRecursive : type);
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    static const auto host = hostFunction("pthread_cond_wait", pthread_cond_wait);
    translateInitialValue(condition);
    return host(condition, mutex);
}

int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* time) {
    static const auto host = hostFunction("pthread_cond_timedwait", pthread_cond_timedwait);
    translateInitialValue(condition);
    const int code = host(condition, mutex, time);
    return code == hostTimedOut ? ETIMEDOUT : code;
}

int pthread_cond_signal(pthread_cond_t* condition) {
    static const auto host = hostFunction("pthread_cond_signal", pthread_cond_signal);
    translateInitialValue(condition);
    return host(condition);
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
    static const auto host = hostFunction("pthread_cond_broadcast", pthread_cond_broadcast);
    translateInitialValue(condition);
    return host(condition);
}

// The C++ library waits with these, and looks again when it is woken: it may be so at any time.
int __ulock_wait(std::uint32_t /*operation*/, void* /*address*/, std::uint64_t /*value*/,
                 std::uint32_t /*microseconds*/) {
    return sched_yield();
}

int __ulock_wake(std::uint32_t /*operation*/, void* /*address*/, std::uint64_t /*value*/) { return 0; }

// Tells whether a static object is initialised by the thread that asks for it.
mach_port_t pthread_mach_thread_np(pthread_t thread) {
    return static_cast<mach_port_t>(reinterpret_cast<std::uintptr_t>(thread) >> 12U);
}

/// The address of the calling thread's variable, which is created at its first use.
void* addressOfThreadVariable(ThreadVariable* variable) {
    const pthread_key_t key = keyOf(*variable);
    void* place = pthread_getspecific(key);
    if (place == nullptr) {
        place = std::malloc(variableSize);
        std::memcpy(place, variable->initialValue, variableSize);
        pthread_setspecific(key, place);
    }
    return place;
}

} // extern "C"

// The function of every such variable. Its callers expect that it changes no register but those of the call
// itself.
#ifdef __aarch64__
__asm(R"(
    .globl __tlv_bootstrap
    .p2align 2
__tlv_bootstrap:
    stp x29, x30, [sp, #-16]!
    stp x1, x2, [sp, #-16]!
    stp x3, x4, [sp, #-16]!
    stp x5, x6, [sp, #-16]!
    stp x7, x8, [sp, #-16]!
    stp x9, x10, [sp, #-16]!
    stp x11, x12, [sp, #-16]!
    stp x13, x14, [sp, #-16]!
    stp x15, x18, [sp, #-16]!
    stp q0, q1, [sp, #-32]!
    stp q2, q3, [sp, #-32]!
    stp q4, q5, [sp, #-32]!
    stp q6, q7, [sp, #-32]!
    bl _addressOfThreadVariable
    ldp q6, q7, [sp], #32
    ldp q4, q5, [sp], #32
    ldp q2, q3, [sp], #32
    ldp q0, q1, [sp], #32
    ldp x15, x18, [sp], #16
    ldp x13, x14, [sp], #16
    ldp x11, x12, [sp], #16
    ldp x9, x10, [sp], #16
    ldp x7, x8, [sp], #16
    ldp x5, x6, [sp], #16
    ldp x3, x4, [sp], #16
    ldp x1, x2, [sp], #16
    ldp x29, x30, [sp], #16
    ret
)");
#endif
