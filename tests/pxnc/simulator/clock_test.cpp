// clock_test.cpp - the simulator's clock, stopped and advanced by commands
#include "pxnc/skeleton/clock.h"

#include "platform/mutex.h"
#include "platform/sleep.h"
#include "pxnc/simulator/control.h"
#include "pxnc/skeleton/condition.h"
#include "tests/pxnc/simulator/simulator_fixture.h"
#include "tests/support/wait_until.h"

#include <atomic>
#include <thread>

namespace simulator_tests {
namespace {

using skeleton::Clock;
using std::chrono::hours;
using std::chrono::milliseconds;

class ClockTest : public SimulatorTest {
protected:
    static std::pair<std::int32_t, std::string> Refused(const char* command) {
        char answer[200] = "";
        const std::int32_t code = PxnControl(command, answer, sizeof answer);
        return {code, answer};
    }
    static bool HaveEnded(const std::atomic<std::uint64_t>& ended, std::uint64_t count) {
        for (int look = 0; look < 1000 && ended < count; ++look) {
            std::this_thread::yield();
        }
        return support::WaitUntil([&] { return ended >= count; }, kWaitMs);
    }
    static bool IsPlugged(const char* id) {
        PxnCameraInfo info{};
        return PxnCameraInfoQuery(id, &info, sizeof info) == 0;
    }
};

TEST_F(ClockTest, StandsStillWhenItIsStopped) {
    Control("clock stop");
    const Clock::time_point begin = Clock::now();
    std::this_thread::sleep_for(milliseconds(2));
    EXPECT_EQ(Clock::now(), begin);
    Control("clock advance 250");
    EXPECT_EQ(Clock::now() - begin, milliseconds(250));
    Control("clock stop");
    EXPECT_EQ(Clock::now() - begin, milliseconds(250)) << "it was stopped already";
}

TEST_F(ClockTest, GoesOnFromWhereItStood) {
    const Clock::time_point begin = Clock::now();
    Control("clock stop");
    Control("clock advance 86400000");
    const Clock::time_point stopped = Clock::now();
    EXPECT_GE(stopped - begin, hours(24));
    Control("clock start");
    EXPECT_TRUE(support::WaitUntil([&] { return Clock::now() > stopped; }, kWaitMs));
    EXPECT_LT(Clock::now() - stopped, hours(1)) << "the day does not count twice";
    Control("clock start");
    EXPECT_GT(Clock::now(), stopped) << "it was running already";
    Control("clock stop");
    EXPECT_GT(Clock::now(), stopped);
}

TEST_F(ClockTest, RunsAgainAfterClear) {
    Control("clock stop");
    Control("clear");
    const Clock::time_point begin = Clock::now();
    EXPECT_TRUE(support::WaitUntil([&] { return Clock::now() > begin; }, kWaitMs));
}

TEST_F(ClockTest, IsAdvancedBySleepsWhileItIsStopped) {
    Control("clock stop");
    const Clock::time_point begin = Clock::now();
    platform::SleepMs(3600000);
    EXPECT_EQ(Clock::now() - begin, hours(1));
}

TEST_F(ClockTest, RunsLaterCommandsBeforeAnAdvanceReturns) {
    Control("clock stop");
    Control(std::string("after 100 unplug ") + kGigECamera);
    Control(std::string("after 100 after 50 unplug ") + kUsbCamera);
    Control("clock advance 99");
    EXPECT_TRUE(IsPlugged(kGigECamera));
    Control("clock advance 1");
    EXPECT_FALSE(IsPlugged(kGigECamera));
    Control("clock advance 49");
    EXPECT_TRUE(IsPlugged(kUsbCamera));
    Control("clock advance 1");
    EXPECT_FALSE(IsPlugged(kUsbCamera));
}

TEST_F(ClockTest, IsAdvancedByALaterCommandToo) {
    Control("clock stop");
    const Clock::time_point begin = Clock::now();
    Control("after 10 clock advance 20");
    Control("clock advance 10");
    EXPECT_EQ(Clock::now() - begin, milliseconds(30));
}

TEST_F(ClockTest, ReportsTheNextTimeThatSomethingWaitsFor) {
    Control("clock stop");
    EXPECT_EQ(Control("clock next"), "none");
    Control("after 100 drain");
    EXPECT_TRUE(IsNextTime(100 * kNanosecondsPerMillisecond));
    Control("after 40 drain");
    EXPECT_TRUE(IsNextTime(40 * kNanosecondsPerMillisecond));
    Control("clock advance 30");
    EXPECT_TRUE(IsNextTime(10 * kNanosecondsPerMillisecond));
    Control("clock advance 10");
    EXPECT_TRUE(IsNextTime(60 * kNanosecondsPerMillisecond));
    Control("clear");
    EXPECT_TRUE(support::WaitUntil([] { return Control("clock next") == "none"; }, kWaitMs));
}

TEST_F(ClockTest, EndsEveryWaitWithOneAdvance) {
    constexpr std::uint64_t kThreads = 2;
    constexpr std::uint64_t kRounds = 20000;
    Control("clock stop");
    std::atomic<std::uint64_t> begun{0};
    std::atomic<std::uint64_t> ended{0};
    const auto wait = [&] {
        platform::Mutex mutex;
        skeleton::Condition never;
        for (std::uint64_t round = 0; round < kRounds; ++round) {
            {
                platform::MutexLock lock(mutex);
                const Clock::time_point end = Clock::now() + milliseconds(1);
                ++begun;
                while (Clock::now() < end) {
                    never.WaitUntil(mutex, end);
                }
            }
            ++ended;
        }
    };
    std::vector<std::thread> waiters;
    for (std::uint64_t i = 0; i < kThreads; ++i) {
        waiters.emplace_back(wait);
    }
    for (std::uint64_t round = 1; round <= kRounds && !HasFailure(); ++round) {
        // Without a rest, so that the advance meets waits that are just beginning.
        while (begun < round * kThreads) {
            std::this_thread::yield();
        }
        EXPECT_TRUE(skeleton::AdvanceClock(milliseconds(1)));
        EXPECT_TRUE(HaveEnded(ended, round * kThreads)) << "round " << round;
    }
    Control("clock start"); // so that no thread stays in any case
    for (std::thread& waiter : waiters) {
        waiter.join();
    }
}

TEST_F(ClockTest, EndsWaitsThatBeganOnTheRunningClock) {
    platform::Mutex mutex;
    skeleton::Condition never;
    const Clock::time_point end = Clock::now() + hours(1);
    Counter ended;
    std::thread waiter([&] {
        platform::MutexLock lock(mutex);
        while (Clock::now() < end) {
            never.WaitUntil(mutex, end);
        }
        ended.Add();
    });
    EXPECT_TRUE(support::WaitUntil([] { return skeleton::NextTimedWait().has_value(); }, kWaitMs));
    Control("clock stop");
    Control("clock advance 3600000");
    EXPECT_TRUE(ended.WaitFor(1));
    waiter.join();
}

TEST_F(ClockTest, CommandsThatMakeNoSenseAreRefused) {
    using Answer = std::pair<std::int32_t, std::string>;
    const std::string usage = "usage: clock stop|start|next, clock advance MS";
    EXPECT_EQ(Refused("clock"), Answer(PxnErrBadParameter, usage));
    EXPECT_EQ(Refused("clock advance"), Answer(PxnErrBadParameter, usage));
    EXPECT_EQ(Refused("clock stop 5"), Answer(PxnErrBadParameter, usage));
    EXPECT_EQ(Refused("clock fly"),
              Answer(PxnErrBadParameter, "\"fly\" is not stop, start, next or advance"));
    EXPECT_EQ(Refused("clock advance 1"),
              Answer(PxnErrInvalidCall, "the clock is running; stop it first"));
    Control("clock stop");
    EXPECT_EQ(Refused("clock advance -1"), Answer(PxnErrBadParameter, "\"-1\" is negative"));
    EXPECT_EQ(Refused("clock advance 86400001").second,
              "\"86400001\" is not a number of milliseconds up to a day");
}

} // namespace
} // namespace simulator_tests
