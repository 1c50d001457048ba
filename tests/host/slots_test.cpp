#include "mivora/grabber.h"
#include "platform/file_system.h"
#include "tests/support/virtual_table.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <string>

namespace {

using SlotsByName = std::map<std::string, int>;

// The numbers that stand before the operations of an interface header; "~" is the destructor.
SlotsByName SlotsInHeader(const char* file) {
    std::string text;
    std::string error;
    const std::string path = std::string(MIVORA_SOURCE_DIR) + "/host/include/mivora/" + file;
    EXPECT_TRUE(platform::ReadWholeFile(path, text, &error)) << path << ": " << error;
    SlotsByName slots;
    const std::string mark = "/* slot";
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
        at += mark.size();
        const int slot = std::stoi(text.substr(at));
        // The operation's name stands before the first parenthesis behind the mark.
        const std::size_t end = text.find('(', at);
        std::size_t begin = end;
        while (std::isalnum(static_cast<unsigned char>(text[begin - 1])) != 0) {
            --begin;
        }
        const std::string name = text[begin - 1] == '~' ? "~" : text.substr(begin, end - begin);
        EXPECT_TRUE(slots.emplace(name, slot).second) << name;
    }
    return slots;
}

// Each operation stands where its comment says; the destructor takes two entries.
void ExpectSlots(const char* file, int destructorSlot, const SlotsByName& entries) {
    const SlotsByName commented = SlotsInHeader(file);
    EXPECT_EQ(commented.size(), entries.size() + 1);
    ASSERT_EQ(commented.count("~"), 1u);
    EXPECT_EQ(commented.at("~"), destructorSlot);
    for (const auto& [name, entry] : entries) {
        ASSERT_EQ(commented.count(name), 1u) << name;
        const int slot = commented.at(name);
        EXPECT_EQ(entry, slot > destructorSlot ? slot + 1 : slot) << name;
    }
}

#define ENTRY(name)                                                                                \
    { #name, support::EntryOf(&Class::name) }

TEST(Slots, OfGrabbersStandAsNumbered) {
    using Class = CMivoraGrabber;
    const SlotsByName entries = {
        ENTRY(SetGrabberIni),
        ENTRY(SetCameraIni),
        ENTRY(LoadGrabberConfig),
        ENTRY(GetCamSpecInt32),
        ENTRY(GetCamSpecString),
        ENTRY(GetModeSpecInt32),
        ENTRY(GetGrabberInt32),
        ENTRY(GetGrabberString),
        ENTRY(GetActCamSpecInt32),
        ENTRY(GetActCamSpecString),
        ENTRY(GetActModeSpecInt32),
        ENTRY(GetActModeSpecString),
        ENTRY(SaveGrabberInt32),
        ENTRY(SaveGrabberHex32),
        ENTRY(SaveGrabberString),
        ENTRY(SaveCameraModeConfig),
        ENTRY(SaveGrabberConfig),
        ENTRY(Init),
        ENTRY(DeInit),
        ENTRY(OpenActCamera),
        ENTRY(IsCameraOpen),
        ENTRY(CloseActCamera),
        ENTRY(GetDriverDesc),
        ENTRY(GetDriverName),
        ENTRY(GetDriverVersion),
        ENTRY(GetNumCameras),
        ENTRY(GetActCameraIndex),
        ENTRY(GetCameraIndexByQZRCameraID),
        ENTRY(GetCameraIndexByCameraUniqueID),
        ENTRY(GetFirstCamera),
        ENTRY(GetCamera),
        ENTRY(GetActCamera),
        ENTRY(GetLastCamera),
        ENTRY(SetActCameraIndex),
        ENTRY(SelectCameraDialog),
        ENTRY(SelectModeDialog),
        ENTRY(PrepareFrameBuffers),
        ENTRY(GetLastFilledBuffer),
        ENTRY(GetFrameBuffer),
        ENTRY(ReleaseFrameBuffer),
        ENTRY(InstPostProcessMsgWnd),
        ENTRY(InstPostProcessThreadID),
        ENTRY(InstPostProcessCallBack),
        ENTRY(InstCamCfgChangeMsgWnd),
        ENTRY(InstCamCfgChangeThreadID),
        ENTRY(InstCamCfgChangeCallBack),
        ENTRY(RefreshCameraList),
        ENTRY(GetGrabberParamLimits),
        ENTRY(GetGrabberParam),
        ENTRY(SetGrabberParam),
        ENTRY(Snap),
        ENTRY(GetAcquisitionState),
        ENTRY(StopSnap),
        ENTRY(CamCntrlDialog),
        ENTRY(CloseCamCntrlDialog),
        ENTRY(IsCamCntrlDialogOpen),
        ENTRY(InstCamCntrlMsgWnd),
        ENTRY(InstCamCntrlThreadID),
        ENTRY(InstCamCntrlCallBack),
        ENTRY(GrabberConfigDialog),
        ENTRY(GetNumCmdChannels),
        ENTRY(SetActCmdChannelIndex),
        ENTRY(GetFirstCmdChannel),
        ENTRY(GetActCmdChannel),
        ENTRY(GetCmdChannel),
        ENTRY(GetActCmdChannelIndex),
        ENTRY(SelectCmdDialog),
        ENTRY(CMDOpen),
        ENTRY(CMDReadByte),
        ENTRY(CMDWriteByte),
        ENTRY(CMDReadBuffer),
        ENTRY(CMDWriteBuffer),
        ENTRY(CMDWriteCString),
        ENTRY(CMDPurge),
        ENTRY(CMDClose),
        ENTRY(SetGrabberBit),
        ENTRY(GetGrabberBit),
        ENTRY(GetFeatureStatus),
        ENTRY(GetFeatureMask),
        ENTRY(SetFeature),
        ENTRY(GetFeature),
        ENTRY(StartTimer),
        ENTRY(StopTimer),
        ENTRY(ChangeTimerTB),
        ENTRY(GetTimerMicroseconds),
        ENTRY(SetTimerMicroseconds),
        ENTRY(GetNumCmdChannelTypes),
        ENTRY(CreateCmdChannel),
        ENTRY(DeleteCmdChannel),
        ENTRY(DeleteCmdChannelList),
        ENTRY(SignalCamCfgChange),
        ENTRY(SignalCamCntrlDlgEvent),
        ENTRY(UpdateCamCntrlDialogs),
        ENTRY(RegisterWindowHandle),
        ENTRY(UnRegisterWindowHandle),
        ENTRY(DoPostProcess),
        ENTRY(SetAcquisitionState),
        ENTRY(SetDefaultIodTimerConfigToGrabber),
        ENTRY(GetDefaultIodTimerConfigFromGrabber),
        ENTRY(SetDriverDesc),
        ENTRY(SetFirstCamera),
        ENTRY(CreateCamera),
        ENTRY(GetBiggestSectionNum),
    };
    EXPECT_EQ(entries.size(), 103u);
    ExpectSlots("grabber.h", 99, entries);
}

TEST(Slots, OfCamerasStandAsNumbered) {
    using Class = CMivoraCamera;
    ExpectSlots("camera.h", 4,
                {ENTRY(CreateGfxMode), ENTRY(GetExtraDescription), ENTRY(BuildGfxModeList),
                 ENTRY(GetCameraRecord)});
}

TEST(Slots, OfGraphicsModesStandAsNumbered) {
    using Class = CMivoraGfxMode;
    ExpectSlots("gfx_mode.h", 11,
                {ENTRY(GetxRes), ENTRY(GetyRes), ENTRY(GetNumComponents),
                 ENTRY(GetAllocatedBitPerComponent), ENTRY(GetBitStartComponent),
                 ENTRY(GetBitPerComponent), ENTRY(GetColorCoding), ENTRY(GetCFAxOffset),
                 ENTRY(GetCFAyOffset), ENTRY(GetNumPixels), ENTRY(GetImageSize)});
}

TEST(Slots, OfCommandChannelsStandAsNumbered) {
    using Class = CCmdChannel;
    ExpectSlots("cmd_channel.h", 14,
                {ENTRY(GetChannelTypeName), ENTRY(GetConfigText), ENTRY(SetConfig),
                 ENTRY(GetConfig), ENTRY(ConfigDialog), ENTRY(Open), ENTRY(ReadByte),
                 ENTRY(WriteByte), ENTRY(ReadBuffer), ENTRY(WriteBuffer), ENTRY(WriteCString),
                 ENTRY(Purge), ENTRY(Close), ENTRY(WriteBufferWithDelay), ENTRY(GetChannelKind)});
}

} // namespace
