#include "platform/file_system.h"
#include "tests/host/test_grabber.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class Configuration : public testing::Test {
protected:
    Configuration() : installed(&sink), iniPath(directory.PathOf("grabber.ini")) {}

    /// Writes the ini file and gives it to the grabber.
    void Start(const std::string& content, int32_t section = 0) {
        directory.Write("grabber.ini", content);
        ASSERT_EQ(grabber->SetGrabberIni(iniPath.c_str(), section), MV_OK);
    }

    std::string OnDisk() { return directory.Read("grabber.ini"); }

    using Read = uint32_t (CMivoraGrabber::*)(const char*, const char*, char*, uint32_t);

    std::string Text(Read read, const char* key) {
        char buffer[256];
        const uint32_t length = (grabber.get()->*read)(key, "<default>", buffer, sizeof buffer);
        EXPECT_EQ(length, std::string(buffer).size());
        return buffer;
    }

    /// Another grabber on the same file, as in the next run of the program.
    void Restart() {
        grabber = std::make_unique<TestGrabber>();
        ASSERT_EQ(grabber->SetGrabberIni(iniPath.c_str(), 0), MV_OK);
    }

    support::TemporaryDirectory directory;
    support::RecordingSink sink;
    InstalledSink installed;
    const std::string iniPath;
    std::unique_ptr<TestGrabber> grabber = std::make_unique<TestGrabber>();
};

using Lines = std::vector<std::string>;

TEST(SectionNames, AreBuiltFromTheNumber) {
    char buffer[32];
    InitGrabberSectStr(buffer, sizeof buffer, 0);
    EXPECT_STREQ(buffer, "Grabber_0");
    InitGrabberSectStr(buffer, sizeof buffer, 12);
    EXPECT_STREQ(buffer, "Grabber_12");
    InitGrabberSectStr(buffer, 4, 1);
    EXPECT_STREQ(buffer, "Gra");
    InitGrabberSectStr(nullptr, 0, 1);
}

TEST_F(Configuration, IsAbsentAtFirst) {
    EXPECT_EQ(grabber->GetIni(), nullptr);
    EXPECT_EQ(grabber->GetSectionNumber(), 0);
    EXPECT_STREQ(grabber->GetConfigDirectory(), "");
    EXPECT_EQ(grabber->GetGrabberInt32("k", 5), 5);
    EXPECT_EQ(Text(&CMivoraGrabber::GetGrabberString, "k"), "<default>");
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), -1);
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_TRUE(sink.Take().empty());
}

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

TEST_F(Configuration, StandsInTheDirectoryOfItsFile) {
    Start("", 3);
    EXPECT_EQ(grabber->GetConfigDirectory(), directory.Path());
    EXPECT_EQ(grabber->GetSectionNumber(), 3);
    EXPECT_EQ(grabber->GetIni()->GetPath(), iniPath);
    EXPECT_EQ(grabber->SetGrabberIni("bare.ini", 0), MV_OK);
    EXPECT_STREQ(grabber->GetConfigDirectory(), "");
}

TEST_F(Configuration, StaysWhenANewFileIsRefused) {
    Start("[Grabber_1]\nk=1\n", 1);
    EXPECT_EQ(grabber->SetGrabberIni(nullptr, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber->SetGrabberIni("", 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber->SetGrabberIni(iniPath.c_str(), -1), MV_BAD_VALUE);
    EXPECT_TRUE(sink.Take().empty());
    EXPECT_EQ(grabber->SetGrabberIni(directory.Path().c_str(), 0), MV_CONFIG_NOT_LOADED);
    EXPECT_EQ(sink.Take(), Lines({"0 Mivora: SetGrabberIni: Cannot read \"" + directory.Path() +
                                  "\": is a directory"}));
    EXPECT_EQ(grabber->GetGrabberInt32("k", 0), 1);
    EXPECT_EQ(grabber->SetCameraIni(nullptr), MV_BAD_VALUE);
    EXPECT_EQ(grabber->SetCameraIni(""), MV_BAD_VALUE);
    EXPECT_EQ(grabber->SetCameraIni(directory.Path().c_str()), MV_CONFIG_NOT_LOADED);
    EXPECT_EQ(sink.Take(), Lines({"0 Mivora: SetCameraIni: Cannot read \"" + directory.Path() +
                                  "\": is a directory"}));
}

TEST_F(Configuration, OfTheGrabberIsReadFromItsSection) {
    Start("[Grabber_0]\nn=1\nt=zero\n[Grabber_1]\nn=0x10\nt=one\n", 1);
    EXPECT_EQ(grabber->GetGrabberInt32("N", 5), 16);
    EXPECT_EQ(grabber->GetGrabberInt32("absent", 5), 5);
    EXPECT_EQ(Text(&CMivoraGrabber::GetGrabberString, "T"), "one");
    EXPECT_EQ(Text(&CMivoraGrabber::GetGrabberString, "absent"), "<default>");
    char cut[3];
    EXPECT_EQ(grabber->GetGrabberString("t", "", cut, sizeof cut), 3u);
    EXPECT_STREQ(cut, "on");
}

TEST_F(Configuration, OfTheGrabberIsSavedIntoItsSection) {
    Start("; mine\n[Grabber_0]\n", 0);
    EXPECT_EQ(grabber->SaveGrabberInt32("i", -5), MV_OK);
    EXPECT_EQ(grabber->SaveGrabberHex32("h", 0xCAFE), MV_OK);
    EXPECT_EQ(grabber->SaveGrabberString("s", "text"), MV_OK);
    EXPECT_EQ(OnDisk(), "; mine\n[Grabber_0]\ni=-5\nh=0x0000CAFE\ns=text\n");
    EXPECT_EQ(grabber->SaveGrabberString("a=b", "x"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(sink.Take().size(), 1u);
}

TEST_F(Configuration, OfCamerasAndModesIsReadFromTheirSections) {
    Start("[Camera_4]\nGain=7\nLens=wide\n[Mode_4_0]\nShift=2\nNote=n\n[Mode_4_1]\nShift=3\n");
    grabber->MakeCameras({1, 2});
    CMivoraCamera* const camera = grabber->GetCamera(1);
    char text[16];
    EXPECT_EQ(grabber->GetCamSpecInt32(camera, "Gain", 9), 9);
    EXPECT_EQ(grabber->GetActCamSpecInt32("Gain", 9), 9);
    EXPECT_EQ(grabber->GetActModeSpecInt32("Shift", 9), 9);
    EXPECT_EQ(Text(&CMivoraGrabber::GetActCamSpecString, "Lens"), "<default>");
    EXPECT_EQ(Text(&CMivoraGrabber::GetActModeSpecString, "Note"), "<default>");
    camera->SetCameraSectionNum(4);
    EXPECT_EQ(grabber->GetCamSpecInt32(camera, "Gain", 9), 7);
    EXPECT_EQ(grabber->GetCamSpecInt32(nullptr, "Gain", 9), 9);
    EXPECT_EQ(grabber->GetCamSpecString(camera, "Lens", "", text, sizeof text), 4u);
    EXPECT_STREQ(text, "wide");
    EXPECT_EQ(grabber->GetModeSpecInt32(camera, 1, "Shift", 9), 3);
    EXPECT_EQ(grabber->GetModeSpecInt32(camera, 2, "Shift", 9), 9);
    EXPECT_EQ(grabber->GetModeSpecInt32(nullptr, 1, "Shift", 9), 9);
    grabber->StoreActCameraIndex(1);
    EXPECT_EQ(grabber->GetActCamSpecInt32("Gain", 9), 7);
    EXPECT_EQ(Text(&CMivoraGrabber::GetActCamSpecString, "Lens"), "wide");
    EXPECT_EQ(grabber->GetActModeSpecInt32("Shift", 9), 2);
    EXPECT_EQ(Text(&CMivoraGrabber::GetActModeSpecString, "Note"), "n");
    camera->SetActGfxModeIndex(-1);
    EXPECT_EQ(grabber->GetActModeSpecInt32("Shift", 9), 9);
}

TEST_F(Configuration, OfCamerasMayStandInAFileOfItsOwn) {
    Start("[Camera_0]\nGain=1\n");
    grabber->MakeCameras({1});
    grabber->StoreActCameraIndex(0);
    grabber->GetActCamera()->SetCameraSectionNum(0);
    EXPECT_EQ(grabber->GetActCamSpecInt32("Gain", 9), 1);
    const std::string cameras = directory.Write("cameras.ini", "[Camera_0]\nGain=2\n[Camera_7]\n");
    EXPECT_EQ(grabber->SetCameraIni(cameras.c_str()), MV_OK);
    EXPECT_EQ(grabber->GetActCamSpecInt32("Gain", 9), 2);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), 7);
    EXPECT_EQ(grabber->SetCameraIni(iniPath.c_str()), MV_OK);
    EXPECT_EQ(grabber->GetActCamSpecInt32("Gain", 9), 1);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), 0);
}

TEST_F(Configuration, KnowsTheBiggestSectionNumber) {
    Start("[Camera_2]\n[CAMERA_11]\n[Camera_x]\n[Camera_]\n[Camera_99x]\n[Camera_-5]\n"
          "[Camera_99999999999]\n[MyCamera_50]\n[Mode_3_1]\n");
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), 11);
    EXPECT_EQ(grabber->GetBiggestSectionNum("camera_"), 11);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Mode_3_"), 1);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Mode_"), -1);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Lens_"), -1);
    EXPECT_EQ(grabber->GetBiggestSectionNum(nullptr), -1);
}

TEST_F(Configuration, LoadsFromAFileThatIsNotThereYet) {
    EXPECT_EQ(grabber->SetGrabberIni(iniPath.c_str(), 0), MV_OK);
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_FALSE(platform::PathExists(iniPath));
}

TEST_F(Configuration, ComesBackInTheNextRun) {
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
    uint32_t bit = 0;
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

TEST_F(Configuration, LeavesTheKeyOfTheModuleAndAllCommentsAlone) {
    const std::string mine = "; the left camera\n[Grabber_0]\nUniqueId=CAM\nMine = yes\n";
    Start(mine);
    for (int i = 0; i < 10; ++i) {
        grabber->SetSavedExposure(static_cast<uint32_t>(i));
        ASSERT_EQ(grabber->SaveGrabberConfig(), MV_OK);
    }
    EXPECT_EQ(OnDisk().substr(0, mine.size()), mine);
    EXPECT_EQ(Text(&CMivoraGrabber::GetGrabberString, "UniqueId"), "CAM");
}

TEST_F(Configuration, KeepsValuesThatTheFileDoesNotGive) {
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

TEST_F(Configuration, SkipsChannelsThatCannotBeMade) {
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

TEST_F(Configuration, SkipsChannelsThatRefuseTheirConfiguration) {
    Start("[Grabber_0]\nNumCmdChannels=1\n[Channel_0_0]\nTYPE=Fake\n");
    grabber->newChannelConfigResult = MV_CONFIG_NOT_LOADED;
    EXPECT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(grabber->GetNumCmdChannels(), 0u);
    EXPECT_EQ(sink.Take().size(), 1u);
}

TEST_F(Configuration, TellsWhenTheDiskRefuses) {
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

TEST_F(Configuration, OfACameraGetsTheFirstFreeSectionWhenTheBiggestNumberIsTaken) {
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

TEST_F(Configuration, OfSeveralGrabbersStandsInOneFile) {
    Start("", 0);
    TestGrabber other;
    ASSERT_EQ(other.SetGrabberIni(iniPath.c_str(), 1), MV_OK);
    EXPECT_EQ(grabber->SaveGrabberInt32("k", 1), MV_OK);
    EXPECT_EQ(other.SaveGrabberInt32("k", 2), MV_OK);
    EXPECT_EQ(OnDisk(), "[Grabber_0]\nk=1\n\n[Grabber_1]\nk=2\n");
}

} // namespace
