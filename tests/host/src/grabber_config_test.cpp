// grabber_config_test.cpp - saving and loading the configuration of a grabber
#include "platform/file_system.h"
#include "tests/host/src/configuration_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

TEST_F(Configuration, CannotBeSavedWithoutAFile) {
    EXPECT_EQ(grabber->SaveGrabberInt32("k", 1), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->SaveGrabberHex32("k", 1), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->SaveGrabberString("k", "v"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->SaveGrabberConfig(), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_NO_CAMERA);
    grabber->MakeCameras({1});
    grabber->StoreActCameraIndex(0);
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(sink.Take(),
              Lines({"0 Mivora: Cannot save k: the grabber has no ini file",
                     "0 Mivora: Cannot save k: the grabber has no ini file",
                     "0 Mivora: Cannot save k: the grabber has no ini file",
                     "0 Mivora: Cannot save the configuration: the grabber has no ini file",
                     "0 Mivora: Cannot save the camera: the grabber has no ini file"}));
}

TEST_F(Configuration, LoadsFromAFileThatIsNotThereYet) {
    EXPECT_EQ(grabber->SetGrabberIni(iniPath.c_str(), 0), MV_OK);
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_FALSE(platform::PathExists(iniPath));
}

TEST_F(Configuration, IsRestoredInTheNextRun) {
    Start("");
    grabber->SetSavedExposure(4000000000u);
    grabber->SetSavedInterval(30);
    grabber->SetSavedTimeBase(-3);
    grabber->SetGrabberParam(MVGF_TIMER_MODE, 2, 0);
    grabber->StartTimer();
    grabber->SetGrabberBit(0, 1);
    grabber->SetGrabberBit(31, 1);
    grabber->SetFeature(EMV_FEATURE_KEEP_NEWEST, 0);
    grabber->SetFeature(EMV_FEATURE_CAM_CNTRL_EVENT, 0);
    grabber->AddFakeChannel()->setting = "first";
    grabber->AddCmdChannel(grabber->CreateCmdChannel(0));
    grabber->AddFakeChannel()->setting = "third";
    grabber->SetActCmdChannelIndex(1);
    ASSERT_EQ(grabber->SaveGrabberConfig(), MV_OK);

    Restart();
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetSavedExposure(), 4000000000u);
    EXPECT_EQ(grabber->GetExposureValue(), 4000000000u);
    EXPECT_EQ(grabber->GetIntervalValue(), 30u);
    EXPECT_EQ(grabber->GetTimeBase(), -3);
    EXPECT_EQ(grabber->GetTimerMode(), 2u);
    EXPECT_EQ(grabber->GetTimerEnabled(), 1u);
    std::uint32_t bit = 0;
    EXPECT_EQ(grabber->GetGrabberBit(0, &bit), MV_OK);
    EXPECT_EQ(bit, 1u);
    EXPECT_EQ(grabber->GetGrabberBit(31, &bit), MV_OK);
    EXPECT_EQ(bit, 1u);
    EXPECT_EQ(grabber->GetFeatureMask(), 5u);
    ASSERT_EQ(grabber->GetNumCmdChannels(), 3u);
    EXPECT_EQ(grabber->GetActCmdChannelIndex(), 1);
    EXPECT_EQ(static_cast<FakeChannel*>(grabber->GetCmdChannel(0))->setting, "first");
    EXPECT_STREQ(grabber->GetCmdChannel(1)->GetChannelTypeName(), "Serial Port");
    EXPECT_EQ(static_cast<FakeChannel*>(grabber->GetCmdChannel(2))->setting, "third");
    const std::string before = OnDisk();
    EXPECT_EQ(grabber->SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(OnDisk(), before);
    EXPECT_TRUE(sink.Take().empty());
}

TEST_F(Configuration, PreservesTheKeyOfTheModuleAndAllComments) {
    const std::string mine = "; the left camera\n[Grabber_0]\nUniqueId=CAM\nMine = yes\n";
    Start(mine);
    for (int i = 0; i < 10; ++i) {
        grabber->SetSavedExposure(static_cast<std::uint32_t>(i));
        ASSERT_EQ(grabber->SaveGrabberConfig(), MV_OK);
    }
    EXPECT_EQ(OnDisk().substr(0, mine.size()), mine);
    EXPECT_EQ(Text(&CMivoraGrabber::GetGrabberString, "UniqueId"), "CAM");
}

TEST_F(Configuration, KeepsValuesWithoutAValidKey) {
    Start("[Grabber_0]\nTimeBase=1\nExposure=none\nInterval=-4\nGrabberBits=\n");
    grabber->SetSavedExposure(10);
    grabber->SetSavedInterval(20);
    grabber->SetSavedTimeBase(-3);
    grabber->AddFakeChannel();
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetSavedExposure(), 10u);
    EXPECT_EQ(grabber->GetSavedInterval(), 20u);
    EXPECT_EQ(grabber->GetSavedTimeBase(), -3);
    EXPECT_EQ(grabber->GetExposureValue(), 0u);
    EXPECT_EQ(grabber->GetTimeBase(), -6);
    EXPECT_EQ(grabber->GetFeatureMask(), 0xFu);
    EXPECT_EQ(grabber->GetNumCmdChannels(), 1u);
}

TEST_F(Configuration, SkipsChannelsThatCannotBeCreated) {
    Start("[Grabber_0]\nNumCmdChannels=4294967295\nActCmdChannel=7\n"
          "[Channel_0_0]\nTYPE=Unheard Of\n"
          "[Channel_0_1]\ntype=fake\nSETTING=kept\n");
    grabber->AddFakeChannel();
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    ASSERT_EQ(grabber->GetNumCmdChannels(), 1u);
    EXPECT_EQ(static_cast<FakeChannel*>(grabber->GetFirstCmdChannel())->setting, "kept");
    EXPECT_EQ(grabber->GetActCmdChannelIndex(), 0);
    EXPECT_EQ(sink.Take(), Lines({"0 Mivora: LoadGrabberConfig: Cannot make channel Channel_0_0 "
                                  "of type \"Unheard Of\""}));
}

TEST_F(Configuration, SkipsChannelsThatRejectTheirConfiguration) {
    Start("[Grabber_0]\nNumCmdChannels=1\n[Channel_0_0]\nTYPE=Fake\n");
    grabber->newChannelConfigResult = MV_CONFIG_NOT_LOADED;
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetNumCmdChannels(), 0u);
    EXPECT_EQ(sink.Take().size(), 1u);
}

TEST_F(Configuration, ReportsThatWritingFailed) {
    const std::string gone = directory.PathOf("missing/grabber.ini");
    ASSERT_EQ(grabber->SetGrabberIni(gone.c_str(), 0), MV_OK);
    EXPECT_EQ(grabber->SaveGrabberInt32("k", 1), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->SaveGrabberConfig(), MV_CONFIG_NOT_SAVED);
    grabber->MakeCameras({1});
    grabber->StoreActCameraIndex(0);
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(grabber->GetActCamera()->GetCameraSectionNum(), -1);
    const Lines lines = sink.Take();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].find("0 Mivora: Cannot save k: Cannot write \"" + gone + "\": "), 0u);
}

TEST_F(Configuration, OfACameraGetsTheNextSection) {
    Start("[Camera_3]\nCameraUniqueID=0x00000005\n");
    grabber->MakeCameras({0xABCD});
    grabber->StoreActCameraIndex(0);
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_OK);
    EXPECT_EQ(grabber->GetActCamera()->GetCameraSectionNum(), 4);
    EXPECT_EQ(OnDisk(), "[Camera_3]\nCameraUniqueID=0x00000005\n\n"
                        "[Camera_4]\nCameraUniqueID=0x0000ABCD\nCameraName=camera 43981\n"
                        "QZRCameraID=0\nActMode=0\nNumModes=1\n\n"
                        "[Mode_4_0]\nWidth=0\nHeight=0\nComponents=0\nAllocatedBits=0\n"
                        "BitStart=0\nBits=0\nColorCoding=0\nCFAxOffset=0\nCFAyOffset=0\n");
    const std::string before = OnDisk();
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_OK);
    EXPECT_EQ(OnDisk(), before);
}

TEST_F(Configuration, OfACameraGetsTheLowestFreeSectionWhenTheHighestNumberIsTaken) {
    Start("[Camera_0]\n[Camera_2147483647]\n");
    grabber->MakeCameras({0xABCD});
    grabber->StoreActCameraIndex(0);
    EXPECT_EQ(grabber->SaveCameraModeConfig(), MV_OK);
    EXPECT_EQ(grabber->GetActCamera()->GetCameraSectionNum(), 1);
}

TEST_F(Configuration, OfACameraIsFoundByItsUniqueId) {
    Start("[Camera_0]\nCameraUniqueID=0x00000016\nQZRCameraID=4000000000\nActMode=-1\n"
          "[Camera_1]\nCameraUniqueID=33\nQZRCameraID=9\n[Camera_2]\nQZRCameraID=1\n");
    grabber->MakeCameras({11, 22, 33});
    EXPECT_EQ(grabber->GetCamera(0)->GetCameraSectionNum(), -1);
    EXPECT_EQ(grabber->GetCamera(1)->GetCameraSectionNum(), 0);
    EXPECT_EQ(grabber->GetCamera(2)->GetCameraSectionNum(), 1);
    EXPECT_EQ(grabber->GetCameraIndexByQZRCameraID(4000000000u), 1);
    EXPECT_EQ(grabber->GetCameraIndexByQZRCameraID(9), 2);
    EXPECT_NE(grabber->GetCamera(1)->GetActGfxMode(), nullptr);
    EXPECT_NE(grabber->GetCamera(2)->GetActGfxMode(), nullptr);
}

TEST_F(Configuration, OfCamerasIsAppliedWhenItIsLoadedAfterTheList) {
    grabber->MakeCameras({11});
    Start("[Camera_6]\nCameraUniqueID=11\nQZRCameraID=5\n");
    EXPECT_EQ(grabber->GetCamera(0)->GetCameraSectionNum(), -1);
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetCamera(0)->GetCameraSectionNum(), 6);
    EXPECT_EQ(grabber->GetCamera(0)->GetQZRCameraID(), 5u);
}

TEST_F(Configuration, OfCamerasWithASectionIsSavedWithTheGrabber) {
    Start("[Camera_6]\nCameraUniqueID=11\nQZRCameraID=5\n");
    grabber->MakeCameras({11, 22});
    grabber->GetCamera(0)->SetQZRCameraID(8);
    EXPECT_EQ(grabber->SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetCamSpecInt32(grabber->GetCamera(0), "QZRCameraID", -1), 8);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), 6);
}

} // namespace
