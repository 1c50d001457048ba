// slots_out_of_memory_posix_test.cpp - every slot before Init with allocations refused
#include "grabber/mivora_kvn_pyxen_class.h"
#include "mivora/module_entry.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/environment_guard.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

using namespace pyxen;

namespace {

using support::GrantAllocations;
using support::RefuseAllocationsAfter;
using support::RefuseEachAllocationBothWays;

using Grabber = CMivoraKVNPyxenClass;

std::uint64_t first = 0;
std::uint64_t second = 0;
std::uint32_t word = 0;
std::uint8_t byte = 0;
char textSpace[64] = "";
MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;

std::int64_t IsThere(const void* object) {
    return object ? 1 : 0;
}

// What a slot returns, as a number; 0 where it returns nothing.
struct Slot {
    int number;
    std::int64_t (*call)(Grabber& grabber);
};

#define CODE(number, expression)                                                                   \
    {                                                                                              \
        number, [](Grabber& grabber) -> std::int64_t {                                             \
            return expression;                                                                     \
        }                                                                                          \
    }
#define NOTHING(number, expression)                                                                \
    {                                                                                              \
        number, [](Grabber& grabber) -> std::int64_t {                                             \
            expression;                                                                            \
            return 0;                                                                              \
        }                                                                                          \
    }

constexpr const char* kNoHome = "/nowhere";
constexpr const char* kNoFile = "/nowhere/a directory that is not there/host.ini";

// Without 99, the destructor.
const Slot kSlots[] = {
    CODE(0, grabber.SetGrabberIni(kNoFile, 0)),
    CODE(1, grabber.SetCameraIni(kNoFile)),
    CODE(2, grabber.LoadGrabberConfig()),
    CODE(3, grabber.GetCamSpecInt32(nullptr, "Key", 1)),
    CODE(4, grabber.GetCamSpecString(nullptr, "Key", "default", textSpace, sizeof textSpace)),
    CODE(5, grabber.GetModeSpecInt32(nullptr, 0, "Key", 1)),
    CODE(6, grabber.GetGrabberInt32("Key", 1)),
    CODE(7, grabber.GetGrabberString("Key", "default", textSpace, sizeof textSpace)),
    CODE(8, grabber.GetActCamSpecInt32("Key", 1)),
    CODE(9, grabber.GetActCamSpecString("Key", "default", textSpace, sizeof textSpace)),
    CODE(10, grabber.GetActModeSpecInt32("Key", 1)),
    CODE(11, grabber.GetActModeSpecString("Key", "default", textSpace, sizeof textSpace)),
    CODE(12, grabber.SaveGrabberInt32("Key", 1)),
    CODE(13, grabber.SaveGrabberHex32("Key", 1)),
    CODE(14, grabber.SaveGrabberString("Key", "value")),
    CODE(15, grabber.SaveCameraModeConfig()),
    CODE(16, grabber.SaveGrabberConfig()),
    CODE(17, grabber.Init()),
    CODE(18, grabber.DeInit()),
    CODE(19, grabber.OpenActCamera()),
    CODE(20, grabber.IsCameraOpen()),
    CODE(21, grabber.CloseActCamera()),
    CODE(22, IsThere(grabber.GetDriverDesc())),
    CODE(23, IsThere(grabber.GetDriverName())),
    CODE(24, IsThere(grabber.GetDriverVersion())),
    CODE(25, grabber.GetNumCameras()),
    CODE(26, grabber.GetActCameraIndex()),
    CODE(27, grabber.GetCameraIndexByQZRCameraID(1)),
    CODE(28, grabber.GetCameraIndexByCameraUniqueID(1)),
    CODE(29, IsThere(grabber.GetFirstCamera())),
    CODE(30, IsThere(grabber.GetCamera(0))),
    CODE(31, IsThere(grabber.GetActCamera())),
    CODE(32, IsThere(grabber.GetLastCamera())),
    CODE(33, grabber.SetActCameraIndex(-1)),
    CODE(34, grabber.SelectCameraDialog(nullptr, &exitCode)),
    CODE(35, grabber.SelectModeDialog(nullptr, &exitCode)),
    CODE(36, grabber.PrepareFrameBuffers(2)),
    CODE(37, grabber.GetLastFilledBuffer(&first)),
    CODE(38, IsThere(grabber.GetFrameBuffer(0))),
    CODE(39, grabber.ReleaseFrameBuffer(0)),
    CODE(40, grabber.InstPostProcessMsgWnd(nullptr, 0)),
    CODE(41, grabber.InstPostProcessThreadID(0, 0)),
    CODE(42, grabber.InstPostProcessCallBack([](std::uint64_t, std::uint32_t, void*) {}, nullptr)),
    CODE(43, grabber.InstCamCfgChangeMsgWnd(nullptr, 0)),
    CODE(44, grabber.InstCamCfgChangeThreadID(0, 0)),
    CODE(45, grabber.InstCamCfgChangeCallBack([](void*) {}, nullptr)),
    CODE(46, grabber.RefreshCameraList()),
    CODE(47, grabber.GetGrabberParamLimits(1, &first, &first, &second, &second)),
    CODE(48, grabber.GetGrabberParam(261, &first, &second)),
    CODE(49, grabber.SetGrabberParam(1, 1, 0)),
    CODE(50, grabber.Snap(1)),
    CODE(51, grabber.GetAcquisitionState()),
    CODE(52, grabber.StopSnap()),
    CODE(53, grabber.CamCntrlDialog(nullptr)),
    CODE(54, grabber.CloseCamCntrlDialog()),
    CODE(55, grabber.IsCamCntrlDialogOpen()),
    CODE(56, grabber.InstCamCntrlMsgWnd(nullptr, 0)),
    CODE(57, grabber.InstCamCntrlThreadID(0, 0)),
    CODE(58, grabber.InstCamCntrlCallBack([](std::uint32_t, void*) { return std::uint32_t{1}; },
                                          nullptr)),
    CODE(59, grabber.GrabberConfigDialog(nullptr, &exitCode)),
    CODE(60, grabber.GetNumCmdChannels()),
    CODE(61, grabber.SetActCmdChannelIndex(-1)),
    CODE(62, IsThere(grabber.GetFirstCmdChannel())),
    CODE(63, IsThere(grabber.GetActCmdChannel())),
    CODE(64, IsThere(grabber.GetCmdChannel(0))),
    CODE(65, grabber.GetActCmdChannelIndex()),
    CODE(66, grabber.SelectCmdDialog(nullptr, &exitCode)),
    CODE(67, grabber.CMDOpen()),
    CODE(68, grabber.CMDReadByte(&byte, &first)),
    CODE(69, grabber.CMDWriteByte(&byte, &first)),
    CODE(70, grabber.CMDReadBuffer(&byte, 1, &first)),
    CODE(71, grabber.CMDWriteBuffer(&byte, 1, &first)),
    CODE(72, grabber.CMDWriteCString("text", &first)),
    CODE(73, grabber.CMDPurge(0)),
    CODE(74, grabber.CMDClose()),
    CODE(75, grabber.SetGrabberBit(1, 1)),
    CODE(76, grabber.GetGrabberBit(1, &word)),
    CODE(77, grabber.GetFeatureStatus(EMV_FEATURE_POST_PROCESS)),
    CODE(78, grabber.GetFeatureMask()),
    CODE(79, grabber.SetFeature(EMV_FEATURE_POST_PROCESS, 1)),
    CODE(80, grabber.GetFeature(EMV_FEATURE_POST_PROCESS, &word)),
    CODE(81, grabber.StartTimer()),
    CODE(82, grabber.StopTimer()),
    CODE(83, grabber.ChangeTimerTB(1, 2, 0)),
    NOTHING(84, grabber.GetTimerMicroseconds(&first, &second)),
    NOTHING(85, grabber.SetTimerMicroseconds(1, 2)),
    CODE(86, grabber.GetNumCmdChannelTypes()),
    CODE(87,
         [&] {
             CCmdChannel* const channel = grabber.CreateCmdChannel(1);
             const std::int64_t made = IsThere(channel);
             grabber.DeleteCmdChannel(channel);
             return made;
         }()),
    NOTHING(88, grabber.DeleteCmdChannel(grabber.CreateCmdChannel(0))),
    NOTHING(89, grabber.DeleteCmdChannelList()),
    NOTHING(90, grabber.SignalCamCfgChange()),
    CODE(91, grabber.SignalCamCntrlDlgEvent(1)),
    NOTHING(92, grabber.UpdateCamCntrlDialogs(kMvUpdateAll)),
    NOTHING(93, grabber.RegisterWindowHandle(&byte)),
    NOTHING(94, grabber.UnRegisterWindowHandle(&byte)),
    NOTHING(95, grabber.DoPostProcess(0, 0)),
    NOTHING(96, grabber.SetAcquisitionState(0)),
    CODE(97, grabber.SetDefaultIodTimerConfigToGrabber()),
    CODE(98, grabber.GetDefaultIodTimerConfigFromGrabber()),
    NOTHING(100, grabber.SetDriverDesc("a description")),
    NOTHING(101, grabber.SetFirstCamera(nullptr)),
    CODE(102,
         [&] {
             CMivoraCamera* const camera = grabber.CreateCamera();
             const std::int64_t made = IsThere(camera);
             delete camera;
             return made;
         }()),
    CODE(103, grabber.GetBiggestSectionNum("Camera_")),
    NOTHING(104, grabber.InvalidationCallback(PXN_SYSTEM_HANDLE, "EventCameraDiscovery")),
    NOTHING(105,
            [&] {
                PxnFrame frame{};
                frame.receiveStatus = PxnFrameStatusInvalid;
                grabber.FrameCallback(&frame);
            }()),
    CODE(106, grabber.GetNumFeatureCaches()),
    CODE(107, IsThere(grabber.GetFeatureCache(0))),
    CODE(108, IsThere(grabber.GetFeatureCacheByName("Camera"))),
    CODE(109, IsThere(grabber.GetFeatureCacheByHandle(PXN_SYSTEM_HANDLE))),
    NOTHING(110, grabber.InitMembers()),
    CODE(111, grabber.GetExposureTime(&word)),
    CODE(112, grabber.GetFrameInterval(&word)),
    NOTHING(113, grabber.OnTimingFeatureChanged(nullptr, "ExposureTime")),
    CODE(114, grabber.NotifyBufferImpact(false)),
};

#undef CODE
#undef NOTHING

// No camera SDK is there to be initialised.
void HideSdk() {
    ::setenv("PYXEN_HOME", kNoHome, 1);
}

// Without memory nothing that is made once for the process is ever made, so that each slot is the
// first to want it.
[[noreturn]] void CallEverySlot() {
    HideSdk();
    for (const Slot& slot : kSlots) {
        auto* const grabber = new Grabber(nullptr); // its destructor would be the first to want it
        std::fprintf(stderr, "slot %d\n", slot.number);
        RefuseAllocationsAfter(0);
        slot.call(*grabber);
        GrantAllocations();
    }
    std::_Exit(0);
}

[[noreturn]] void DeleteGrabberWithoutMemory() {
    platform::SharedLibrary module;
    module.Load(platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()),
                                   platform::LibraryFileName("MivoraKVNPyxen")),
                true, nullptr);
    const auto create =
        reinterpret_cast<MV_CREATE_GRABBER>(module.FindSymbol(kMvCreateGrabberName));
    const auto destroy =
        reinterpret_cast<MV_DELETE_GRABBER>(module.FindSymbol(kMvDeleteGrabberName));
    CMivoraGrabber* const grabber = create(nullptr);
    RefuseAllocationsAfter(0);
    destroy(grabber);
    std::_Exit(0);
}

// Each runs in a process of its own, in which nothing was initialised yet.
class SlotsOutOfMemoryDeathTest : public ::testing::Test {
protected:
    SlotsOutOfMemoryDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~SlotsOutOfMemoryDeathTest() override { GTEST_FLAG_SET(death_test_style, style); }

private:
    const std::string style = GTEST_FLAG_GET(death_test_style);
};

TEST_F(SlotsOutOfMemoryDeathTest, TheFirstCallOfAProcessThrowsNothing) {
    EXPECT_EXIT(CallEverySlot(), ::testing::ExitedWithCode(0), "slot 114");
}

TEST_F(SlotsOutOfMemoryDeathTest, TheFirstGrabberOfAProcessIsDeleted) {
    EXPECT_EXIT(DeleteGrabberWithoutMemory(), ::testing::ExitedWithCode(0), "");
}

TEST(SlotsOutOfMemory, AreAllListed) {
    EXPECT_EQ(std::size(kSlots), 114u);
    int number = 0;
    for (const Slot& slot : kSlots) {
        EXPECT_EQ(slot.number, number);
        number += number == 98 ? 2 : 1;
    }
}

class SlotOutOfMemory : public ::testing::TestWithParam<Slot> {
protected:
    static void Sweep(Grabber& grabber) {
        const Slot& slot = GetParam();
        const std::int64_t expected = slot.call(grabber);
        RefuseEachAllocationBothWays([&] {
            const std::int64_t result = slot.call(grabber);
            const bool refused = GrantAllocations();
            // A pointer that is not there, or a code.
            const bool failed = refused && (expected == 1 ? result == 0
                                                          : result == MV_REFUSED ||
                                                                result == MV_CONFIG_NOT_LOADED ||
                                                                result == MV_CONFIG_NOT_SAVED);
            EXPECT_TRUE(result == expected || failed) << result << ", not " << expected;
        });
    }

    support::EnvironmentGuard home{"PYXEN_HOME", kNoHome};
};

TEST_P(SlotOutOfMemory, ReturnsAFailureOrWhatItReturnsOtherwise) {
    Grabber grabber(nullptr);
    Sweep(grabber);
}

TEST_P(SlotOutOfMemory, DoesTheSameWithAConfigurationAndAChannel) {
    const support::TemporaryDirectory directory;
    const std::string ini =
        directory.Write("host.ini", "[Grabber_0]\nUniqueId=a camera with a long identifier\n"
                                    "NumCmdChannels=1\n[Camera_0]\nCameraUniqueID=1\n");
    Grabber grabber(nullptr);
    ASSERT_EQ(grabber.SetGrabberIni(ini.c_str(), 0), MV_OK);
    ASSERT_EQ(grabber.AddCmdChannel(grabber.CreateCmdChannel(1)), MV_OK);
    ASSERT_EQ(grabber.SaveGrabberConfig(), MV_OK);
    Sweep(grabber);
}

std::string SlotName(const ::testing::TestParamInfo<Slot>& info) {
    return "Slot" + std::to_string(info.param.number);
}

INSTANTIATE_TEST_SUITE_P(All, SlotOutOfMemory, ::testing::ValuesIn(kSlots), SlotName);

} // namespace
