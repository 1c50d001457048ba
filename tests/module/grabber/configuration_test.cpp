// configuration_test.cpp - the chosen camera, remembered across runs
#include "grabber/configuration.h"

#include "grabber/camera_identity.h"
#include "tests/module/grabber_fixture.h"

using namespace pyxen;

namespace {

class Configuration : public GrabberFixture {
protected:
    // What a new grabber finds under the key.
    std::string Saved() {
        CIniFile ini;
        EXPECT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
        char text[2048];
        ini.GetText("Grabber_0", "UniqueId", "<absent>", text, sizeof text);
        return text;
    }
    const std::string saveLine = "1 CMivoraKVNPyxenClass::SaveGrabberConfig";
};

TEST_F(Configuration, SavesTheActiveCamerasIdentifier) {
    Init();
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(Saved(), "cam-ext-1");
    EXPECT_EQ(Log(), Texts{saveLine});
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(Configuration, SavesAnEmptyTextWithoutActiveCamera) {
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(-1), MV_OK);
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(Saved(), "");
}

TEST_F(Configuration, SavingBeforeInitForgetsTheCamera) {
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(Saved(), "");
}

TEST_F(Configuration, WithoutIniFileSavingAnswersTheHostsCode) {
    WithoutIni();
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(Log().front(), saveLine);
}

TEST_F(Configuration, GoesToTheGrabbersOwnSection) {
    Init();
    ASSERT_EQ(Grabber().SetGrabberIni(directory.PathOf("host.ini").c_str(), 12), MV_OK);
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
    char text[64];
    ini.GetText("Grabber_12", "UniqueId", "", text, sizeof text);
    EXPECT_STREQ(text, "cam-ext-1");
    EXPECT_FALSE(ini.HasKey("Grabber_0", "UniqueId"));
}

TEST_F(Configuration, LoadingAsksTheSdkNothing) {
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    EXPECT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(Configuration, AnAbsentKeyForgetsTheCamera) {
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    Grabber().GetIni()->RemoveKey("Grabber_0", "UniqueId");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(Configuration, HasTheNumberOfConversionThreadsInTheGrabbersSection) {
    const std::string file = directory.PathOf("host.ini");
    const auto load = [&](const char* value) {
        CIniFile ini;
        EXPECT_TRUE(ini.Open(file.c_str()));
        EXPECT_TRUE(ini.WriteText("Grabber_3", "ConversionThreads", value));
        return LoadConversionThreads(&ini, 3);
    };
    EXPECT_EQ(load("1"), 1u);
    EXPECT_EQ(load("2"), 2u);
    EXPECT_EQ(load("0x10"), 16u);
    EXPECT_EQ(load("64"), 64u);
    EXPECT_EQ(load("65"), 64u);
    EXPECT_EQ(load("0"), 1u);
    EXPECT_EQ(load("-4"), 1u);
    EXPECT_EQ(load("several"), 1u);
    EXPECT_EQ(load(""), 1u);
    CIniFile other;
    EXPECT_EQ(LoadConversionThreads(&other, 3), 1u);
    EXPECT_EQ(LoadConversionThreads(nullptr, 3), 1u);
}

TEST_F(Configuration, SavingLeavesTheNumberOfConversionThreadsAlone) {
    WriteIni("[Grabber_0]\nConversionThreads=2 \n");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    Init();
    ASSERT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
    EXPECT_EQ(ini.GetInt32("Grabber_0", "ConversionThreads", 0), 2);
}

TEST_F(Configuration, ReadsUpTo1023Bytes) {
    const std::string longest(1023, 'i');
    sdk.Data().cameras[0].extendedId = longest;
    WriteIni("[Grabber_0]\nUniqueId=" + longest + "zzz\n");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 0);
}

TEST_F(Configuration, WithoutIniFileThereIsNothingToLoad) {
    WithoutIni();
    EXPECT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(Configuration, ASavedCameraIsActiveInTheNextRun) {
    Init();
    ASSERT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    Destroy();
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 0);
}

TEST_F(Configuration, WorksWithoutSink) {
    WithoutSink();
    Init();
    EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(Saved(), "cam-ext-1");
}

// ---- the key alone ----

TEST(ChosenCamera, IsKeptInTheGrabbersSection) {
    const support::TemporaryDirectory directory;
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
    CameraIdentity identity;
    SaveChosenCamera(&ini, 3, "an id");
    ASSERT_TRUE(LoadChosenCamera(&ini, 3, identity));
    EXPECT_EQ(identity.GetSelected(), "an id");
    ASSERT_TRUE(LoadChosenCamera(&ini, 4, identity));
    EXPECT_EQ(identity.GetSelected(), "");
    SaveChosenCamera(&ini, 3, nullptr);
    ASSERT_TRUE(identity.Select("another"));
    ASSERT_TRUE(LoadChosenCamera(&ini, 3, identity));
    EXPECT_EQ(identity.GetSelected(), "");
}

TEST(ChosenCamera, ComesBackAsItWas) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("host.ini");
    for (const std::string id : {" blanks at both ends\t", " leading", "trailing\t", "\"quoted\"",
                                 "\"", "a \"quoted\" word", "two\r\nlines", "C:\\new\\route",
                                 "\\ and \" at the ends ", "=[;#]", "\"open", "end\\", "plain"}) {
        CIniFile ini;
        ASSERT_TRUE(ini.Open(path.c_str()));
        ASSERT_TRUE(SaveChosenCamera(&ini, 0, id.c_str())) << id;
        CIniFile again;
        ASSERT_TRUE(again.Open(path.c_str()));
        CameraIdentity identity;
        ASSERT_TRUE(LoadChosenCamera(&again, 0, identity));
        EXPECT_EQ(identity.GetSelected(), id);
    }
}

TEST(ChosenCamera, IsWrittenPlainWhereThatIsEnough) {
    const support::TemporaryDirectory directory;
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\new", "C:\\new"},     {"a \"word\" here", "a \"word\" here"},
        {" x", "\" x\""},           {"two\nlines", "\"two\\nlines\""},
        {"\"q\\", "\"\\\"q\\\\\""},
    };
    for (const auto& [id, written] : cases) {
        ASSERT_TRUE(SaveChosenCamera(&ini, 0, id));
        char text[64];
        ini.GetText("Grabber_0", "UniqueId", "", text, sizeof text);
        EXPECT_STREQ(text, written);
    }
}

TEST(ChosenCamera, IsNoneWithoutAFile) {
    CameraIdentity identity;
    ASSERT_TRUE(identity.Select("an id"));
    SaveChosenCamera(nullptr, 0, "another");
    ASSERT_TRUE(LoadChosenCamera(nullptr, 0, identity));
    EXPECT_EQ(identity.GetSelected(), "");
    EXPECT_EQ(identity.GetOpened(), "");
}

} // namespace
