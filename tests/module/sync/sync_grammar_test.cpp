// sync_grammar_test.cpp - the reader against a second reading, over hundreds of made files
#include "tests/module/sync/sync_grammar.h"

#include "platform/file_system.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

using Tokens = std::vector<std::string>;

class SyncGrammarTest : public testing::Test {
protected:
    /// Reads `content` both ways; false when they differ, with both in the failure.
    bool Agree(const std::string& content) {
        const SyncReading expected = ReadByTable(content);
        WriteFile(content);
        FeatureSyncher syncher;
        const int result = syncher.Init(path.c_str(), &sink);
        std::vector<std::string> lines = sink.Take();
        if (!lines.empty()) {
            lines.erase(lines.begin()); // the loading line, which names the file
        }
        accepted += static_cast<unsigned>(result);
        refused += result == 0 ? 1u : 0u;
        EXPECT_EQ(result, expected.result) << content;
        EXPECT_EQ(lines, expected.lines) << content;
        EXPECT_EQ(Describe(syncher.GetEntries()), Describe(expected.entries)) << content;
        return !HasFailure();
    }

    std::string Name() {
        static const char* const kNames[] = {
            "Camera", "Localdevice", "Width", "Exposure Time", "",       " ",           "A_b",
            "1",      "Stream0",     "x1",    " lead",         "trail ", "two  blanks", "-",
            ":",      "\xE4",        "M\xFC", "a\tb"};
        // Names that fit are drawn more often, so that files get far.
        const std::size_t good = 5;
        return Random(8) != 0 ? kNames[Random(good)] : kNames[Random(std::size(kNames))];
    }

    std::size_t Random(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }

    void AddQuoted(Tokens& tokens, const std::string& text) {
        tokens.insert(tokens.end(), {"\"", text, "\""});
    }
    void AddReference(Tokens& tokens) {
        AddQuoted(tokens, "ModuleName");
        tokens.push_back(":");
        AddQuoted(tokens, Name());
        tokens.push_back(",");
        AddQuoted(tokens, "FeatureName");
        tokens.push_back(":");
        AddQuoted(tokens, Name());
    }
    void AddEntry(Tokens& tokens) {
        tokens.push_back("{");
        AddReference(tokens);
        tokens.push_back(",");
        AddQuoted(tokens, "Dependencies");
        tokens.insert(tokens.end(), {":", "["});
        const std::size_t count = Random(4);
        for (std::size_t index = 0; index < count; ++index) {
            tokens.push_back(index == 0 ? "{" : ",");
            if (index != 0) {
                tokens.push_back("{");
            }
            AddReference(tokens);
            tokens.push_back("}");
        }
        tokens.insert(tokens.end(), {"]", "}"});
    }
    Tokens MakeFile() {
        Tokens tokens{"{"};
        AddQuoted(tokens, "SyncFeatures");
        tokens.insert(tokens.end(), {":", "["});
        const std::size_t count = Random(4);
        for (std::size_t index = 0; index < count; ++index) {
            if (index != 0) {
                tokens.push_back(",");
            }
            AddEntry(tokens);
        }
        tokens.insert(tokens.end(), {"]", "}"});
        return tokens;
    }
    /// The tokens with white space between them, but none behind an opening quote.
    std::string Join(const Tokens& tokens) {
        static const char* const kGaps[] = {"", " ", "\n", "\r\n", "\t", "  \r\n\t "};
        std::string content;
        bool inside = false;
        for (const std::string& token : tokens) {
            content += inside ? "" : kGaps[Random(std::size(kGaps))];
            content += token;
            inside = token == "\"" ? !inside : inside;
        }
        return content;
    }

    static std::string Describe(const std::vector<SyncFeatureEntry>& entries) {
        std::string text;
        for (const SyncFeatureEntry& entry : entries) {
            text += "<" + entry.watched.ModuleName + "><" + entry.watched.FeatureName + ">:";
            for (const FeatureRef& dependency : entry.Dependencies) {
                text += "<" + dependency.ModuleName + "><" + dependency.FeatureName + ">";
            }
            text += "\n";
        }
        return text;
    }

    // Plain writing: nothing needs to reach the disk.
    void WriteFile(const std::string& content) {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(std::fwrite(content.data(), 1, content.size(), file), content.size());
        EXPECT_EQ(std::fclose(file), 0);
    }

    support::TemporaryDirectory directory;
    std::string path = directory.PathOf("sync.json");
    support::RecordingSink sink;
    std::mt19937 random{20240611};
    unsigned accepted = 0;
    unsigned refused = 0;
};

const char* const kTypical = "{ \"SyncFeatures\": [\r\n"
                             "  {\"ModuleName\":\"Camera\",\"FeatureName\":\"Width\",\r\n"
                             "   \"Dependencies\":[{\"ModuleName\":\"Localdevice\",\r\n"
                             "\"FeatureName\":\"Width\"},{\"ModuleName\":\"\",\"FeatureName\":\"a "
                             "b\"}]},\n"
                             " {\"ModuleName\":\"B\",\"FeatureName\":\"C\",\"Dependencies\":[]}\n"
                             "]}\n";

TEST_F(SyncGrammarTest, AgreesOnMadeFilesAndOnEveryKindOfDamage) {
    static const char* const kIntruders[] = {"{", "}", "[", "]", ":", ",", "\"", "x", "7", " "};
    for (int round = 0; round < 80; ++round) {
        const Tokens tokens = MakeFile();
        ASSERT_TRUE(Agree(Join(tokens)));
        for (int damage = 0; damage < 6; ++damage) {
            Tokens damaged = tokens;
            const std::size_t place = Random(damaged.size());
            const auto at = damaged.begin() + static_cast<std::ptrdiff_t>(place);
            switch (damage) {
            case 0:
                damaged.erase(at);
                break;
            case 1:
                damaged.insert(at, damaged[place]);
                break;
            case 2:
                *at = kIntruders[Random(std::size(kIntruders))];
                break;
            case 3:
                damaged.insert(at, kIntruders[Random(std::size(kIntruders))]);
                break;
            case 4:
                damaged.erase(at, damaged.end());
                break;
            default:
                std::swap(*at, damaged[Random(damaged.size())]);
                break;
            }
            ASSERT_TRUE(Agree(Join(damaged)));
        }
    }
    EXPECT_GT(accepted, 60u);
    EXPECT_GT(refused, 250u);
}

TEST_F(SyncGrammarTest, AgreesWhenTheFileEndsAnywhere) {
    const std::string typical = kTypical;
    for (std::size_t length = 0; length <= typical.size(); ++length) {
        ASSERT_TRUE(Agree(typical.substr(0, length)));
    }
    EXPECT_EQ(accepted, 2u); // the whole file, and all but its last line end
}

TEST_F(SyncGrammarTest, AgreesWhenAnyByteIsMissing) {
    const std::string typical = kTypical;
    for (std::size_t place = 0; place < typical.size(); ++place) {
        std::string damaged = typical;
        damaged.erase(place, 1);
        ASSERT_TRUE(Agree(damaged));
    }
}

TEST_F(SyncGrammarTest, AgreesWhenAnyByteIsAnother) {
    const std::string typical = kTypical;
    for (std::size_t place = 0; place < typical.size(); ++place) {
        for (const char byte : {'"', 'Z', '\0'}) {
            std::string damaged = typical;
            damaged[place] = byte;
            ASSERT_TRUE(Agree(damaged));
        }
    }
}

} // namespace
