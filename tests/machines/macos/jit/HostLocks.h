// Included before every source: statically initialised locks are all zeros on the host, and smaller than on
// macOS.
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
