// frame_pool_test.cpp - the frames of a grabber, and who may write to them
#include "imaging/frame_pool.h"

#include "platform/event.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

class PoolReceiver final : public IFrameReceiver {
public:
    void OnFrame(PxnFrame* frame) override {
        frames.push_back(frame);
        if (onFrame) {
            onFrame();
        }
    }
    std::vector<PxnFrame*> frames;
    std::function<void()> onFrame;
};

class FramePoolTest : public testing::Test {
protected:
    void Resize(std::size_t count) {
        FramePool::Reshaping reshaping(pool);
        ASSERT_TRUE(reshaping.Resize(count));
    }
    PxnError Queue(std::size_t index, PxnError result = PxnErrSuccess) {
        return FramePool::Queue(pool[index], [result] { return result; });
    }
    PxnError TakeBack(PxnError result = PxnErrSuccess) {
        return pool.TakeBack([result] { return result; });
    }
    /// A callback of the SDK for the frame.
    static void Deliver(PxnFrame* frame) {
        const FrameVisit visit(frame);
        if (IFrameReceiver* const found = visit.Receiver()) {
            found->OnFrame(frame);
        }
    }

    int owner = 0;
    PoolReceiver receiver;
    FramePool pool{&owner, receiver};
};

TEST_F(FramePoolTest, KeepsRecordsThatStay) {
    EXPECT_EQ(pool.Size(), 0u);
    Resize(3);
    FrameRecord* const first = &pool[0];
    Resize(1);
    EXPECT_EQ(pool.Size(), 1u);
    EXPECT_EQ(&pool[0], first);
    Resize(2);
    EXPECT_EQ(&pool[0], first);
    EXPECT_EQ(pool[1].Frame()->context[0], &owner);
    EXPECT_EQ(pool[1].Frame()->context[1], &pool[1]);
    EXPECT_EQ(pool[1].Frame()->context[2], reinterpret_cast<void*>(1));
    Resize(0);
    EXPECT_EQ(pool.Size(), 0u);
}

TEST_F(FramePoolTest, KnowsWhatTheSdkHas) {
    Resize(2);
    EXPECT_TRUE(pool.IsHome());
    EXPECT_FALSE(pool.IsWithSdk());
    EXPECT_EQ(Queue(1), PxnErrSuccess);
    EXPECT_FALSE(pool.IsHome());
    EXPECT_TRUE(pool.IsWithSdk());
    EXPECT_EQ(TakeBack(PxnErrIO), PxnErrIO);
    EXPECT_TRUE(pool.IsWithSdk());
    EXPECT_EQ(TakeBack(), PxnErrSuccess);
    EXPECT_TRUE(pool.IsHome());
}

TEST_F(FramePoolTest, LeavesAFrameAsItWasWhenQueueingIsRefused) {
    Resize(1);
    EXPECT_EQ(Queue(0, PxnErrIO), PxnErrIO);
    EXPECT_TRUE(pool.IsHome());
    EXPECT_EQ(Queue(0, PxnErrAlready), PxnErrAlready);
    EXPECT_TRUE(pool.IsWithSdk());
    EXPECT_EQ(Queue(0, PxnErrIO), PxnErrIO);
    EXPECT_TRUE(pool.IsWithSdk());
}

TEST_F(FramePoolTest, HasAFrameBackAfterItsCallback) {
    Resize(1);
    Queue(0);
    receiver.onFrame = [&] {
        EXPECT_FALSE(pool.IsHome());
    };
    Deliver(pool[0].Frame());
    EXPECT_EQ(receiver.frames, std::vector<PxnFrame*>{pool[0].Frame()});
    EXPECT_TRUE(pool.IsHome());
}

TEST_F(FramePoolTest, LeavesToTheSdkWhatTheCallbackQueues) {
    Resize(1);
    Queue(0);
    receiver.onFrame = [&] {
        Queue(0);
    };
    Deliver(pool[0].Frame());
    EXPECT_TRUE(pool.IsWithSdk());
    receiver.onFrame = [&] {
        Queue(0, PxnErrIO);
    };
    Deliver(pool[0].Frame());
    EXPECT_TRUE(pool.IsHome());
}

TEST_F(FramePoolTest, LeavesToTheSdkWhatIsQueuedDuringAFlush) {
    Resize(2);
    Queue(0);
    Queue(1);
    EXPECT_EQ(pool.TakeBack([&] {
        Deliver(pool[0].Frame());
        return Queue(0);
    }),
              PxnErrSuccess);
    EXPECT_FALSE(pool[0].Hold().IsHome());
    EXPECT_TRUE(pool[1].Hold().IsHome());
}

TEST_F(FramePoolTest, RecognisesItsOwnFramesAlone) {
    Resize(1);
    PxnFrame copy = *pool[0].Frame();
    Deliver(&copy);
    PxnFrame foreign{};
    Deliver(&foreign);
    PxnFrame* const own = pool[0].Frame();
    for (void*& word : own->context) {
        void* const kept = word;
        word = &foreign;
        if (&word - own->context < 3) {
            Deliver(own);
        }
        word = kept;
    }
    EXPECT_EQ(receiver.frames, std::vector<PxnFrame*>{});
    EXPECT_EQ(pool.FindRecord(copy), &pool[0]);
    EXPECT_EQ(pool.FindRecord(foreign), nullptr);
    Deliver(own);
    EXPECT_EQ(receiver.frames, std::vector<PxnFrame*>{own});
}

TEST_F(FramePoolTest, FindsFramesInAnyOrder) {
    Resize(5);
    const std::vector<std::size_t> order = {4, 0, 1, 1, 3, 2, 0, 4, 4};
    std::vector<PxnFrame*> delivered;
    for (const std::size_t index : order) {
        delivered.push_back(pool[index].Frame());
        Deliver(delivered.back());
    }
    Resize(2);
    delivered.push_back(pool[1].Frame());
    Deliver(delivered.back());
    EXPECT_EQ(receiver.frames, delivered);
}

TEST_F(FramePoolTest, WaitsForARunningCallbackBeforeItIsReshaped) {
    Resize(1);
    Queue(0);
    platform::Event entered;
    platform::Event leave;
    receiver.onFrame = [&] {
        entered.Set();
        leave.Wait(platform::kInfinite);
    };
    std::thread sdkThread([&] { Deliver(pool[0].Frame()); });
    ASSERT_TRUE(entered.Wait(10000));
    platform::Event reshaped;
    bool isHome = false;
    std::thread host([&] {
        FramePool::Reshaping reshaping(pool);
        isHome = pool.IsHome() && reshaping.Resize(0);
        reshaped.Set();
    });
    EXPECT_FALSE(reshaped.Wait(50));
    leave.Set();
    host.join();
    sdkThread.join();
    EXPECT_TRUE(isHome);
}

TEST_F(FramePoolTest, HandsOnNothingWhileItIsReshaped) {
    Resize(1);
    {
        const FramePool::Reshaping reshaping(pool);
        Deliver(pool[0].Frame());
    }
    EXPECT_EQ(receiver.frames.size(), 0u);
    Deliver(pool[0].Frame());
    EXPECT_EQ(receiver.frames.size(), 1u);
}

TEST_F(FramePoolTest, LeavesItsMemoryToWhoeverOutlivesTheCamera) {
    Resize(2);
    EXPECT_EQ(pool.Abandon(), nullptr);
    Queue(1);
    PxnFrame* const frame = pool[1].Frame();
    const std::shared_ptr<SdkMemory> memory = pool.Abandon();
    ASSERT_NE(memory, nullptr);
    Deliver(frame);
    EXPECT_EQ(receiver.frames.size(), 0u);
    EXPECT_EQ(pool.Size(), 2u);
    Resize(1);
    EXPECT_NE(pool[0].Frame(), frame);
    EXPECT_TRUE(pool.IsHome());
    frame->receiveStatus = PxnFrameStatusInvalid; // still there
    Deliver(pool[0].Frame());
    EXPECT_EQ(receiver.frames.size(), 1u);
}

TEST_F(FramePoolTest, IsWholeAgainWhenTheMemoryComesBackLater) {
    Resize(1);
    Queue(0);
    pool.Abandon()->ComeBack();
    EXPECT_TRUE(pool.IsHome());
}

TEST_F(FramePoolTest, WaitsForARunningCallbackBeforeItGoes) {
    platform::Event entered;
    platform::Event leave;
    receiver.onFrame = [&] {
        entered.Set();
        leave.Wait(platform::kInfinite);
    };
    auto other = std::make_unique<FramePool>(&owner, receiver);
    ASSERT_TRUE(FramePool::Reshaping(*other).Resize(1));
    PxnFrame* const frame = (*other)[0].Frame();
    std::thread sdkThread([&] { Deliver(frame); });
    ASSERT_TRUE(entered.Wait(10000));
    platform::Event gone;
    std::thread host([&] {
        other.reset();
        gone.Set();
    });
    EXPECT_FALSE(gone.Wait(50));
    leave.Set();
    host.join();
    sdkThread.join();
}

// Two sets with the same context word 0: a camera that could not be closed, and the next one.
TEST_F(FramePoolTest, TellsItsOwnFramesFromThoseOfAnotherSetOfTheSameGrabber) {
    PoolReceiver others;
    FramePool other(&owner, others);
    Resize(1);
    {
        FramePool::Reshaping reshaping(other);
        ASSERT_TRUE(reshaping.Resize(2));
    }
    Deliver(other[0].Frame());
    Deliver(other[1].Frame());
    Deliver(pool[0].Frame());
    EXPECT_EQ(others.frames, (std::vector<PxnFrame*>{other[0].Frame(), other[1].Frame()}));
    EXPECT_EQ(receiver.frames, std::vector<PxnFrame*>{pool[0].Frame()});
}

TEST_F(FramePoolTest, RefusesMoreSetsThanThereArePlaces) {
    std::vector<std::unique_ptr<FramePool>> pools;
    for (std::size_t count = 0; count < FrameSet::kMostSets; ++count) {
        pools.push_back(std::make_unique<FramePool>(&owner, receiver));
        ASSERT_TRUE(FramePool::Reshaping(*pools.back()).Resize(1));
    }
    EXPECT_FALSE(FramePool::Reshaping(pool).Resize(1));
    EXPECT_EQ(pool.Size(), 0u);
    pools.pop_back();
    EXPECT_TRUE(FramePool::Reshaping(pool).Resize(1));
    EXPECT_EQ(pool.Size(), 1u);
    Deliver(pool[0].Frame());
    EXPECT_EQ(receiver.frames, std::vector<PxnFrame*>{pool[0].Frame()});
}

} // namespace
