// cleanup_thread_posix_test.cpp - the thread that ends an asynchronous single snap
#include "platform/thread.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <pthread.h>

#include <atomic>
#include <cstddef>

namespace {

using CleanupThread = SnapFixture;

std::size_t StackSizeOfThisThread() {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return 0;
    }
    std::size_t size = 0;
    pthread_attr_getstacksize(&attributes, &size);
    pthread_attr_destroy(&attributes);
    return size;
}

TEST_F(CleanupThread, HasAStackOf16384Bytes) {
    std::size_t expected = 0;
    const auto measure = [](void* size) {
        *static_cast<std::size_t*>(size) = StackSizeOfThisThread();
    };
    platform::Thread::Start(measure, &expected, 16384).Join();
    ASSERT_GT(expected, 0u);
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    std::atomic<std::size_t> size{0};
    sdk.OnCall("PxnFeatureCommandRun", [&] { size = StackSizeOfThisThread(); });
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
    EXPECT_EQ(size, expected);
}

} // namespace
