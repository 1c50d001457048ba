// service_lock_test.cpp - what excludes services from one another and from opening and closing
#include "services/service_lock.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace pyxen;

namespace {

/// What another thread gets.
bool EntersElsewhere(ServiceLock& lock, bool mayWait) NO_THREAD_SAFETY_ANALYSIS {
    bool entered = false;
    std::thread other([&]() NO_THREAD_SAFETY_ANALYSIS {
        entered = lock.Enter(mayWait);
        if (entered) {
            lock.Unlock();
        }
    });
    other.join();
    return entered;
}

/// The analysis does not follow conditional and recursive locking.
void Leave(ServiceLock& lock) NO_THREAD_SAFETY_ANALYSIS {
    lock.Unlock();
}
bool Enters(ServiceLock& lock, bool mayWait) NO_THREAD_SAFETY_ANALYSIS {
    return lock.Enter(mayWait);
}
void Lock(ServiceLock& lock) NO_THREAD_SAFETY_ANALYSIS {
    lock.Lock();
}

TEST(ServiceLock, LetsOneServiceIn) {
    ServiceLock lock;
    ASSERT_TRUE(Enters(lock, false));
    std::atomic<bool> isRefused{false};
    std::thread other([&] { isRefused = !Enters(lock, false); });
    EXPECT_TRUE(support::WaitUntil([&] { return isRefused.load(); })) << "waits";
    Leave(lock);
    other.join();
    EXPECT_TRUE(EntersElsewhere(lock, false));
    EXPECT_TRUE(EntersElsewhere(lock, true));
}

TEST(ServiceLock, RefusesAServiceOfTheThreadThatHoldsIt) {
    ServiceLock lock;
    Lock(lock);
    Lock(lock);
    Leave(lock);
    ASSERT_FALSE(Enters(lock, true)) << "must not wait for itself";
    EXPECT_FALSE(EntersElsewhere(lock, false)) << "given back by the inner one";
    Leave(lock);
    ASSERT_TRUE(Enters(lock, true));
    EXPECT_FALSE(Enters(lock, true));
    Leave(lock);
    EXPECT_TRUE(EntersElsewhere(lock, false));
}

} // namespace
