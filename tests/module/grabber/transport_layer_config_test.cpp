// transport_layer_config_test.cpp - the section of the configuration that fits the connection
#include "grabber/transport_layer_config.h"

#include "platform/file_system.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/sdk/loaded_api.h"

#include <algorithm>
#include <filesystem>

using namespace pyxen;

namespace {

constexpr const char* kRules =
    R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"Width","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"LineLength"}]}]})";

class TransportLayerConfigTest : public GrabberFixture {
protected:
    void OpenWith(const std::string& ini) {
        WriteIni(ini);
        Init();
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    }
    /// The lines about configuration and rules.
    Texts Lines() {
        Texts result;
        for (const std::string& line : Log()) {
            for (const char* part : {"TL specific", "feature synchronization", "Using snap start",
                                     "loaded", "FeatureSyncher", "SyncFeature"}) {
                if (line.find(part) != std::string::npos) {
                    result.push_back(line);
                    break;
                }
            }
        }
        return result;
    }
    std::string Found(const std::string& values, const std::string& section) {
        return "1 CMivoraKVNPyxenClass::GetFirstQueueThenSnap: Found TL specific configuration for" +
               values + " in " + directory.PathOf("host.ini") + "/" + section + ".";
    }

    const std::string notFound =
        "1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for \"if-eth0\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"1.4.2\" \"GEV\"";
    const std::string noFile =
        "1 CMivoraKVNPyxenClass::OpenActCamera: No feature synchronization file found.";
    const std::string startFirst =
        "1 CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: First start snap then queue frames";
    const std::string queueFirst =
        "1 CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: First queue frames then start snap";
};

TEST_F(TransportLayerConfigTest, IsAbsentWithoutAnIniFile) {
    WithoutIni();
    Init();
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Lines(), (Texts{notFound, noFile, startFirst}));
}

TEST_F(TransportLayerConfigTest, IsSelectedByAllKeysTogether) {
    OpenWith("[TLSpecificConfig_0]\nInterfaceID=if-eth0\nTLID=tl-gev\nTLVendorName=Korvane\n"
             "TLModelName=Pyxen GigE\nTLVersion=1.4.2\nTLType=GEV\nFirstQueueThenStartSnap=1\n");
    EXPECT_EQ(Lines(),
              (Texts{Found(" \"if-eth0\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"1.4.2\" \"GEV\"",
                           "TLSpecificConfig_0"),
                     noFile, queueFirst}));
}

TEST_F(TransportLayerConfigTest, IsSelectedByAnySubsetOfTheKeys) {
    OpenWith("[TLSpecificConfig_0]\nTLVersion=1.4.2\nInterfaceID=if-eth0\n");
    EXPECT_EQ(Lines(),
              (Texts{Found(" \"if-eth0\" \"1.4.2\"", "TLSpecificConfig_0"), noFile, startFirst}));
}

TEST_F(TransportLayerConfigTest, IsSelectedByTheTransportTypeAlone) {
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFirstQueueThenStartSnap=-1\n");
    EXPECT_EQ(Lines(), (Texts{Found(" \"GEV\"", "TLSpecificConfig_0"), noFile, queueFirst}));
}

TEST_F(TransportLayerConfigTest, ComparesWithRegardToCase) {
    OpenWith("[TLSpecificConfig_0]\nTLType=gev\nFirstQueueThenStartSnap=1\n");
    EXPECT_EQ(Lines(), (Texts{notFound, noFile, startFirst}));
}

TEST_F(TransportLayerConfigTest, IsTheFirstSectionThatMatchesWhole) {
    OpenWith("[TLSpecificConfig_2]\nTLType=GEV\nFirstQueueThenStartSnap=0\n"
             "[TLSpecificConfig_1]\nTLType=GEV\nFirstQueueThenStartSnap=1\n"
             "[TLSpecificConfig_0]\nTLType=GEV\nTLVendorName=Other\nFirstQueueThenStartSnap=0\n");
    EXPECT_EQ(Lines(), (Texts{Found(" \"GEV\"", "TLSpecificConfig_1"), noFile, queueFirst}));
}

TEST_F(TransportLayerConfigTest, EndsAtASectionWithoutSelectors) {
    OpenWith("[TLSpecificConfig_1]\nTLType=GEV\nFirstQueueThenStartSnap=1\n");
    EXPECT_EQ(Lines(), (Texts{notFound, noFile, startFirst}));
}

TEST_F(TransportLayerConfigTest, EndsAtASectionWithResultsOnly) {
    OpenWith("[TLSpecificConfig_0]\nFirstQueueThenStartSnap=1\nFeatureSyncFile=rules.json\n"
             "[TLSpecificConfig_1]\nTLType=GEV\n");
    EXPECT_EQ(Lines(), (Texts{notFound, noFile, startFirst}));
}

TEST_F(TransportLayerConfigTest, CountsAnEmptySelectorAsPresent) {
    OpenWith("[TLSpecificConfig_0]\nTLVendorName=\n[TLSpecificConfig_1]\nTLType=GEV\n");
    EXPECT_EQ(Lines()[0], Found(" \"GEV\"", "TLSpecificConfig_1"));
}

TEST_F(TransportLayerConfigTest, MatchesAnEmptySelectorWithAnUnreadableValue) {
    sdk.Data().transportLayers[0].Remove("TLVendorName");
    OpenWith("[TLSpecificConfig_0]\nTLVendorName=\n");
    EXPECT_EQ(Lines()[0], Found(" \"\"", "TLSpecificConfig_0"));
}

TEST_F(TransportLayerConfigTest, ShowsUnreadableValuesAsEmpty) {
    sdk.Data().transportLayers[0].Remove("TLVersion");
    sdk.Data().interfaces[0]["InterfaceID"].readable = false;
    OpenWith("");
    EXPECT_EQ(
        Lines()[0],
        "1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for \"\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"\" \"GEV\"");
}

TEST_F(TransportLayerConfigTest, TakesAnUnderscoreForEveryDoubleQuote) {
    sdk.Data().transportLayers[0]["TLVendorName"].text = "The \"best\"";
    OpenWith("[TLSpecificConfig_0]\nTLVendorName=The _best_\n");
    EXPECT_EQ(Lines()[0], Found(" \"The _best_\"", "TLSpecificConfig_0"));
}

TEST_F(TransportLayerConfigTest, ShowsAnUnderscoreForEveryDoubleQuoteOfEveryValue) {
    sdk.Data().interfaces[0]["InterfaceID"].text = "\"if\"";
    sdk.Data().transportLayers[0]["TLVersion"].text = "1\"4\"";
    OpenWith("");
    EXPECT_EQ(
        Lines()[0],
        "1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for \"_if_\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"1_4_\" \"GEV\"");
}

TEST_F(TransportLayerConfigTest, ReadsLongValuesWhole) {
    const std::string vendor(5000, 'v');
    sdk.Data().transportLayers[0]["TLVendorName"].text = vendor;
    OpenWith("[TLSpecificConfig_0]\nTLVendorName=" + vendor + "\n");
    EXPECT_EQ(Lines()[0], Found(" \"" + vendor + "\"", "TLSpecificConfig_0"));
}

TEST_F(TransportLayerConfigTest, LoadsTheRulesAndAppliesTheCamerasOnce) {
    directory.Write("rules.json", kRules);
    Camera().localDevice.Put(scripted::IntFeature("LineLength", 0, 0, 4096));
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    const Texts lines = Lines();
    EXPECT_EQ(lines[0], Found(" \"GEV\"", "TLSpecificConfig_0"));
    const std::string path = directory.Path() + platform::kPathSeparator + "rules.json";
    const auto loaded =
        std::find(lines.begin(), lines.end(),
                  "1 CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded " + path + ".");
    ASSERT_NE(loaded, lines.end());
    ASSERT_NE(loaded + 1, lines.end());
    EXPECT_NE((loaded + 1)->find("CMivoraKVNPyxenClass::SyncFeature: "), std::string::npos);
    EXPECT_EQ(lines.back(), startFirst);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), noFile), 0);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}),
              Texts{"PxnFeatureIntSet(localdevice0, \"LineLength\", 640)"});
}

TEST_F(TransportLayerConfigTest, AppliesNoRuleThatWatchesAnotherModule) {
    directory.Write(
        "rules.json",
        R"({"SyncFeatures":[{"ModuleName":"Localdevice","FeatureName":"LineLength","Dependencies":[{"ModuleName":"Camera","FeatureName":"Width"}]}]})");
    Camera().localDevice.Put(scripted::IntFeature("LineLength", 320, 0, 4096));
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    EXPECT_EQ(Grabber().SyncRules().GetEntries().size(), 1u);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(TransportLayerConfigTest, WritesNoRuleThatHoldsAlready) {
    directory.Write("rules.json", kRules);
    Camera().localDevice.Put(scripted::IntFeature("LineLength", 640, 0, 4096));
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(TransportLayerConfigTest, AppliesWhatAFaultyRulesFileDeclaredBeforeItsFault) {
    const std::string rules = kRules;
    directory.Write("rules.json", rules.substr(0, rules.size() - 2) + ",{oops");
    Camera().localDevice.Put(scripted::IntFeature("LineLength", 0, 0, 4096));
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    for (const std::string& line : Lines()) {
        EXPECT_EQ(line.find("Successfully loaded"), std::string::npos) << line;
    }
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}),
              Texts{"PxnFeatureIntSet(localdevice0, \"LineLength\", 640)"});
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
}

TEST_F(TransportLayerConfigTest, OpensWithoutARulesFileThatIsMissing) {
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=absent.json\n");
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    const std::string path = directory.Path() + platform::kPathSeparator + "absent.json";
    EXPECT_EQ(Lines(), (Texts{Found(" \"GEV\"", "TLSpecificConfig_0"),
                              "0 FeatureSyncher::Init: Could not open " + path +
                                  ". No feature synchronization will happen.",
                              startFirst}));
}

TEST_F(TransportLayerConfigTest, LooksForTheRulesInTheCurrentDirectoryWithoutAnother) {
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(directory.Path());
    directory.Write("rules.json", kRules);
    WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    ASSERT_EQ(Grabber().SetGrabberIni("host.ini", 0), MV_OK);
    Init();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    std::filesystem::current_path(former);
    const Texts lines = Lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "1 CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded rules.json."),
              1);
}

TEST_F(TransportLayerConfigTest, IsChosenAnewAtEveryOpening) {
    OpenWith("[TLSpecificConfig_0]\nTLType=GEV\nFirstQueueThenStartSnap=1\n");
    ASSERT_EQ(Lines().back(), queueFirst);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.Data().transportLayers[0]["TLType"].text = "U3V";
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Lines().back(), startFirst);
}

// ---- the search alone ----

class TransportLayerConfigAlone : public LoadedApi {
protected:
    support::TemporaryDirectory directory;
    CIniFile ini;
};

TEST_F(TransportLayerConfigAlone, FindsTheFirstSectionThatFits) {
    sdk.Data().interfaces[0].Put(scripted::StringFeature("InterfaceID", "an \"interface\""));
    ASSERT_TRUE(
        ini.Open(directory
                     .Write("host.ini", "[TLSpecificConfig_0]\nInterfaceID=other\n"
                                        "[TLSpecificConfig_1]\nInterfaceID=an _interface_\n"
                                        "FirstQueueThenStartSnap=1\nFeatureSyncFile=a.xml\n")
                     .c_str()));
    const TransportLayerConfig config(api, scripted::InterfaceHandle(),
                                      scripted::TransportLayerHandle(), &sink);
    bool flag = false;
    std::string file;
    EXPECT_TRUE(config.GetFirstQueueThenSnap(&ini, flag, file));
    EXPECT_TRUE(flag);
    EXPECT_EQ(file, "a.xml");
    EXPECT_EQ(config.GetShownValues().substr(0, 17), " \"an _interface_\"");
}

TEST_F(TransportLayerConfigAlone, WithoutAFileNothingFits) {
    const TransportLayerConfig config(api, nullptr, nullptr, &sink);
    bool flag = true;
    std::string file = "unchanged";
    EXPECT_FALSE(config.GetFirstQueueThenSnap(nullptr, flag, file));
    EXPECT_TRUE(flag);
    EXPECT_EQ(file, "unchanged");
}

} // namespace
