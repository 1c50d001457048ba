// feature_syncher_test.cpp - reading the feature synchronisation file, statement by statement
#include "sync/feature_syncher.h"

#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

using Lines = std::vector<std::string>;

class FeatureSyncherTest : public testing::Test {
protected:
    /// Writes `content` to a file and reads it; the loading line is checked and taken away.
    int Read(const std::string& content) {
        const std::string path = directory.Write("sync.json", content);
        const int result = syncher.Init(path.c_str(), &sink);
        lines = sink.Take();
        EXPECT_FALSE(lines.empty());
        if (!lines.empty()) {
            EXPECT_EQ(lines.front(), "1 FeatureSyncher::Init: Loading " + path + "...");
            lines.erase(lines.begin());
        }
        return result;
    }

    /// The entries in one text: "A::B>C::D,E::F;".
    std::string Entries() const {
        std::string text;
        for (const SyncFeatureEntry& entry : syncher.GetEntries()) {
            text += entry.watched.ModuleName + "::" + entry.watched.FeatureName + ">";
            for (const FeatureRef& dependency : entry.Dependencies) {
                text += dependency.ModuleName + "::" + dependency.FeatureName + ",";
            }
            text += ";";
        }
        return text;
    }

    static std::string Reference(const std::string& module, const std::string& feature) {
        return R"("ModuleName":")" + module + R"(","FeatureName":")" + feature + "\"";
    }
    static std::string Entry(const std::string& module, const std::string& feature,
                             const std::string& dependencies = "") {
        return "{" + Reference(module, feature) + R"(,"Dependencies":[)" + dependencies + "]}";
    }
    static std::string Dependency(const std::string& module, const std::string& feature) {
        return "{" + Reference(module, feature) + "}";
    }
    static std::string File(const std::string& entries) {
        return R"({"SyncFeatures":[)" + entries + "]}";
    }

    support::TemporaryDirectory directory;
    support::RecordingSink sink;
    FeatureSyncher syncher;
    Lines lines;
};

TEST_F(FeatureSyncherTest, ReadsAnEmptyList) {
    EXPECT_EQ(Read(File("")), 1);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, KeepsEntriesAndDependenciesInFileOrderAndLogsThem) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width",
                              Dependency("Localdevice", "Width") + "," +
                                  Dependency("Interface", "Gain")) +
                        "," + Entry("Interface", "Mode", Dependency("Camera", "Mode")))),
              1);
    EXPECT_EQ(Entries(), "Camera::Width>Localdevice::Width,Interface::Gain,;"
                         "Interface::Mode>Camera::Mode,;");
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                            "1   Localdevice::Width", "1   Interface::Gain",
                            "1 FeatureSyncher::Init: Interface::Mode will be synched with ",
                            "1   Camera::Mode"}));
}

TEST_F(FeatureSyncherTest, KeepsAnEntryWithoutDependencies) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width"))), 1);
    EXPECT_EQ(Entries(), "Camera::Width>;");
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with "}));
}

TEST_F(FeatureSyncherTest, KeepsAFeatureThatIsDeclaredTwiceTwice) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width", Dependency("A", "B")) + "," +
                        Entry("camera", "WIDTH", Dependency("C", "D")))),
              1);
    EXPECT_EQ(Entries(), "Camera::Width>A::B,;camera::WIDTH>C::D,;");
}

TEST_F(FeatureSyncherTest, TakesWhiteSpaceBetweenAnyTwoTokens) {
    const std::string gap = " \r\n\t \r\n";
    std::string content;
    for (const char* token : {"{",
                              "\"SyncFeatures",
                              "\"",
                              ":",
                              "[",
                              "{",
                              "\"ModuleName",
                              "\"",
                              ":",
                              "\"Camera",
                              "\"",
                              ",",
                              "\"FeatureName",
                              "\"",
                              ":",
                              "\"Width",
                              "\"",
                              ",",
                              "\"Dependencies",
                              "\"",
                              ":",
                              "[",
                              "{",
                              "\"ModuleName",
                              "\"",
                              ":",
                              "\"Localdevice",
                              "\"",
                              ",",
                              "\"FeatureName",
                              "\"",
                              ":",
                              "\"Height",
                              "\"",
                              "}",
                              "]",
                              "}",
                              "]",
                              "}"}) {
        // Inside quotes a blank would belong to the text, but line ends and tabs do not.
        content += *token == '"' && token[1] != 0 ? gap + "\"" + "\r\n\t" + (token + 1) + "\n"
                                                  : gap + token;
    }
    EXPECT_EQ(Read(content + gap), 1);
    EXPECT_EQ(Entries(), "Camera::Width>Localdevice::Height,;");
}

TEST_F(FeatureSyncherTest, KeepsBlanksInsideAndAroundAValue) {
    EXPECT_EQ(Read(File(Entry("  My Camera ", "Exposure Time"))), 1);
    EXPECT_EQ(Entries(), "  My Camera ::Exposure Time>;");
}

TEST_F(FeatureSyncherTest, TakesUnderscoresAsLetters) {
    EXPECT_EQ(Read(File(Entry("_My_Camera_", "Exposure_Time"))), 1);
    EXPECT_EQ(Entries(), "_My_Camera_::Exposure_Time>;");
}

TEST_F(FeatureSyncherTest, TakesFormFeedAndVerticalTabForNoWhiteSpace) {
    for (const char* const gap : {"\f", "\v"}) {
        EXPECT_EQ(Read(gap + File("")), 0);
        EXPECT_EQ(Read(File(gap)), 0);
        EXPECT_EQ(Read(File("") + gap), 0);
        EXPECT_EQ(Read(File(Entry("Camera", gap))), 1);
        EXPECT_EQ(Entries(), std::string("Camera::") + gap + ">;");
    }
}

TEST_F(FeatureSyncherTest, WritesPercentSignsOfAPathAsTheyStand) {
    const std::string good = directory.Write("50%s%n%d.json", File(""));
    EXPECT_EQ(syncher.Init(good.c_str(), &sink), 1);
    EXPECT_EQ(sink.Take(), Lines{"1 FeatureSyncher::Init: Loading " + good + "..."});
    const std::string absent = directory.PathOf("%s%n.json");
    EXPECT_EQ(syncher.Init(absent.c_str(), &sink), 0);
    EXPECT_EQ(sink.Take(), Lines{"0 FeatureSyncher::Init: Could not open " + absent +
                                 ". No feature synchronization will happen."});
}

TEST_F(FeatureSyncherTest, EndsAValueAtALineEnd) {
    EXPECT_EQ(Read(File(Entry("Came\nra", "Width"))), 0);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, RefusesBlanksInAKey) {
    EXPECT_EQ(Read(R"({ "SyncFeatures " : [] })"), 0);
    EXPECT_EQ(Read(R"({ " SyncFeatures" : [] })"), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, ComparesKeysWithCase) {
    EXPECT_EQ(Read(R"({ "syncFeatures" : [] })"), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, ReadsTwoQuotesAsTheEmptyValue) {
    EXPECT_EQ(Read(File(Entry("", "", Dependency("", "")))), 1);
    EXPECT_EQ(Entries(), "::>::,;");
}

TEST_F(FeatureSyncherTest, TakesOneCharacterThatIsNoLetterAsAValue) {
    for (const char* character : {"1", "-", "{", "]", ":", ",", "\x1A", "\x80", "\xFF"}) {
        EXPECT_EQ(Read(File(Entry("Camera", character))), 1) << character;
        EXPECT_EQ(Entries(), std::string("Camera::") + character + ">;");
    }
}

TEST_F(FeatureSyncherTest, RefusesDigitsInsideANameInAnEntrySilently) {
    EXPECT_EQ(Read(File(Entry("Stream0", "Width"))), 0);
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(Read(File(Entry("Camera", "12"))), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, RefusesDigitsInsideADependencyAsMissingDependencies) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width", Dependency("Stream0", "Width")))), 0);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(lines, (Lines{"0 FeatureSyncher::Init: missing Dependencies attribute"}));
}

TEST_F(FeatureSyncherTest, RefusesFeatureNameBeforeModuleName) {
    EXPECT_EQ(Read(File(R"({"FeatureName":"Width","ModuleName":"Camera","Dependencies":[]})")), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, FailsSilentlyBeforeTheList) {
    for (const char* content : {"", "x", "[", "{", R"({"Sync":[]})", R"({"SyncFeatures" []})",
                                R"({"SyncFeatures":{}})", R"({SyncFeatures:[]})"}) {
        EXPECT_EQ(Read(content), 0) << content;
        EXPECT_EQ(lines, Lines{}) << content;
    }
}

TEST_F(FeatureSyncherTest, FailsSilentlyAfterACommaBetweenEntriesAndKeepsThoseBefore) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width") + ",")), 0);
    EXPECT_EQ(Entries(), "Camera::Width>;");
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with "}));
}

TEST_F(FeatureSyncherTest, MissesTheCommaBehindTheWatchedFeature) {
    EXPECT_EQ(Read(File("{" + Reference("Camera", "Width") + "}")), 0);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(lines, (Lines{"0 FeatureSyncher::Init: comma missing"}));
}

TEST_F(FeatureSyncherTest, MissesTheDependencies) {
    const std::string begin = "{" + Reference("Camera", "Width") + ",";
    for (const char* rest :
         {"}", R"("Dependents":[]})", R"("Dependencies":{}})", R"("Dependencies":[x]})",
          R"("Dependencies":[{}]})", R"("Dependencies":[{"ModuleName":"A","FeatureName":"B"])",
          R"("Dependencies":[{"ModuleName":"A","FeatureName":"B"},]})",
          R"("Dependencies":[{"ModuleName":"A","FeatureName":"B"}{)"}) {
        EXPECT_EQ(Read(File(begin + rest)), 0) << rest;
        EXPECT_EQ(Entries(), "") << rest;
        EXPECT_EQ(lines, (Lines{"0 FeatureSyncher::Init: missing Dependencies attribute"})) << rest;
    }
}

TEST_F(FeatureSyncherTest, KeepsAnEntryWhoseOwnBraceIsMissing) {
    EXPECT_EQ(
        Read(R"({"SyncFeatures":[{)" + Reference("Camera", "Width") + R"(,"Dependencies":[]])"), 0);
    EXPECT_EQ(Entries(), "Camera::Width>;");
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                            "0 FeatureSyncher::Init: missing curly brace"}));
}

TEST_F(FeatureSyncherTest, MissesTheClosingBracket) {
    EXPECT_EQ(Read(R"({"SyncFeatures":[)" + Entry("Camera", "Width") + "}"), 0);
    EXPECT_EQ(Entries(), "Camera::Width>;");
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                            "0 FeatureSyncher::Init: missing closing bracket"}));
    EXPECT_EQ(Read(R"({"SyncFeatures":[x]})"), 0);
    EXPECT_EQ(lines, (Lines{"0 FeatureSyncher::Init: missing closing bracket"}));
}

TEST_F(FeatureSyncherTest, MissesTheLastBrace) {
    EXPECT_EQ(Read(R"({"SyncFeatures":[])"), 0);
    EXPECT_EQ(lines, (Lines{"0 FeatureSyncher::Init: missing curly brace"}));
}

TEST_F(FeatureSyncherTest, RefusesContentBehindTheLastBraceAndKeepsAllEntries) {
    for (const char* rest : {"x", "}", "1", "\"", " \r\n\t ;", "\x1A"}) {
        EXPECT_EQ(Read(File(Entry("Camera", "Width")) + rest), 0) << rest;
        EXPECT_EQ(Entries(), "Camera::Width>;");
        EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                                "0 FeatureSyncher::Init: extra file content after SyncFeatures "
                                "definition"}));
    }
    EXPECT_EQ(Read(File("") + std::string(1, '\0')), 0);
}

TEST_F(FeatureSyncherTest, ReplaysATokenAsItWasFirstRead) {
    // "B C" is read in plain mode where a comma is optional, and stays split when the bracket is
    // looked for; the first letters are what is found in its place.
    EXPECT_EQ(Read(R"({"SyncFeatures":[)" + Entry("Camera", "Width") + " B C]}"), 0);
    EXPECT_EQ(lines, (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                            "0 FeatureSyncher::Init: missing closing bracket"}));
}

TEST_F(FeatureSyncherTest, RefusesComments) {
    EXPECT_EQ(Read("// sync\n" + File("")), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, RefusesAByteOrderMark) {
    EXPECT_EQ(Read("\xEF\xBB\xBF" + File("")), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FeatureSyncherTest, TellsOfAFileThatCannotBeOpened) {
    Read(File(Entry("Camera", "Width")));
    const std::string path = directory.PathOf("absent.json");
    EXPECT_EQ(syncher.Init(path.c_str(), &sink), 0);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(sink.Take(), (Lines{"0 FeatureSyncher::Init: Could not open " + path +
                                  ". No feature synchronization will happen."}));
}

TEST_F(FeatureSyncherTest, TellsOfADirectoryInPlaceOfTheFile) {
    const std::string path = directory.Path();
    EXPECT_EQ(syncher.Init(path.c_str(), &sink), 0);
    EXPECT_EQ(sink.Take(), (Lines{"0 FeatureSyncher::Init: Could not open " + path +
                                  ". No feature synchronization will happen."}));
}

TEST_F(FeatureSyncherTest, ReadsWithoutASink) {
    const std::string good = directory.Write("good.json", File(Entry("Camera", "Width")));
    EXPECT_EQ(syncher.Init(good.c_str(), nullptr), 1);
    EXPECT_EQ(Entries(), "Camera::Width>;");
    const std::string bad = directory.Write("bad.json", File(Entry("Camera", "Width")) + "x");
    EXPECT_EQ(syncher.Init(bad.c_str(), nullptr), 0);
    EXPECT_EQ(syncher.Init(directory.PathOf("absent.json").c_str(), nullptr), 0);
    EXPECT_EQ(Entries(), "");
}

TEST_F(FeatureSyncherTest, ForgetsTheEntriesOfTheFileBefore) {
    EXPECT_EQ(Read(File(Entry("Camera", "Width"))), 1);
    EXPECT_EQ(Read("{"), 0);
    EXPECT_EQ(Entries(), "");
    EXPECT_EQ(Read(File(Entry("Camera", "Height"))), 1);
    EXPECT_EQ(Entries(), "Camera::Height>;");
    syncher.Clear();
    EXPECT_EQ(Entries(), "");
}

TEST_F(FeatureSyncherTest, FindsTheFirstEntryOfANameIgnoringCase) {
    Read(File(Entry("Camera", "Width", Dependency("A", "B")) + "," +
              Entry("Camera", "Width", Dependency("C", "D")) + "," + Entry("Camera", "Height")));
    const std::vector<FeatureRef>* found = syncher.FindSyncEntry("CAMERA", "wIDTH");
    ASSERT_NE(found, nullptr);
    ASSERT_EQ(found->size(), 1u);
    EXPECT_EQ(found->front().ModuleName, "A");
    found = syncher.FindSyncEntry("Camera", "Height");
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->empty());
    EXPECT_EQ(syncher.FindSyncEntry("Camera", "Widt"), nullptr);
    EXPECT_EQ(syncher.FindSyncEntry("Interface", "Width"), nullptr);
    EXPECT_EQ(syncher.FindSyncEntry(nullptr, "Width"), nullptr);
    EXPECT_EQ(syncher.FindSyncEntry("Camera", nullptr), nullptr);
}

TEST_F(FeatureSyncherTest, ReadsManyEntriesAndLongNames) {
    const std::string longName(300000, 'N');
    std::string dependencies = Dependency("Camera", longName);
    for (int count = 0; count < 2000; ++count) {
        dependencies += "," + Dependency("Camera", "Gain");
    }
    std::string entries = Entry("Camera", longName, dependencies);
    for (int count = 0; count < 20000; ++count) {
        entries += "," + Entry("Camera", "Width", Dependency("Localdevice", "Width"));
    }
    const std::string path = directory.Write("large.json", File(entries));
    EXPECT_EQ(syncher.Init(path.c_str(), nullptr), 1);
    ASSERT_EQ(syncher.GetEntries().size(), 20001u);
    EXPECT_EQ(syncher.GetEntries().front().watched.FeatureName, longName);
    EXPECT_EQ(syncher.GetEntries().front().Dependencies.size(), 2001u);
    EXPECT_EQ(syncher.GetEntries().front().Dependencies.front().FeatureName, longName);
}

} // namespace
