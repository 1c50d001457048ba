// library_test.cpp - counted startups and shutdowns
#include "pxnc/skeleton/library.h"

#include "pxnc/skeleton/callback_scope.h"
#include "tests/pxnc/skeleton/plain_implementation.h"

#include <gtest/gtest.h>

namespace skeleton_tests {
namespace {

class StartupTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_FALSE(IsStarted()) << "the test left a startup behind"; }
    static bool IsStarted() {
        std::uint32_t found = 0;
        return PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)) != PxnErrApiNotStarted;
    }

    PlainImplementation& plain = PlainImplementation::Instance();
    const int startsBefore = plain.starts;
    const int stopsBefore = plain.stops;
};

TEST_F(StartupTest, TheFirstStartsAndTheLastStops) {
    EXPECT_EQ(PxnStartup(nullptr), 0);
    EXPECT_EQ(PxnStartup(nullptr), 0);
    EXPECT_EQ(plain.starts - startsBefore, 1);
    PxnShutdown();
    EXPECT_TRUE(IsStarted());
    EXPECT_EQ(plain.stops - stopsBefore, 0);
    PxnShutdown();
    EXPECT_EQ(plain.stops - stopsBefore, 1);
    PxnShutdown(); // one too many
    EXPECT_EQ(plain.stops - stopsBefore, 1);
}

TEST_F(StartupTest, OneThatFailedCounts) {
    plain.startResult = PxnErrXml;
    EXPECT_EQ(PxnStartup(nullptr), PxnErrXml);
    EXPECT_FALSE(IsStarted());
    plain.startResult = PxnErrSuccess;
    EXPECT_EQ(PxnStartup(nullptr), 0);
    plain.callResult = PxnErrBusy;
    EXPECT_EQ(PxnStartup(nullptr), PxnErrBusy);
    plain.callResult = PxnErrSuccess;
    PxnShutdown();
    PxnShutdown();
    EXPECT_TRUE(IsStarted()) << "the successful startup is not undone yet";
    PxnShutdown();
    EXPECT_EQ(plain.stops - stopsBefore, 1);
}

TEST_F(StartupTest, OnesThatAllFailedLeaveNothingToStop) {
    plain.startResult = PxnErrXml;
    EXPECT_EQ(PxnStartup(nullptr), PxnErrXml);
    EXPECT_EQ(PxnStartup(nullptr), PxnErrXml);
    EXPECT_EQ(plain.starts - startsBefore, 2) << "each tries again";
    plain.startResult = PxnErrSuccess;
    PxnShutdown();
    PxnShutdown();
    EXPECT_EQ(plain.stops - stopsBefore, 0);
}

TEST_F(StartupTest, InsideACallbackNothingIsCounted) {
    EXPECT_EQ(PxnStartup(nullptr), 0);
    testing::internal::CaptureStderr();
    {
        const skeleton::CallbackScope scope(skeleton::CallbackKind::kInvalidation);
        EXPECT_EQ(PxnStartup(nullptr), PxnErrInvalidCall);
        PxnShutdown();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "PxnC: a shutdown inside a callback is ignored\n");
    EXPECT_TRUE(IsStarted());
    PxnShutdown();
}

TEST_F(StartupTest, TheVersionNeedsNone) {
    PxnVersionInfo version{};
    EXPECT_EQ(PxnVersionQuery(&version, sizeof version), 0);
    EXPECT_EQ(version.major, 7u);
    EXPECT_EQ(version.minor, 8u);
    EXPECT_EQ(version.patch, 9u);
    EXPECT_EQ(PxnVersionQuery(nullptr, sizeof version), PxnErrBadParameter);
    EXPECT_EQ(PxnVersionQuery(&version, 11), PxnErrStructSize);
}

} // namespace
} // namespace skeleton_tests
