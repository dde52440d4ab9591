// A library to be preloaded: the wall clock is wrong by the number of seconds in the file $CLOCK_SHIFT_FILE,
// which may change at any time. Clocks that cannot be set are right.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <sys/time.h>

namespace {

using ClockGetTime = int (*)(clockid_t, timespec*);

long shiftInSeconds() {
    const char* const name = std::getenv("CLOCK_SHIFT_FILE");
    std::FILE* const file = name == nullptr ? nullptr : std::fopen(name, "re");
    if (file == nullptr) return 0;
    long shift = 0;
    if (std::fscanf(file, "%ld", &shift) != 1) shift = 0;
    std::fclose(file);
    return shift;
}

bool isWallClock(clockid_t clock) { return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE; }

int trueTime(clockid_t clock, timespec* time) {
    static const auto next = reinterpret_cast<ClockGetTime>(::dlsym(RTLD_NEXT, "clock_gettime"));
    return next(clock, time);
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const int result = trueTime(clock, time);
    if (result == 0 && isWallClock(clock)) time->tv_sec += shiftInSeconds();
    return result;
}

int gettimeofday(timeval* time, void*) noexcept {
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    *time = {.tv_sec = now.tv_sec, .tv_usec = now.tv_nsec / 1000};
    return result;
}

time_t time(time_t* result) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (result != nullptr) *result = now.tv_sec;
    return now.tv_sec;
}

} // extern "C"
