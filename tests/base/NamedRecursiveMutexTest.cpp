#include "base/NamedRecursiveMutex.h"

#include <future>
#include <mutex>

#include <gtest/gtest.h>

namespace kelvinbar::named_recursive_mutex_test {
namespace {

/// Whether another thread could take `mutex` now.
bool isFreeForOthers(NamedRecursiveMutex& mutex) {
    return std::async(std::launch::async,
                      [&mutex] {
                          const std::unique_lock lock(mutex, std::try_to_lock);
                          return lock.owns_lock();
                      })
        .get();
}

TEST(NamedRecursiveMutex, TellsItsName) {
    const NamedRecursiveMutex mutex("Kelvinbar.Test.Lock");
    EXPECT_EQ(mutex.name(), "Kelvinbar.Test.Lock");
}

TEST(NamedRecursiveMutex, IsFreeForOthersOnlyAfterAsManyUnlocksAsLocks) {
    NamedRecursiveMutex mutex("Kelvinbar.Test.Lock");
    {
        const std::lock_guard outer(mutex);
        {
            const std::lock_guard inner(mutex);
            EXPECT_FALSE(isFreeForOthers(mutex));
        }
        EXPECT_FALSE(isFreeForOthers(mutex));
    }
    EXPECT_TRUE(isFreeForOthers(mutex));
}

} // namespace
} // namespace kelvinbar::named_recursive_mutex_test
