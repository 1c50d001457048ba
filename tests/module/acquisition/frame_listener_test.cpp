// frame_listener_test.cpp - whom a host has named to hear of each frame
#include "acquisition/frame_listener.h"

#include "platform/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>

using namespace pyxen;

namespace {

struct Listening {
    std::atomic<unsigned> calls{0};
    std::function<void(const MV_FRAME_INFO&)> onFrame;

    static void Receive(const MV_FRAME_INFO* frame, void* context) {
        auto& self = *static_cast<Listening*>(context);
        ++self.calls;
        if (self.onFrame) {
            self.onFrame(*frame);
        }
    }
};

class FrameListenerTest : public testing::Test {
protected:
    void Install(Listening& receiver) { listener.Install(&Listening::Receive, &receiver); }
    void Deliver() { listener.Deliver(info); }

    MV_FRAME_INFO info{};
    Listening first;
    Listening second;
    FrameListener listener;
};

TEST_F(FrameListenerTest, DeliversToTheReceiverInstalledLast) {
    EXPECT_FALSE(listener.HasReceiver());
    Deliver();
    Install(first);
    EXPECT_TRUE(listener.HasReceiver());
    Deliver();
    Install(second);
    Deliver();
    Deliver();
    listener.Install(nullptr, nullptr);
    Deliver();
    EXPECT_FALSE(listener.HasReceiver());
    EXPECT_EQ(first.calls, 1u);
    EXPECT_EQ(second.calls, 2u);
}

TEST_F(FrameListenerTest, PassesTheFrameOn) {
    info.frameId = 42;
    std::uint64_t seen = 0;
    first.onFrame = [&](const MV_FRAME_INFO& frame) {
        seen = frame.frameId;
    };
    Install(first);
    Deliver();
    EXPECT_EQ(seen, 42u);
}

TEST_F(FrameListenerTest, WaitsForACallOnAnotherThread) {
    platform::Event entered;
    platform::Event leave;
    first.onFrame = [&](const MV_FRAME_INFO&) {
        entered.Set();
        leave.Wait(platform::kInfinite);
    };
    Install(first);
    std::thread sdkThread([&] { Deliver(); });
    ASSERT_TRUE(entered.Wait(10000));
    platform::Event installed;
    std::thread host([&] {
        Install(second);
        installed.Set();
    });
    EXPECT_FALSE(installed.Wait(50));
    leave.Set();
    host.join();
    sdkThread.join();
    Deliver();
    EXPECT_EQ(first.calls, 1u);
    EXPECT_EQ(second.calls, 1u);
}

TEST_F(FrameListenerTest, DoesNotWaitInsideItsReceiver) {
    first.onFrame = [&](const MV_FRAME_INFO&) {
        Install(second);
        listener.Install(nullptr, nullptr);
        Install(second);
    };
    Install(first);
    Deliver();
    Deliver();
    EXPECT_EQ(first.calls, 1u);
    EXPECT_EQ(second.calls, 1u);
}

TEST_F(FrameListenerTest, DoesNotWaitInsideTheReceiverOfAnother) {
    FrameListener other;
    std::atomic<unsigned> inside{0};
    const auto removing = [&](FrameListener& removed) {
        return [&](const MV_FRAME_INFO&) {
            ++inside;
            while (inside < 2) {
                std::this_thread::yield();
            }
            removed.Install(nullptr, nullptr);
        };
    };
    first.onFrame = removing(other);
    second.onFrame = removing(listener);
    Install(first);
    other.Install(&Listening::Receive, &second);
    std::thread sdkThread([&] { other.Deliver(info); });
    Deliver();
    sdkThread.join();
    EXPECT_FALSE(listener.HasReceiver());
    EXPECT_FALSE(other.HasReceiver());
}

TEST_F(FrameListenerTest, EndsWhatItsReceiverThrows) {
    first.onFrame = [](const MV_FRAME_INFO&) {
        throw std::runtime_error("thrown by the receiver");
    };
    Install(first);
    Deliver();
    Install(second);
    Deliver();
    EXPECT_EQ(second.calls, 1u);
}

// Each call reaches exactly one receiver, and none that has been replaced.
TEST_F(FrameListenerTest, ReplacesReceiversWhileFramesCome) {
    constexpr unsigned kFrames = 20000;
    std::atomic<bool> ended{false};
    Install(first);
    std::thread sdkThread([&] {
        for (unsigned frame = 0; frame < kFrames; ++frame) {
            Deliver();
        }
        ended = true;
    });
    unsigned late = 0;
    while (!ended) {
        Install(second);
        const unsigned before = first.calls;
        std::this_thread::yield();
        late += first.calls != before;
        Install(first);
    }
    sdkThread.join();
    EXPECT_EQ(late, 0u);
    EXPECT_EQ(first.calls + second.calls, kFrames);
}

} // namespace
