// slots_test.cpp - positions of the virtual operations against the interface headers
#include "mivora/grabber.h"
#include "platform/file_system.h"
#include "tests/support/virtual_table.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <string>

namespace {

using SlotsByName = std::map<std::string, int>;

// The slot numbers in the comments of an interface header; "~" is the destructor.
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
        // The name of the operation precedes the first parenthesis after the mark.
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

// Each operation must be at the position in its comment; the destructor occupies two entries.
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

#define SLOT_ENTRY(name)                                                                           \
    { #name, support::EntryOf(&Class::name) }

TEST(Slots, OfGrabbersMatchTheirNumbers) {
    using Class = CMivoraGrabber;
    const SlotsByName entries = {
        SLOT_ENTRY(SetGrabberIni),
        SLOT_ENTRY(SetCameraIni),
        SLOT_ENTRY(LoadGrabberConfig),
        SLOT_ENTRY(GetCamSpecInt32),
        SLOT_ENTRY(GetCamSpecString),
        SLOT_ENTRY(GetModeSpecInt32),
        SLOT_ENTRY(GetGrabberInt32),
        SLOT_ENTRY(GetGrabberString),
        SLOT_ENTRY(GetActCamSpecInt32),
        SLOT_ENTRY(GetActCamSpecString),
        SLOT_ENTRY(GetActModeSpecInt32),
        SLOT_ENTRY(GetActModeSpecString),
        SLOT_ENTRY(SaveGrabberInt32),
        SLOT_ENTRY(SaveGrabberHex32),
        SLOT_ENTRY(SaveGrabberString),
        SLOT_ENTRY(SaveCameraModeConfig),
        SLOT_ENTRY(SaveGrabberConfig),
        SLOT_ENTRY(Init),
        SLOT_ENTRY(DeInit),
        SLOT_ENTRY(OpenActCamera),
        SLOT_ENTRY(IsCameraOpen),
        SLOT_ENTRY(CloseActCamera),
        SLOT_ENTRY(GetDriverDesc),
        SLOT_ENTRY(GetDriverName),
        SLOT_ENTRY(GetDriverVersion),
        SLOT_ENTRY(GetNumCameras),
        SLOT_ENTRY(GetActCameraIndex),
        SLOT_ENTRY(GetCameraIndexByQZRCameraID),
        SLOT_ENTRY(GetCameraIndexByCameraUniqueID),
        SLOT_ENTRY(GetFirstCamera),
        SLOT_ENTRY(GetCamera),
        SLOT_ENTRY(GetActCamera),
        SLOT_ENTRY(GetLastCamera),
        SLOT_ENTRY(SetActCameraIndex),
        SLOT_ENTRY(SelectCameraDialog),
        SLOT_ENTRY(SelectModeDialog),
        SLOT_ENTRY(PrepareFrameBuffers),
        SLOT_ENTRY(GetLastFilledBuffer),
        SLOT_ENTRY(GetFrameBuffer),
        SLOT_ENTRY(ReleaseFrameBuffer),
        SLOT_ENTRY(InstPostProcessMsgWnd),
        SLOT_ENTRY(InstPostProcessThreadID),
        SLOT_ENTRY(InstPostProcessCallBack),
        SLOT_ENTRY(InstCamCfgChangeMsgWnd),
        SLOT_ENTRY(InstCamCfgChangeThreadID),
        SLOT_ENTRY(InstCamCfgChangeCallBack),
        SLOT_ENTRY(RefreshCameraList),
        SLOT_ENTRY(GetGrabberParamLimits),
        SLOT_ENTRY(GetGrabberParam),
        SLOT_ENTRY(SetGrabberParam),
        SLOT_ENTRY(Snap),
        SLOT_ENTRY(GetAcquisitionState),
        SLOT_ENTRY(StopSnap),
        SLOT_ENTRY(CamCntrlDialog),
        SLOT_ENTRY(CloseCamCntrlDialog),
        SLOT_ENTRY(IsCamCntrlDialogOpen),
        SLOT_ENTRY(InstCamCntrlMsgWnd),
        SLOT_ENTRY(InstCamCntrlThreadID),
        SLOT_ENTRY(InstCamCntrlCallBack),
        SLOT_ENTRY(GrabberConfigDialog),
        SLOT_ENTRY(GetNumCmdChannels),
        SLOT_ENTRY(SetActCmdChannelIndex),
        SLOT_ENTRY(GetFirstCmdChannel),
        SLOT_ENTRY(GetActCmdChannel),
        SLOT_ENTRY(GetCmdChannel),
        SLOT_ENTRY(GetActCmdChannelIndex),
        SLOT_ENTRY(SelectCmdDialog),
        SLOT_ENTRY(CMDOpen),
        SLOT_ENTRY(CMDReadByte),
        SLOT_ENTRY(CMDWriteByte),
        SLOT_ENTRY(CMDReadBuffer),
        SLOT_ENTRY(CMDWriteBuffer),
        SLOT_ENTRY(CMDWriteCString),
        SLOT_ENTRY(CMDPurge),
        SLOT_ENTRY(CMDClose),
        SLOT_ENTRY(SetGrabberBit),
        SLOT_ENTRY(GetGrabberBit),
        SLOT_ENTRY(GetFeatureStatus),
        SLOT_ENTRY(GetFeatureMask),
        SLOT_ENTRY(SetFeature),
        SLOT_ENTRY(GetFeature),
        SLOT_ENTRY(StartTimer),
        SLOT_ENTRY(StopTimer),
        SLOT_ENTRY(ChangeTimerTB),
        SLOT_ENTRY(GetTimerMicroseconds),
        SLOT_ENTRY(SetTimerMicroseconds),
        SLOT_ENTRY(GetNumCmdChannelTypes),
        SLOT_ENTRY(CreateCmdChannel),
        SLOT_ENTRY(DeleteCmdChannel),
        SLOT_ENTRY(DeleteCmdChannelList),
        SLOT_ENTRY(SignalCamCfgChange),
        SLOT_ENTRY(SignalCamCntrlDlgEvent),
        SLOT_ENTRY(UpdateCamCntrlDialogs),
        SLOT_ENTRY(RegisterWindowHandle),
        SLOT_ENTRY(UnRegisterWindowHandle),
        SLOT_ENTRY(DoPostProcess),
        SLOT_ENTRY(SetAcquisitionState),
        SLOT_ENTRY(SetDefaultIodTimerConfigToGrabber),
        SLOT_ENTRY(GetDefaultIodTimerConfigFromGrabber),
        SLOT_ENTRY(SetDriverDesc),
        SLOT_ENTRY(SetFirstCamera),
        SLOT_ENTRY(CreateCamera),
        SLOT_ENTRY(GetBiggestSectionNum),
    };
    EXPECT_EQ(entries.size(), 103u);
    ExpectSlots("grabber.h", 99, entries);
}

TEST(Slots, OfCamerasMatchTheirNumbers) {
    using Class = CMivoraCamera;
    ExpectSlots("camera.h", 4,
                {SLOT_ENTRY(CreateGfxMode), SLOT_ENTRY(GetExtraDescription),
                 SLOT_ENTRY(BuildGfxModeList), SLOT_ENTRY(GetCameraRecord)});
}

TEST(Slots, OfGraphicsModesMatchTheirNumbers) {
    using Class = CMivoraGfxMode;
    ExpectSlots("gfx_mode.h", 11,
                {SLOT_ENTRY(GetxRes), SLOT_ENTRY(GetyRes), SLOT_ENTRY(GetNumComponents),
                 SLOT_ENTRY(GetAllocatedBitPerComponent), SLOT_ENTRY(GetBitStartComponent),
                 SLOT_ENTRY(GetBitPerComponent), SLOT_ENTRY(GetColorCoding),
                 SLOT_ENTRY(GetCFAxOffset), SLOT_ENTRY(GetCFAyOffset), SLOT_ENTRY(GetNumPixels),
                 SLOT_ENTRY(GetImageSize)});
}

TEST(Slots, OfCommandChannelsMatchTheirNumbers) {
    using Class = CCmdChannel;
    ExpectSlots("cmd_channel.h", 14,
                {SLOT_ENTRY(GetChannelTypeName), SLOT_ENTRY(GetConfigText), SLOT_ENTRY(SetConfig),
                 SLOT_ENTRY(GetConfig), SLOT_ENTRY(ConfigDialog), SLOT_ENTRY(Open),
                 SLOT_ENTRY(ReadByte), SLOT_ENTRY(WriteByte), SLOT_ENTRY(ReadBuffer),
                 SLOT_ENTRY(WriteBuffer), SLOT_ENTRY(WriteCString), SLOT_ENTRY(Purge),
                 SLOT_ENTRY(Close), SLOT_ENTRY(WriteBufferWithDelay), SLOT_ENTRY(GetChannelKind)});
}

#undef SLOT_ENTRY

} // namespace
