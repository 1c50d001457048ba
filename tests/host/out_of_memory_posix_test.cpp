// out_of_memory_posix_test.cpp - the host library with every allocation refused in turn
#include "mivora/module_loader.h"
#include "platform/file_system.h"
#include "tests/host/test_grabber.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <new>
#include <string>

namespace {

using support::CountAllocations;
using support::GrantAllocations;
using support::RefuseEachAllocation;

class OutOfMemory : public testing::Test {
protected:
    OutOfMemory() {
        EXPECT_EQ(grabber.SetGrabberIni(iniPath.c_str(), 0), MV_OK);
        EXPECT_EQ(grabber.AddCmdChannel(grabber.CreateCmdChannel(0)), MV_OK);
        grabber.MakeCameras({11, 22});
        grabber.StoreActCameraIndex(1);
    }

    support::TemporaryDirectory directory;
    const std::string iniPath = directory.PathOf("grabber.ini");
    TestGrabber grabber;
};

// EXPECT macros allocate, so results are stored and compared after allocations succeed again.
#define EXPECT_CODE_OR_REFUSED(code, result)                                                       \
    {                                                                                              \
        const MV_ERRCODE returned = result;                                                        \
        const bool wasRefused = GrantAllocations();                                                \
        EXPECT_TRUE(returned == (code) || (wasRefused && returned != MV_OK)) << returned;          \
    }

TEST_F(OutOfMemory, CreatesNoPartialGrabber) {
    EXPECT_GT(RefuseEachAllocation([] {
                  try {
                      TestGrabber another;
                  } catch (const std::bad_alloc&) {
                      return;
                  }
              }),
              5);
}

TEST_F(OutOfMemory, CreatesNoPartialNodes) {
    EXPECT_GT(RefuseEachAllocation([] {
                  try {
                      CMivoraCamera camera;
                      camera.BuildGfxModeList(nullptr);
                  } catch (const std::bad_alloc&) {
                      return;
                  }
              }),
              1);
    EXPECT_GT(RefuseEachAllocation([] { DeleteCmdSerialInstance(CreateCmdSerialInstance()); }), 1);
}

TEST_F(OutOfMemory, LeavesConfigurationFilesUnchanged) {
    const std::string other = directory.Write("other.ini", "[Grabber_0]\nk=1\n");
    EXPECT_GT(RefuseEachAllocation(
                  [&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.SetGrabberIni(other.c_str(), 0)); }),
              1);
    EXPECT_GT(RefuseEachAllocation(
                  [&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.SetCameraIni(iniPath.c_str())); }),
              1);
    EXPECT_GT(RefuseEachAllocation([&] {
                  const MV_ERRCODE result = grabber.SaveGrabberInt32("k", 2);
                  EXPECT_CODE_OR_REFUSED(MV_OK, result);
                  const std::string content = directory.Read("other.ini");
                  EXPECT_TRUE(content == "[Grabber_0]\nk=2\n" ||
                              (result != MV_OK && content == "[Grabber_0]\nk=1\n"))
                      << content;
              }),
              1);
}

TEST_F(OutOfMemory, IsReportedAsTheReason) {
    CIniFile ini;
    support::RefuseAllocationsAfter(0);
    const bool opened = ini.Open(iniPath.c_str());
    GrantAllocations();
    EXPECT_FALSE(opened);
    EXPECT_STREQ(ini.GetLastErrorText(), "Cannot open an ini file: out of memory");
}

TEST_F(OutOfMemory, SavesAndLoadsAfterwards) {
    EXPECT_GT(RefuseEachAllocation(
                  [&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.SaveCameraModeConfig()); }),
              20);
    EXPECT_GT(
        RefuseEachAllocation([&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.SaveGrabberConfig()); }),
        20);
    grabber.GetCamera(1)->SetCameraSectionNum(-1);
    EXPECT_GT(
        RefuseEachAllocation([&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.LoadGrabberConfig()); }),
        1);
    EXPECT_EQ(grabber.GetNumCmdChannels(), 1u);
    EXPECT_EQ(grabber.GetCamera(1)->GetCameraSectionNum(), 0);
}

TEST_F(OutOfMemory, ReturnsTheDefaultOfAValue) {
    ASSERT_EQ(grabber.SaveGrabberInt32("a key that is longer than a short string", 7), MV_OK);
    std::int32_t value = 0;
    RefuseEachAllocation([&] {
        value = grabber.GetGrabberInt32("a key that is longer than a short string", 5);
        const bool wasRefused = GrantAllocations();
        EXPECT_TRUE(value == 7 || (value == 5 && wasRefused)) << value;
    });
    EXPECT_EQ(value, 7);
}

TEST_F(OutOfMemory, InstallsNoPartialReceiver) {
    const auto nothing = [](void*) {
    };
    EXPECT_GT(RefuseEachAllocation([&] {
                  EXPECT_CODE_OR_REFUSED(MV_OK, grabber.InstCamCfgChangeCallBack(nothing, nullptr));
              }),
              0);
    EXPECT_EQ(RefuseEachAllocation([&] {
                  EXPECT_CODE_OR_REFUSED(MV_OK, grabber.InstCamCfgChangeCallBack(nullptr, nullptr));
              }),
              0);
    int window = 0;
    EXPECT_GT(RefuseEachAllocation([&] { grabber.RegisterWindowHandle(&window); }), 0);
    EXPECT_EQ(grabber.GetRegisteredWindow(0), &window);
}

TEST_F(OutOfMemory, PreparesNoBuffers) {
    EXPECT_EQ(RefuseEachAllocation(
                  [&] { EXPECT_CODE_OR_REFUSED(MV_OK, grabber.PrepareFrameBuffers(100)); }),
              1);
    grabber.DoPostProcess(99, 1);
    std::uint64_t index = 0;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(index, 99u);
}

TEST_F(OutOfMemory, LoadsNoPartialModule) {
    const std::string path =
        platform::DirectoryOf(platform::ExecutablePath()) + "/test_modules/good.module";
    CModuleLoader loader;
    EXPECT_GT(RefuseEachAllocation([&] {
                  const bool loaded = loader.Load(path.c_str());
                  const bool wasRefused = GrantAllocations();
                  EXPECT_EQ(loaded, loader.IsLoaded());
                  EXPECT_TRUE(loaded || wasRefused);
                  EXPECT_STREQ(loader.GetErrorText(), loaded ? "" : "out of memory");
              }),
              1);
    EXPECT_GT(RefuseEachAllocation([&] {
                  CMivoraGrabber* const made = loader.CreateGrabber();
                  const bool wasRefused = GrantAllocations();
                  EXPECT_TRUE(made || wasRefused);
                  EXPECT_STREQ(loader.GetErrorText(), made ? "" : "out of memory");
                  loader.DeleteGrabber(made);
              }),
              1);
}

std::size_t FormatIntoArray(char (&buffer)[64], const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = MivoraFormatLogText(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return length;
}

TEST_F(OutOfMemory, DoesNotAffectFormatting) {
    char buffer[64];
    EXPECT_EQ(CountAllocations([&] {
                  FormatIntoArray(buffer, "%s %I64u %08X %p %g %.300f %ls", "text", 1ULL, 2u,
                                  static_cast<void*>(nullptr), 0.1, 1e300, L"wide");
              }),
              0);
}

TEST_F(OutOfMemory, DoesNotAffectTheDeliveryOfFrames) {
    int calls = 0;
    ASSERT_EQ(grabber.InstPostProcessCallBack([](std::uint64_t, std::uint32_t,
                                                 void* context) { ++*static_cast<int*>(context); },
                                              &calls),
              MV_OK);
    ASSERT_EQ(grabber.PrepareFrameBuffers(4), MV_OK);
    EXPECT_EQ(CountAllocations([&] {
                  for (std::uint64_t frame = 0; frame < 100; ++frame) {
                      grabber.DoPostProcess(frame % 4, 1);
                      std::uint64_t index = 0;
                      grabber.GetLastFilledBuffer(&index);
                      grabber.ReleaseFrameBuffer(index);
                  }
              }),
              0);
    EXPECT_EQ(calls, 100);
}

#undef EXPECT_CODE_OR_REFUSED

} // namespace
