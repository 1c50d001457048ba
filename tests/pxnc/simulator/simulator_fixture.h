// simulator_fixture.h - a started simulator and what the tests do with it again and again
#pragma once

#include "pxnc.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace simulator_tests {

inline constexpr const char* kGigECamera = "PyxenGEV|Eth0|00:0F:31:02:4A:10";
inline constexpr const char* kUsbCamera = "PyxenU3V|Usb0|1AB2:2C00:310B";
inline constexpr const char* kSerialCamera = "PyxenCL|Board0|Port0|CL-0042";
inline constexpr std::uint32_t kWaitMs = 20000;
inline constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;

/// Runs a control command; a failure fails the test.
std::string Control(const std::string& command);
/// Waits until the earliest time that a thread of the simulator waits for is so far ahead on the
/// stopped clock. False when that takes longer than kWaitMs.
bool IsNextTime(std::uint64_t nanoseconds);
/// One number of the accounting.
std::int64_t Count(const std::string& key);

std::int64_t GetInt(PxnHandle handle, const char* name);
double GetFloat(PxnHandle handle, const char* name);
std::string GetEnum(PxnHandle handle, const char* name);
std::string GetString(PxnHandle handle, const char* name);
bool GetBool(PxnHandle handle, const char* name);
bool IsWritable(PxnHandle handle, const char* name);
bool IsReadable(PxnHandle handle, const char* name);
std::vector<PxnFeatureInfo> ListFeatures(PxnHandle handle);
PxnCameraInfo InfoOf(PxnHandle camera);

/// Counts what callbacks report and lets a test wait for it.
class Counter {
public:
    void Add();
    /// False when it takes longer than kWaitMs.
    bool WaitFor(std::uint64_t count);
    std::uint64_t Value();

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::uint64_t value = 0;
};

/// A frame with its memory and what the callback saw of it.
struct Buffer {
    PxnFrame frame{};
    std::vector<std::uint8_t> memory;
};

/// Starts the SDK with the default configuration and shuts it down; checks that all was given
/// back.
class SimulatorTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    PxnHandle Open(const char* id, std::uint32_t accessMode = PxnAccessModeFull);
    /// Buffers of the camera's payload size, announced.
    std::vector<Buffer> Announce(PxnHandle camera, std::size_t count);
    /// Sends one frame of the present settings through `buffer`.
    void Snap(PxnHandle camera, Buffer& buffer);
};

} // namespace simulator_tests
