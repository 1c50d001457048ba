// ini_file_test.cpp - reading and writing ini files
#include "mivora/ini_file.h"

#include "platform/file_lock.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

class IniFile : public testing::Test {
protected:
    /// Writes the file and opens it.
    void Start(const std::string& content) {
        path = directory.Write("grabber.ini", content);
        ASSERT_TRUE(ini.Open(path.c_str())) << ini.GetLastErrorText();
    }

    std::string Text(const char* section, const char* key, const char* defaultValue = "<absent>") {
        char buffer[4096];
        const std::uint32_t length = ini.GetText(section, key, defaultValue, buffer, sizeof buffer);
        EXPECT_EQ(length, std::string(buffer).size());
        return buffer;
    }

    std::string OnDisk() { return directory.Read("grabber.ini"); }

    support::TemporaryDirectory directory;
    std::string path;
    CIniFile ini;
};

TEST_F(IniFile, FindsSectionsAndKeysWithoutRegardToCase) {
    Start("[Grabber_0]\nUniqueId = CAM-1 \nEmpty=\n[other]\nUNIQUEID=2\n");
    EXPECT_TRUE(ini.HasSection("grabber_0"));
    EXPECT_TRUE(ini.HasSection(" GRABBER_0 "));
    EXPECT_FALSE(ini.HasSection("grabber_1"));
    EXPECT_TRUE(ini.HasKey("GRABBER_0", "uniqueid"));
    EXPECT_EQ(Text("Grabber_0", "UNIQUEID"), "CAM-1");
    EXPECT_EQ(Text("OTHER", "UniqueId"), "2");
}

TEST_F(IniFile, DistinguishesAnAbsentKeyFromAnEmptyOne) {
    Start("[s]\nempty=\nblank=  \t\n");
    EXPECT_TRUE(ini.HasKey("s", "empty"));
    EXPECT_EQ(Text("s", "empty"), "");
    EXPECT_EQ(Text("s", "blank"), "");
    EXPECT_FALSE(ini.HasKey("s", "absent"));
    EXPECT_EQ(Text("s", "absent"), "<absent>");
    EXPECT_EQ(Text("absent", "empty"), "<absent>");
    EXPECT_EQ(Text("s", "absent", nullptr), "");
}

TEST_F(IniFile, TreatsAMissingFileAsEmpty) {
    EXPECT_TRUE(ini.Open(directory.PathOf("new.ini").c_str()));
    EXPECT_EQ(ini.GetNumSections(), 0u);
    EXPECT_FALSE(platform::PathExists(directory.PathOf("new.ini")));
    EXPECT_TRUE(ini.WriteText("s", "k", "v"));
    EXPECT_EQ(directory.Read("new.ini"), "[s]\nk=v\n");
}

TEST_F(IniFile, RefusesWhatCannotBeRead) {
    Start("[s]\nk=v\n");
    EXPECT_FALSE(ini.Open(directory.Path().c_str()));
    EXPECT_NE(std::string(ini.GetLastErrorText()).find("is a directory"), std::string::npos);
    EXPECT_FALSE(ini.Open(nullptr));
    EXPECT_FALSE(ini.Open(""));
    for (const char* const utf16 : {"\xFF\xFE[\0s\0]\0", "\xFE\xFF\0[\0s\0]"}) {
        const std::string file = directory.Write("utf16.ini", std::string(utf16, 8));
        EXPECT_FALSE(ini.Open(file.c_str()));
        EXPECT_NE(std::string(ini.GetLastErrorText()).find("UTF-16"), std::string::npos);
    }
    // The previous file stays open.
    EXPECT_EQ(ini.GetPath(), path);
    EXPECT_EQ(Text("s", "k"), "v");
}

TEST_F(IniFile, UsesTheFirstOfEqualSectionsAndKeys) {
    Start("[a]\nk=1\nk=2\n[b]\nk=3\n[A]\nk=4\nonly=5\n");
    EXPECT_EQ(Text("a", "k"), "1");
    EXPECT_FALSE(ini.HasKey("a", "only"));
    EXPECT_EQ(ini.GetNumSections(), 2u);
    EXPECT_TRUE(ini.WriteText("a", "k", "new"));
    EXPECT_EQ(OnDisk(), "[a]\nk=new\nk=2\n[b]\nk=3\n[A]\nk=4\nonly=5\n");
}

TEST_F(IniFile, ListsSectionsInOrder) {
    Start("[Grabber_0]\n;[Commented]\n  [ Camera_1 ] ; why\n[]\n[broken\n[Mode_1_0]\n");
    EXPECT_EQ(ini.GetNumSections(), 4u);
    EXPECT_STREQ(ini.GetSectionName(0), "Grabber_0");
    EXPECT_STREQ(ini.GetSectionName(1), "Camera_1");
    EXPECT_STREQ(ini.GetSectionName(2), "");
    EXPECT_STREQ(ini.GetSectionName(3), "Mode_1_0");
    EXPECT_EQ(ini.GetSectionName(4), nullptr);
}

TEST_F(IniFile, FindsEverySectionThatItLists) {
    const std::string content("[cut\f\0here]\nk=1\n[]\nk=2\n[ \0]\nk=3\n", 32);
    Start(content);
    ASSERT_EQ(ini.GetNumSections(), 2u);
    for (std::uint32_t index = 0; index < 2; ++index) {
        EXPECT_TRUE(ini.HasSection(ini.GetSectionName(index))) << index;
    }
    EXPECT_EQ(Text("cut", "k"), "1");
    EXPECT_EQ(Text("", "k"), "2");
}

TEST_F(IniFile, KeepsQuotesSemicolonsAndEqualsSignsOfValues) {
    Start("[s]\nq=\"C:\\a b\" \ne = a=b ; c # d\n[TL]\nTLID=x\n");
    EXPECT_EQ(Text("s", "q"), "\"C:\\a b\"");
    EXPECT_EQ(Text("s", "e"), "a=b ; c # d");
}

TEST_F(IniFile, ReadsEveryKindOfLineEndAndTheByteOrderMark) {
    Start("\xEF\xBB\xBF[s]\r\na=1\r\nb=2\nc=3\r\n[t]\nd=4");
    EXPECT_EQ(Text("s", "a"), "1");
    EXPECT_EQ(Text("s", "b"), "2");
    EXPECT_EQ(Text("s", "c"), "3");
    EXPECT_EQ(Text("t", "d"), "4");
    EXPECT_TRUE(ini.WriteText("s", "b", "two"));
    EXPECT_TRUE(ini.WriteText("s", "e", "5"));
    EXPECT_TRUE(ini.WriteText("t", "f", "6"));
    EXPECT_EQ(OnDisk(), "\xEF\xBB\xBF[s]\r\na=1\r\nb=two\nc=3\r\ne=5\r\n[t]\nd=4\nf=6\n");
}

TEST_F(IniFile, IgnoresLinesBeforeTheFirstSection) {
    Start("stray=1\n; note\n[s]\nk=2\n");
    EXPECT_FALSE(ini.HasKey("", "stray"));
    EXPECT_TRUE(ini.WriteText("s", "k", "3"));
    EXPECT_EQ(OnDisk(), "stray=1\n; note\n[s]\nk=3\n");
}

TEST_F(IniFile, TruncatesTextsAndReturnsTheirLength) {
    Start("[s]\nk=abcdef\n");
    char buffer[4];
    EXPECT_EQ(ini.GetText("s", "k", "", buffer, sizeof buffer), 6u);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(ini.GetText("s", "k", "", buffer, 1), 6u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ini.GetText("s", "k", "", nullptr, 0), 6u);
    EXPECT_EQ(ini.GetText("s", "none", "default", buffer, sizeof buffer), 7u);
    EXPECT_STREQ(buffer, "def");
    char same[16] = "kept";
    EXPECT_EQ(ini.GetText("s", "none", same, same, sizeof same), 4u);
    EXPECT_STREQ(same, "kept");
}

TEST_F(IniFile, ReadsNumbers) {
    Start("[s]\na=42\nb=-7\nc=0x1F\nd=0xFFFFFFFF\ne=+5\nf=-0x10\ng=2147483647\nh=-2147483648\n"
          "bad1=\nbad2=12x\nbad3=2147483648\nbad4=0x\nbad5=0x1FFFFFFFF\nbad6=-\nbad7=1 2\n"
          "bad8=--1\nbad9=0x-1\n");
    EXPECT_EQ(ini.GetInt32("s", "a", 99), 42);
    EXPECT_EQ(ini.GetInt32("s", "b", 99), -7);
    EXPECT_EQ(ini.GetInt32("s", "c", 99), 31);
    EXPECT_EQ(ini.GetInt32("s", "d", 99), -1);
    EXPECT_EQ(ini.GetInt32("s", "e", 99), 5);
    EXPECT_EQ(ini.GetInt32("s", "f", 99), -16);
    EXPECT_EQ(ini.GetInt32("s", "g", 99), 2147483647);
    EXPECT_EQ(ini.GetInt32("s", "h", 99), -2147483647 - 1);
    for (const char* const key :
         {"bad1", "bad2", "bad3", "bad4", "bad5", "bad6", "bad7", "bad8", "bad9", "absent"}) {
        EXPECT_TRUE(ini.HasKey("s", key) || std::string(key) == "absent");
        EXPECT_EQ(ini.GetInt32("s", key, 99), 99) << key;
    }
}

TEST_F(IniFile, WritesNumbersAndTexts) {
    Start("");
    EXPECT_TRUE(ini.WriteInt32("s", "i", -2147483647 - 1));
    EXPECT_TRUE(ini.WriteHex32("s", "h", 0xAB));
    EXPECT_TRUE(ini.WriteText("s", "t", "a = b"));
    EXPECT_TRUE(ini.WriteText("s", "empty", ""));
    EXPECT_EQ(OnDisk(), "[s]\ni=-2147483648\nh=0x000000AB\nt=a = b\nempty=\n");
    EXPECT_TRUE(ini.HasKey("s", "empty"));
}

TEST_F(IniFile, AddsANewKeyAtTheEndOfItsSection) {
    Start("[a]\nk=1\n\n; about b\n[b]\nk=2\n");
    EXPECT_TRUE(ini.WriteText("a", "new", "x"));
    EXPECT_EQ(OnDisk(), "[a]\nk=1\nnew=x\n\n; about b\n[b]\nk=2\n");
}

TEST_F(IniFile, LeavesACommentWithItsSection) {
    Start("[a]\nk=1\n; k tells one\n\n[b]\n[c]\nk=3\n# about d\n[d]\nk=4\n; the end");
    EXPECT_TRUE(ini.WriteText("a", "n", "1"));
    EXPECT_TRUE(ini.WriteText("b", "n", "2"));
    EXPECT_TRUE(ini.WriteText("c", "n", "3"));
    EXPECT_TRUE(ini.WriteText("d", "n", "4"));
    EXPECT_EQ(OnDisk(), "[a]\nk=1\n; k tells one\nn=1\n\n[b]\nn=2\n[c]\nk=3\nn=3\n# about d\n[d]\n"
                        "k=4\n; the end\nn=4\n");
}

TEST_F(IniFile, AddsANewSectionAtTheEnd) {
    Start("[a]\r\nk=1");
    EXPECT_TRUE(ini.WriteText(" b ", " k ", "2"));
    EXPECT_EQ(OnDisk(), "[a]\r\nk=1\r\n\r\n[b]\r\nk=2\r\n");
}

TEST_F(IniFile, ChangesNothingButTheValue) {
    Start("[s]\n\tKey  =  old value  \t\r\nkey2=x\n=nameless\nno sign\n");
    EXPECT_TRUE(ini.WriteText("s", "key", "new"));
    EXPECT_EQ(OnDisk(), "[s]\n\tKey  =  new  \t\r\nkey2=x\n=nameless\nno sign\n");
    EXPECT_TRUE(ini.WriteText("s", "key", ""));
    EXPECT_TRUE(ini.WriteText("s", "key2", ""));
    EXPECT_TRUE(ini.WriteText("s", "key2", "y"));
    EXPECT_EQ(Text("s", "Key"), "");
    EXPECT_EQ(Text("s", "key2"), "y");
}

TEST_F(IniFile, KeepsCommentsOrderAndUnknownLinesThroughAHundredSaves) {
    const std::string before = "; Written by hand\r\n\r\n[Grabber_0] ; the left one\r\n"
                               "# exposure in ms\r\nExposure = ";
    const std::string between = "\r\nan unknown line\r\n  ; indented\r\nTimeBase=";
    const std::string after = "\n\n[TLSpecificConfig_0]\nTLType = GEV\n\n\n; the end";
    Start(before + "1" + between + "-3" + after);
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(ini.WriteInt32("grabber_0", "exposure", i * 1000));
        ASSERT_TRUE(ini.WriteInt32("grabber_0", "timebase", -(i % 7)));
    }
    EXPECT_EQ(OnDisk(), before + "99000" + between + "-1" + after);
}

TEST_F(IniFile, RefusesWhatAnIniFileCannotContain) {
    const std::string content = "[s]\nk=v\n";
    Start(content);
    struct Row {
        const char* section;
        const char* key;
        const char* value;
    };
    const Row rows[] = {{"s", "k", "a\nb"},  {"s", "k", "a\rb"},  {"s", "a\nb", "v"},
                        {"s\n", "k", "v"},   {"s", "a=b", "v"},   {"s", "", "v"},
                        {"s", "  ", "v"},    {"", "k", "v"},      {"s]t", "k", "v"},
                        {"s", ";k", "v"},    {"s", "#k", "v"},    {"s", "[k]", "v"},
                        {nullptr, "k", "v"}, {"s", nullptr, "v"}, {"s", "k", nullptr}};
    for (const Row& row : rows) {
        EXPECT_FALSE(ini.WriteText(row.section, row.key, row.value));
        EXPECT_STRNE(ini.GetLastErrorText(), "");
    }
    EXPECT_EQ(OnDisk(), content);
    EXPECT_FALSE(ini.HasKey(nullptr, "k"));
    EXPECT_FALSE(ini.HasKey("s", nullptr));
    EXPECT_FALSE(ini.HasSection(nullptr));
    EXPECT_EQ(ini.GetInt32(nullptr, "k", 5), 5);
    EXPECT_EQ(ini.GetInt32("s", nullptr, 5), 5);
    EXPECT_EQ(Text(nullptr, "k"), "<absent>");
    EXPECT_EQ(Text("s", nullptr), "<absent>");
    EXPECT_FALSE(ini.RemoveKey("s", nullptr));
    EXPECT_FALSE(ini.RemoveKey(nullptr, "k"));
    EXPECT_FALSE(CIniFile().RemoveKey("s", "k")); // none is open
}

TEST_F(IniFile, KeepsAReadOnlyFileAndWhatWasReadOfIt) {
    Start("[s]\nk=v\n");
    using std::filesystem::perms;
    std::filesystem::permissions(path, perms::owner_read);
    EXPECT_FALSE(ini.WriteText("s", "k", "w"));
    EXPECT_EQ(std::string(ini.GetLastErrorText()).find("Cannot write"), 0u)
        << ini.GetLastErrorText();
    EXPECT_FALSE(ini.RemoveKey("s", "k"));
    EXPECT_EQ(OnDisk(), "[s]\nk=v\n");
    EXPECT_EQ(Text("s", "k"), "v");
    std::filesystem::permissions(path, perms::owner_read | perms::owner_write);
    EXPECT_TRUE(ini.WriteText("s", "k", "w")) << ini.GetLastErrorText();
}

TEST_F(IniFile, RemovesAKeyWithItsLine) {
    Start("[s]\n; one\na=1\nb=2\r\nc=3");
    EXPECT_TRUE(ini.RemoveKey("S", "B"));
    EXPECT_EQ(OnDisk(), "[s]\n; one\na=1\nc=3");
    EXPECT_FALSE(ini.HasKey("s", "b"));
    EXPECT_TRUE(ini.RemoveKey("s", "absent"));
    EXPECT_TRUE(ini.RemoveKey("s", "c"));
    EXPECT_EQ(OnDisk(), "[s]\n; one\na=1\n");
}

TEST_F(IniFile, RefusesToWriteBeforeAFileWasOpened) {
    EXPECT_FALSE(ini.WriteText("s", "k", "v"));
    EXPECT_STREQ(ini.GetLastErrorText(), "Cannot write \"\": no file was opened");
    EXPECT_STREQ(ini.GetPath(), "");
}

TEST_F(IniFile, KeepsFileAndMemoryWhenWritingFails) {
    const std::string gone = directory.PathOf("missing/grabber.ini");
    ASSERT_TRUE(ini.Open(gone.c_str()));
    EXPECT_FALSE(ini.WriteText("s", "k", "v"));
    const std::string error = ini.GetLastErrorText();
    EXPECT_EQ(error.find("Cannot write \"" + gone + "\": "), 0u) << error;
    EXPECT_FALSE(ini.HasKey("s", "k"));
    ASSERT_TRUE(platform::CreateDirectories(directory.PathOf("missing")));
    EXPECT_TRUE(ini.WriteText("s", "k", "v"));
    EXPECT_EQ(directory.Read("missing/grabber.ini"), "[s]\nk=v\n");
}

TEST_F(IniFile, RefusesToWriteOverWhatItCannotRead) {
    Start("[s]\nk=v\n");
    ASSERT_EQ(std::remove(path.c_str()), 0);
    ASSERT_TRUE(platform::CreateDirectories(path));
    EXPECT_FALSE(ini.WriteText("s", "k", "w"));
    EXPECT_EQ(Text("s", "k"), "v");
}

TEST_F(IniFile, ReportsErrorsPerThread) {
    Start("");
    EXPECT_FALSE(ini.WriteText("s", "a=b", "v"));
    std::string others = "unset";
    std::thread other([&] { others = ini.GetLastErrorText(); });
    other.join();
    EXPECT_EQ(others, "");
    EXPECT_STRNE(ini.GetLastErrorText(), "");
}

TEST_F(IniFile, PreservesConcurrentChangesToTheFile) {
    Start("[Grabber_0]\nk=1\n[Grabber_1]\nk=1\n");
    CIniFile other;
    ASSERT_TRUE(other.Open(path.c_str()));
    EXPECT_TRUE(other.WriteText("Grabber_1", "k", "2"));
    EXPECT_TRUE(ini.WriteText("Grabber_0", "k", "3"));
    EXPECT_EQ(OnDisk(), "[Grabber_0]\nk=3\n[Grabber_1]\nk=2\n");
    EXPECT_EQ(Text("Grabber_1", "k"), "2");
}

TEST_F(IniFile, RefusesToWriteWhileAnotherProcessIsWriting) {
    Start("[s]\nk=1\n");
    platform::FileLock otherWriter;
    ASSERT_TRUE(otherWriter.Acquire(path, 0));
    EXPECT_TRUE(ini.WriteText("s", "k", "1")) << "it changes nothing";
    EXPECT_FALSE(ini.WriteText("s", "k", "2"));
    EXPECT_EQ(ini.GetLastErrorText(), "Cannot write \"" + path + "\": \"" + path +
                                          ".lock\" has been held by another writer for 5000 ms");
    EXPECT_EQ(Text("s", "k"), "1");
    EXPECT_EQ(OnDisk(), "[s]\nk=1\n");
    otherWriter.Release();
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    EXPECT_EQ(OnDisk(), "[s]\nk=2\n");
}

TEST_F(IniFile, ReadsAndBatchesWhileAWriteWaits) {
    Start("[s]\nk=1\n");
    platform::FileLock otherWriter;
    ASSERT_TRUE(otherWriter.Acquire(path, 0));
    std::atomic<bool> hasWritten{false};
    std::thread writer([&] {
        EXPECT_TRUE(ini.WriteText("s", "k", "2"));
        hasWritten = true;
    });
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(Text("s", "k"), "1");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "batched", "3"));
    EXPECT_FALSE(hasWritten);
    otherWriter.Release();
    writer.join();
    EXPECT_EQ(OnDisk(), "[s]\nk=2\n");
    EXPECT_EQ(Text("s", "batched"), "3");
    EXPECT_TRUE(ini.EndBatch());
    EXPECT_EQ(OnDisk(), "[s]\nk=2\nbatched=3\n");
}

TEST_F(IniFile, WritesToTheFileThatWasOpenedWhileItWaited) {
    Start("[s]\nk=1\n");
    const std::string next = directory.Write("next.ini", "[s]\nk=5\n");
    platform::FileLock otherWriter;
    ASSERT_TRUE(otherWriter.Acquire(path, 0));
    std::thread writer([&] { EXPECT_TRUE(ini.WriteText("s", "k", "2")); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(ini.Open(next.c_str()));
    otherWriter.Release();
    writer.join();
    EXPECT_EQ(OnDisk(), "[s]\nk=1\n");
    EXPECT_EQ(directory.Read("next.ini"), "[s]\nk=2\n");
}

TEST_F(IniFile, RecreatesADeletedFile) {
    Start("; note\n[s]\nk=1\n");
    ASSERT_EQ(std::remove(path.c_str()), 0);
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    EXPECT_EQ(OnDisk(), "; note\n[s]\nk=2\n");
}

TEST_F(IniFile, ReadsBytesOfEveryKindAndVeryLongLines) {
    std::string bytes = "[s]\nlong=" + std::string(300000, 'x') + "\n";
    for (int value = 0; value < 256; ++value) {
        bytes.push_back(static_cast<char>(value));
    }
    bytes += "\nlast=1\n";
    Start(bytes);
    EXPECT_EQ(ini.GetText("s", "long", "", nullptr, 0), 300000u);
    EXPECT_TRUE(ini.WriteText("s", "last", "2"));
    bytes[bytes.size() - 2] = '2';
    EXPECT_EQ(OnDisk(), bytes);
}

TEST_F(IniFile, SupportsConcurrentThreads) {
    Start("");
    constexpr int kThreads = 4;
    constexpr int kWrites = 10;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            const std::string section = "Section_" + std::to_string(thread);
            for (int i = 0; i < kWrites; ++i) {
                const std::string key = "key" + std::to_string(i);
                if (!ini.WriteInt32(section.c_str(), key.c_str(), i) ||
                    ini.GetInt32(section.c_str(), key.c_str(), -1) != i) {
                    ++failures;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    CIniFile again;
    ASSERT_TRUE(again.Open(path.c_str()));
    EXPECT_EQ(again.GetNumSections(), static_cast<std::uint32_t>(kThreads));
    EXPECT_EQ(again.GetInt32("Section_3", "key9", -1), 9);
}

TEST_F(IniFile, WritesABatchAtOnce) {
    Start("; note\n[s]\nk=1\nold=2\n");
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "3"));
    EXPECT_TRUE(ini.WriteInt32("new", "n", -4));
    EXPECT_TRUE(ini.RemoveKey("s", "old"));
    EXPECT_FALSE(ini.WriteText("s", "bad=key", "v"));
    EXPECT_EQ(OnDisk(), "; note\n[s]\nk=1\nold=2\n");
    EXPECT_EQ(Text("s", "k"), "3") << "reading finds what is not on the disk yet";
    EXPECT_EQ(Text("s", "old"), "<absent>");
    EXPECT_EQ(ini.GetNumSections(), 2u);
    EXPECT_TRUE(ini.EndBatch());
    EXPECT_EQ(OnDisk(), "; note\n[s]\nk=3\n\n[new]\nn=-4\n");
    EXPECT_TRUE(ini.WriteText("s", "k", "5"));
    EXPECT_EQ(OnDisk(), "; note\n[s]\nk=5\n\n[new]\nn=-4\n");
}

TEST_F(IniFile, DiscardsADroppedBatch) {
    Start("[s]\nk=1\n");
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    ini.DropBatch();
    EXPECT_EQ(Text("s", "k"), "1");
    EXPECT_EQ(OnDisk(), "[s]\nk=1\n");
    EXPECT_FALSE(ini.EndBatch());
    EXPECT_NE(std::string(ini.GetLastErrorText()).find("no batch was begun"), std::string::npos);
    ini.DropBatch();
}

TEST_F(IniFile, HasOneBatchAtATimeAndNoneWithoutAFile) {
    EXPECT_FALSE(ini.BeginBatch());
    Start("[s]\nk=1\n");
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_FALSE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    ASSERT_TRUE(ini.Open(path.c_str())) << "opening discards it";
    EXPECT_EQ(Text("s", "k"), "1");
    EXPECT_FALSE(ini.EndBatch());
}

TEST_F(IniFile, KeepsFileAndMemoryWhenWritingABatchFails) {
    const std::string gone = directory.PathOf("missing/grabber.ini");
    ASSERT_TRUE(ini.Open(gone.c_str()));
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "v"));
    EXPECT_FALSE(ini.EndBatch());
    const std::string error = ini.GetLastErrorText();
    EXPECT_EQ(error.find("Cannot write \"" + gone + "\": "), 0u) << error;
    EXPECT_FALSE(ini.HasKey("s", "k"));
    ASSERT_TRUE(platform::CreateDirectories(directory.PathOf("missing")));
    ASSERT_TRUE(ini.BeginBatch()) << "the one that failed is over";
    EXPECT_TRUE(ini.WriteText("s", "k", "v"));
    EXPECT_TRUE(ini.EndBatch());
    EXPECT_EQ(directory.Read("missing/grabber.ini"), "[s]\nk=v\n");
}

TEST_F(IniFile, PreservesConcurrentChangesDuringABatch) {
    Start("[s]\nk=1\n");
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    std::thread other([this] { EXPECT_TRUE(ini.WriteText("s", "thread", "3")); });
    other.join();
    EXPECT_EQ(OnDisk(), "[s]\nk=1\nthread=3\n") << "another thread does not wait";
    EXPECT_EQ(Text("s", "k"), "2");
    directory.Write("grabber.ini", "; by hand\n" + OnDisk());
    EXPECT_TRUE(ini.EndBatch());
    EXPECT_EQ(OnDisk(), "; by hand\n[s]\nk=2\nthread=3\n");
}

TEST_F(IniFile, RecreatesADeletedFileWithItsBatch) {
    Start("; note\n[s]\nk=1\n");
    ASSERT_TRUE(ini.BeginBatch());
    EXPECT_TRUE(ini.WriteText("s", "k", "2"));
    ASSERT_EQ(std::remove(path.c_str()), 0);
    EXPECT_TRUE(ini.EndBatch());
    EXPECT_EQ(OnDisk(), "; note\n[s]\nk=2\n");
}

} // namespace
