// camera_clock_test.cpp - tests of comparing a camera's clock with this computer's
#include "apps/mivora/camera_clock.h"

#include "apps/common/service_client.h"
#include "platform/clock.h"
#include "tests/apps/common/fake_services.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t kUnixMinusHost = 1000;

std::uint64_t readings = 0;

class CameraClock : public testing::Test {
protected:
    // Each reading of the computer's clock is 100 ns later.
    CameraClock() {
        readings = 0;
        platform::SetClockFunction([] { return 10000 + 100 * readings++; });
    }
    ~CameraClock() override { platform::SetClockFunction(nullptr); }
    std::optional<ClockRelation> Compare() {
        ServiceClient client(services);
        return LatchCameraClock(client, kUnixMinusHost);
    }

    FakeServices services;
};

TEST_F(CameraClock, IsUnknownWithoutALatch) {
    EXPECT_FALSE(Compare());
    services.Add("Camera", "TimestampLatch", MV_FEATURE_COMMAND);
    EXPECT_FALSE(Compare()) << "without a value";
    services.Add("Camera", "TimestampLatchValue", MV_FEATURE_INTEGER);
    services.running = MV_SERVICE_NO_ACCESS;
    EXPECT_FALSE(Compare()) << "a command that is refused";
}

TEST_F(CameraClock, IsLatchedInNanoseconds) {
    services.Add("Camera", "TimestampLatch", MV_FEATURE_COMMAND);
    services.Add("Camera", "TimestampLatchValue", MV_FEATURE_INTEGER).value.integer = 3000;
    const std::optional<ClockRelation> relation = Compare();
    ASSERT_TRUE(relation);
    EXPECT_EQ(relation->method, "TimestampLatch");
    EXPECT_EQ(relation->offsetNs, 10000 + 50 + 1000 - 3000) << "the first, in the middle of it";
    EXPECT_EQ(relation->uncertaintyNs, 51u);
}

TEST_F(CameraClock, IsLatchedInTicks) {
    services.Add("Camera", "GevTimestampControlLatch", MV_FEATURE_COMMAND);
    services.Add("Camera", "GevTimestampValue", MV_FEATURE_INTEGER).value.integer = 300;
    EXPECT_FALSE(Compare()) << "ticks of unknown length";
    services.Add("Camera", "GevTimestampTickFrequency", MV_FEATURE_INTEGER).value.integer =
        125000000;
    readings = 0;
    const std::optional<ClockRelation> relation = Compare();
    ASSERT_TRUE(relation);
    EXPECT_EQ(relation->method, "GevTimestampControlLatch");
    EXPECT_EQ(relation->offsetNs, 10000 + 50 + 1000 - 300 * 8);
    EXPECT_EQ(relation->uncertaintyNs, 58u);
}

} // namespace
