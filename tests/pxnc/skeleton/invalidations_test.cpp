// invalidations_test.cpp - registered invalidation callbacks and the thread that calls them
#include "pxnc/skeleton/invalidations.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace skeleton_tests {
namespace {

using skeleton::Invalidations;

const char* const kWidth = "Width";
const char* const kHeight = "Height";
const PxnHandle kCamera = reinterpret_cast<PxnHandle>(0x10);
const PxnHandle kStream = reinterpret_cast<PxnHandle>(0x20);

/// Records its calls, and runs `action` in each.
struct Receiver {
    static void Call(PxnHandle, const char*, void* context) {
        auto& self = *static_cast<Receiver*>(context);
        ++self.calls;
        if (self.action) {
            self.action();
        }
        ++self.returns;
    }

    std::atomic<int> calls{0};
    std::atomic<int> returns{0};
    std::function<void()> action = nullptr;
};

class InvalidationsTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(changes.Start()); }
    void Register(Receiver& receiver, PxnHandle handle = kCamera, const char* name = kWidth) {
        changes.Register(handle, name, &Receiver::Call, &receiver);
    }
    bool Unregister() { return changes.Unregister(kCamera, kWidth, &Receiver::Call); }

    Invalidations changes;
};

TEST_F(InvalidationsTest, ReachWhatIsRegisteredForThem) {
    Receiver width;
    Receiver height;
    Receiver stream;
    Register(width);
    Register(height, kCamera, kHeight);
    Register(stream, kStream);
    changes.Post(kCamera, kWidth);
    changes.Drain();
    EXPECT_EQ(width.calls, 1);
    EXPECT_EQ(height.calls, 0);
    EXPECT_EQ(stream.calls, 0);
}

TEST_F(InvalidationsTest, TheNewestOfSeveralContextsIsRemovedFirst) {
    Receiver first;
    Receiver second;
    Register(first);
    Register(second);
    EXPECT_TRUE(Unregister());
    EXPECT_EQ(changes.Call(kCamera, kWidth), 1u);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0);
    EXPECT_TRUE(Unregister());
    EXPECT_FALSE(Unregister());
    EXPECT_EQ(changes.Call(kCamera, kWidth), 0u);
}

TEST_F(InvalidationsTest, WorkRunsBeforeTheCallbacksOfWhatItReturns) {
    Receiver receiver;
    int latched = 0;
    int seen = 0;
    receiver.action = [&] {
        seen = latched;
    };
    Register(receiver);
    changes.PostWork(kCamera, [&] {
        latched = 5;
        return std::vector{kWidth};
    });
    changes.Drain();
    EXPECT_EQ(seen, 5);
}

TEST_F(InvalidationsTest, UnregisteringWaitsForACallbackOnAnotherThread) {
    Receiver receiver;
    std::atomic<bool> mayEnd{false};
    receiver.action = [&] {
        support::WaitUntil([&] { return mayEnd.load(); });
    };
    Register(receiver);
    changes.Post(kCamera, kWidth);
    ASSERT_TRUE(support::WaitUntil([&] { return receiver.calls == 1; }));
    std::thread other([&] {
        Unregister();
        EXPECT_EQ(receiver.returns, 1);
    });
    std::this_thread::yield();
    EXPECT_EQ(receiver.returns, 0);
    mayEnd = true;
    other.join();
}

TEST_F(InvalidationsTest, ACallbackMayUnregisterItselfAndTheNext) {
    Receiver first;
    Receiver second;
    first.action = [&] {
        EXPECT_TRUE(Unregister()); // the second one, being the newest
        EXPECT_TRUE(Unregister());
    };
    Register(first);
    Register(second);
    changes.Post(kCamera, kWidth);
    changes.Drain();
    EXPECT_EQ(first.returns, 1);
    EXPECT_EQ(second.calls, 0);
    EXPECT_TRUE(changes.List().empty());
}

TEST_F(InvalidationsTest, NothingIsCalledAfterTheStop) {
    Receiver receiver;
    Register(receiver);
    changes.Stop();
    changes.Post(kCamera, kWidth);
    changes.Drain();
    EXPECT_EQ(changes.Call(kCamera, kWidth), 0u);
    EXPECT_EQ(receiver.calls, 0);
}

TEST_F(InvalidationsTest, AHandleThatGoesTakesItsRegistrations) {
    Receiver camera;
    Receiver stream;
    Register(camera);
    Register(camera, kCamera, kHeight);
    Register(stream, kStream);
    changes.UnregisterAll(kCamera);
    EXPECT_EQ(changes.List().size(), 1u);
    EXPECT_EQ(changes.GetCounts().registered, 3u);
    EXPECT_EQ(changes.GetCounts().unregisteredByClose, 2u);
    EXPECT_EQ(changes.Call(kStream, kWidth), 1u);
}

TEST_F(InvalidationsTest, DrainingInsideACallbackReturnsAtOnce) {
    Receiver receiver;
    receiver.action = [&] {
        changes.Drain();
    };
    Register(receiver);
    changes.Post(kCamera, kWidth);
    changes.Drain();
    EXPECT_EQ(receiver.returns, 1);
}

} // namespace
} // namespace skeleton_tests
