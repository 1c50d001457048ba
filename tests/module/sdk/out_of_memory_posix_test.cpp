// out_of_memory_test.cpp - the SDK access with an allocator that refuses
#include "mivora/log_sink.h"
#include "platform/file_system.h"
#include "sdk/malloc_array.h"
#include "sdk/pyxen_api_access.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

constexpr std::uint32_t kCameras = 2;

// Takes all memory away before the SDK is started, and listens for what is said then.
class TakingSink final : public ILogSink {
public:
    void Write(int level, const char* format, ...) override {
        if (std::strcmp(format, "CPyxenAPIAccess::CPyxenAPIAccess: calling PxnStartup...") == 0) {
            support::RefuseAllocationsAfter(0);
        } else if (support::AllocationWasRefused()) {
            told = level == kMvLogError &&
                   std::strcmp(format, "CPyxenAPIAccess::CPyxenAPIAccess: "
                                       "Cannot convert PxnC.xml's filename into wchar!") == 0;
        }
    }
    void WriteError(const char*) override {}

    bool told = false;
};

PxnError ListCameras(PxnCameraInfo* cameras, std::uint32_t, std::uint32_t* found, std::uint32_t) {
    std::fill_n(cameras, kCameras, PxnCameraInfo{});
    cameras[kCameras - 1].cameraIdExtended = "last";
    *found = kCameras;
    return PxnErrSuccess;
}

PxnError ListCamerasAndRefuse(PxnCameraInfo* cameras, std::uint32_t capacity, std::uint32_t* found,
                              std::uint32_t size) {
    support::RefuseAllocationsAfter(0);
    return ListCameras(cameras, capacity, found, size);
}

// The library behind it allocates nothing.
class ApiOutOfMemory : public ::testing::Test {
protected:
    support::EnvironmentGuard home{
        "PYXEN_HOME",
        platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), "bare")};
    CPyxenAPIAccess api;
};

TEST_F(ApiOutOfMemory, AConfigurationPathForWhichThereIsNoneStopsTheLoad) {
    TakingSink sink;
    const bool loaded = api.Load("PxnC.xml", &sink);
    EXPECT_TRUE(support::GrantAllocations());
    EXPECT_FALSE(loaded);
    EXPECT_FALSE(api.IsValid());
    EXPECT_TRUE(sink.told);
}

TEST_F(ApiOutOfMemory, AHomeDirectoryForWhichThereIsNoneIsNotSet) {
    support::RecordingSink sink;
    for (const int granted : {0, 1}) { // for the variable's value, and for what is appended to it
        support::RefuseAllocationsAfter(granted, support::Refusal::kOne);
        const bool loaded = api.Load(nullptr, &sink);
        EXPECT_TRUE(support::GrantAllocations());
        EXPECT_FALSE(loaded);
        const std::vector<std::string> lines = sink.Take();
        ASSERT_GE(lines.size(), 2u) << granted;
        EXPECT_EQ(lines[0],
                  "1 CPyxenAPIAccess::CPyxenAPIAccess: Environment variable PYXEN_HOME not found.");
        EXPECT_EQ(lines[1],
                  "1 CPyxenAPIAccess::CPyxenAPIAccess: Trying to load libPxnC.so (default path)");
    }
}

TEST_F(ApiOutOfMemory, TheListTakesNoMoreThanItsCamerasNeed) {
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    api.PxnCamerasList = ListCameras;
    PxnCameraInfo* listed = nullptr;
    ASSERT_EQ(api.AllocateAndGetCameraList(&listed), kCameras);
    MallocArray<PxnCameraInfo> records;
    records.Adopt(listed);
    EXPECT_LT(malloc_usable_size(listed), 3 * sizeof *listed);
}

TEST_F(ApiOutOfMemory, AListThatCannotBeCutIsHandedOutAsItIs) {
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    api.PxnCamerasList = ListCamerasAndRefuse;
    PxnCameraInfo* listed = nullptr;
    const std::uint32_t count = api.AllocateAndGetCameraList(&listed);
    EXPECT_TRUE(support::GrantAllocations());
    MallocArray<PxnCameraInfo> records;
    records.Adopt(listed);
    ASSERT_EQ(count, kCameras);
    EXPECT_STREQ(records[1].cameraIdExtended, "last");
}

} // namespace
