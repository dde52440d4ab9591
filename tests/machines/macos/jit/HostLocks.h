// Read before every source: locks that are not initialised by a call are all zeros on the machine that runs
// the tests, and smaller than on macOS.
#pragma once

#include <pthread.h>

#undef _PTHREAD_MUTEX_SIG_init
#define _PTHREAD_MUTEX_SIG_init 0
#undef _PTHREAD_COND_SIG_init
#define _PTHREAD_COND_SIG_init 0
#undef _PTHREAD_RWLOCK_SIG_init
#define _PTHREAD_RWLOCK_SIG_init 0
#undef _PTHREAD_ONCE_SIG_init
#define _PTHREAD_ONCE_SIG_init 0
