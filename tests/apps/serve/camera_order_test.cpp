// camera_order_test.cpp - tests of what one thread has another one do
#include "apps/serve/camera_order.h"

#include "apps/common/command_failure.h"
#include "apps/serve/request_failure.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

/// Has another thread run the job, and waits for it.
void HaveDone(const std::function<void()>& job) {
    CameraOrder order;
    std::thread owner([&] { order.Run(job); });
    try {
        order.Await();
    } catch (...) {
        owner.join();
        throw;
    }
    owner.join();
}

TEST(CameraOrder, IsAwaited) {
    bool isDone = false;
    HaveDone([&] { isDone = true; });
    EXPECT_TRUE(isDone);
}

TEST(CameraOrder, ThrowsToTheOneThatWaits) {
    try {
        HaveDone([] { throw RequestFailure(kConflict, "no camera is open"); });
        FAIL() << "nothing was thrown";
    } catch (const RequestFailure& failure) {
        EXPECT_EQ(failure.Status(), kConflict);
        EXPECT_STREQ(failure.what(), "no camera is open");
    }
    try {
        HaveDone([] { throw CommandFailure("cannot", {"because", "of this"}); });
        FAIL() << "nothing was thrown";
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.Message(), "cannot");
        EXPECT_EQ(failure.Details(), (std::vector<std::string>{"because", "of this"}));
    }
    EXPECT_THROW(HaveDone([] { throw std::logic_error("other"); }), std::runtime_error);
}

} // namespace
