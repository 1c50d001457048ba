// grabber_ini_test.cpp - single values in the ini files of a grabber
#include "tests/host/src/configuration_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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

TEST_F(Configuration, IsInTheDirectoryOfItsFile) {
    Start("", 3);
    EXPECT_EQ(grabber->GetConfigDirectory(), directory.Path());
    EXPECT_EQ(grabber->GetSectionNumber(), 3);
    EXPECT_EQ(grabber->GetIni()->GetPath(), iniPath);
    EXPECT_EQ(grabber->SetGrabberIni("bare.ini", 0), MV_OK);
    EXPECT_STREQ(grabber->GetConfigDirectory(), "");
}

TEST_F(Configuration, IsUnchangedWhenANewFileIsRefused) {
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

TEST_F(Configuration, OfCamerasMayBeInASeparateFile) {
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

TEST_F(Configuration, OfSeveralGrabbersMayShareOneFile) {
    Start("", 0);
    TestGrabber other;
    ASSERT_EQ(other.SetGrabberIni(iniPath.c_str(), 1), MV_OK);
    EXPECT_EQ(grabber->SaveGrabberInt32("k", 1), MV_OK);
    EXPECT_EQ(other.SaveGrabberInt32("k", 2), MV_OK);
    EXPECT_EQ(OnDisk(), "[Grabber_0]\nk=1\n\n[Grabber_1]\nk=2\n");
}

TEST_F(Configuration, ReportsTheHighestSectionNumber) {
    Start("[Camera_2]\n[CAMERA_11]\n[Camera_x]\n[Camera_]\n[Camera_99x]\n[Camera_-5]\n"
          "[Camera_99999999999]\n[MyCamera_50]\n[Mode_3_1]\n");
    EXPECT_EQ(grabber->GetBiggestSectionNum("Camera_"), 11);
    EXPECT_EQ(grabber->GetBiggestSectionNum("camera_"), 11);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Mode_3_"), 1);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Mode_"), -1);
    EXPECT_EQ(grabber->GetBiggestSectionNum("Lens_"), -1);
    EXPECT_EQ(grabber->GetBiggestSectionNum(nullptr), -1);
}

} // namespace
