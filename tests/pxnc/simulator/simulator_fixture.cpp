#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/control.h"
#include "pxnc/simulator/sdk.h"
#include "tests/support/wait_until.h"

#include <chrono>

namespace simulator_tests {

std::string Control(const std::string& command) {
    char answer[4096] = "";
    EXPECT_EQ(PxnControl(command.c_str(), answer, sizeof answer), 0) << command << ": " << answer;
    return answer;
}

bool IsNextTime(std::uint64_t nanoseconds) {
    return support::WaitUntil(
        [nanoseconds] { return Control("clock next") == std::to_string(nanoseconds); }, kWaitMs);
}

std::int64_t Count(const std::string& key) {
    const std::string status = Control("status");
    const std::string quoted = "\"" + key + "\":";
    const std::size_t at = status.find(quoted);
    if (at == std::string::npos) {
        ADD_FAILURE() << "no " << key << " in " << status;
        return -1;
    }
    return std::stoll(status.substr(at + quoted.size()));
}

std::int64_t GetInt(PxnHandle handle, const char* name) {
    std::int64_t value = -1;
    EXPECT_EQ(PxnFeatureIntGet(handle, name, &value), 0) << name;
    return value;
}

double GetFloat(PxnHandle handle, const char* name) {
    double value = -1;
    EXPECT_EQ(PxnFeatureFloatGet(handle, name, &value), 0) << name;
    return value;
}

std::string GetEnum(PxnHandle handle, const char* name) {
    const char* value = "";
    EXPECT_EQ(PxnFeatureEnumGet(handle, name, &value), 0) << name;
    return value;
}

std::string GetString(PxnHandle handle, const char* name) {
    std::uint32_t size = 0;
    EXPECT_EQ(PxnFeatureStringGet(handle, name, nullptr, 0, &size), 0) << name;
    std::string text(size, 'x');
    EXPECT_EQ(PxnFeatureStringGet(handle, name, text.data(), size, &size), 0) << name;
    EXPECT_EQ(text.size(), size);
    return text.c_str();
}

bool GetBool(PxnHandle handle, const char* name) {
    PxnBool value = 9;
    EXPECT_EQ(PxnFeatureBoolGet(handle, name, &value), 0) << name;
    return value == 1;
}

bool IsWritable(PxnHandle handle, const char* name) {
    PxnBool readable = 9;
    PxnBool writeable = 9;
    EXPECT_EQ(PxnFeatureAccessQuery(handle, name, &readable, &writeable), 0) << name;
    return writeable == 1;
}

bool IsReadable(PxnHandle handle, const char* name) {
    PxnBool readable = 9;
    EXPECT_EQ(PxnFeatureAccessQuery(handle, name, &readable, nullptr), 0) << name;
    return readable == 1;
}

std::vector<PxnFeatureInfo> ListFeatures(PxnHandle handle) {
    std::uint32_t found = 0;
    EXPECT_EQ(PxnFeaturesList(handle, nullptr, 0, &found, sizeof(PxnFeatureInfo)), 0);
    std::vector<PxnFeatureInfo> features(found);
    EXPECT_EQ(PxnFeaturesList(handle, features.data(), found, &found, sizeof(PxnFeatureInfo)), 0);
    return features;
}

PxnCameraInfo InfoOf(PxnHandle camera) {
    PxnCameraInfo info{};
    EXPECT_EQ(PxnCameraInfoQueryByHandle(camera, &info, sizeof info), 0);
    return info;
}

void Counter::Add() {
    std::lock_guard lock(mutex);
    ++value;
    changed.notify_all();
}

bool Counter::WaitFor(std::uint64_t count) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::milliseconds(kWaitMs),
                            [&] { return value >= count; });
}

std::uint64_t Counter::Value() {
    std::lock_guard lock(mutex);
    return value;
}

void SimulatorTest::SetUp() {
    ASSERT_EQ(PxnStartup(nullptr), 0);
}

void SimulatorTest::TearDown() {
    Control("clear");
    PxnShutdown();
    EXPECT_EQ(pxsim::TheSdk().LastLeakReport(), "");
    EXPECT_EQ(pxsim::TheSdk().Current(), nullptr) << "the test left a startup behind";
}

PxnHandle SimulatorTest::Open(const char* id, std::uint32_t accessMode) {
    PxnHandle camera = nullptr;
    EXPECT_EQ(PxnCameraOpen(id, accessMode, &camera), 0) << id;
    return camera;
}

std::vector<Buffer> SimulatorTest::Announce(PxnHandle camera, std::size_t count) {
    std::uint32_t payload = 0;
    EXPECT_EQ(PxnPayloadSizeGet(camera, &payload), 0);
    std::vector<Buffer> buffers(count);
    for (Buffer& buffer : buffers) {
        buffer.memory.assign(payload, 0xEE);
        buffer.frame.buffer = buffer.memory.data();
        buffer.frame.bufferSize = payload;
        EXPECT_EQ(PxnFrameAnnounce(camera, &buffer.frame, sizeof buffer.frame), 0);
    }
    return buffers;
}

void SimulatorTest::Snap(PxnHandle camera, Buffer& buffer) {
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, nullptr), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    ASSERT_EQ(PxnCaptureFrameWait(camera, &buffer.frame, kWaitMs), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
    ASSERT_EQ(PxnCaptureEnd(camera), 0);
}

} // namespace simulator_tests
