// ini_file_processes_test.cpp - several processes that write to one ini file
#include "mivora/ini_file.h"
#include "platform/process.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kWriterLimitMs = 60000;

class IniFileProcesses : public testing::Test {
protected:
    /// Starts a writer, which waits for Begin.
    std::unique_ptr<platform::Process> Writer(const std::string& section, const std::string& key,
                                              int count) {
        auto process = std::make_unique<platform::Process>();
        std::string error;
        const bool isStarted = process->Start(
            support::ProgramStart("ini_writer", {path, section, key, std::to_string(count)}),
            &error);
        EXPECT_TRUE(isStarted) << error;
        return isStarted ? std::move(process) : nullptr;
    }

    static void Begin(platform::Process& writer) {
        EXPECT_TRUE(support::WaitUntil([&] { return writer.Output().starts_with("ready"); },
                                       kWriterLimitMs));
        EXPECT_TRUE(writer.Write("go\n"));
    }

    static int NumberOfKeysWritten(const platform::Process& writer) {
        const std::string output = writer.Output();
        return static_cast<int>(std::count(output.begin(), output.end(), '\n')) - 1;
    }

    /// What the file has of the keys KEY0 to KEY(count - 1) with their numbers as values.
    int NumberOfKeysIn(const std::string& section, const std::string& key, int count) const {
        CIniFile ini;
        EXPECT_TRUE(ini.Open(path.c_str())) << ini.GetLastErrorText();
        int found = 0;
        for (int i = 0; i < count; ++i) {
            found += ini.GetInt32(section.c_str(), (key + std::to_string(i)).c_str(), -1) == i;
        }
        return found;
    }

    std::ptrdiff_t CountFiles() const {
        using std::filesystem::directory_iterator;
        return std::distance(directory_iterator(directory.Path()), directory_iterator());
    }

    support::TemporaryDirectory directory;
    const std::string path = directory.Write("grabber.ini", "; by hand\n[Grabber_0]\nMine=yes\n");
};

TEST_F(IniFileProcesses, EightThatWriteFiftyKeysEachKeepAllFourHundred) {
    constexpr int kWriters = 8;
    constexpr int kKeys = 50;
    std::vector<std::unique_ptr<platform::Process>> writers;
    for (int i = 0; i < kWriters; ++i) {
        // Half of them share a section.
        writers.push_back(Writer(i % 2 == 0 ? "Grabber_0" : "Grabber_" + std::to_string(i),
                                 "k" + std::to_string(i) + "_", kKeys));
        ASSERT_TRUE(writers.back());
    }
    for (const auto& writer : writers) {
        Begin(*writer);
    }
    int kept = 0;
    for (int i = 0; i < kWriters; ++i) {
        int status = -1;
        ASSERT_TRUE(writers[i]->Wait(kWriterLimitMs, status));
        EXPECT_EQ(status, 0) << writers[i]->Errors();
        kept += NumberOfKeysIn(i % 2 == 0 ? "Grabber_0" : "Grabber_" + std::to_string(i),
                               "k" + std::to_string(i) + "_", kKeys);
    }
    EXPECT_EQ(kept, kWriters * kKeys);
    EXPECT_TRUE(directory.Read("grabber.ini").starts_with("; by hand\n[Grabber_0]\nMine=yes\n"));
    EXPECT_EQ(CountFiles(), 1) << "no lock file and no temporary file is left";
}

TEST_F(IniFileProcesses, OneThatIsKilledKeepsNobodyFromWriting) {
    CIniFile ini;
    ASSERT_TRUE(ini.Open(path.c_str()));
    for (int round = 0; round < 8; ++round) {
        const std::string key = "round" + std::to_string(round) + "_";
        const auto writer = Writer("Grabber_0", key, 100000);
        ASSERT_TRUE(writer);
        Begin(*writer);
        ASSERT_TRUE(support::WaitUntil([&] { return NumberOfKeysWritten(*writer) > 2 + round; },
                                       kWriterLimitMs));
        writer->Kill();
        int status = 0;
        ASSERT_TRUE(writer->Wait(kWriterLimitMs, status));
        const int written = NumberOfKeysWritten(*writer);
        const int kept = NumberOfKeysIn("Grabber_0", key, written + 1);
        EXPECT_TRUE(kept == written || kept == written + 1) << kept << " of " << written;
        ASSERT_TRUE(ini.WriteInt32("Grabber_0", "own", round)) << ini.GetLastErrorText();
        EXPECT_EQ(NumberOfKeysIn("Grabber_0", key, written + 1), kept);
    }
    EXPECT_TRUE(directory.Read("grabber.ini").starts_with("; by hand\n[Grabber_0]\nMine=yes\n"));
}

} // namespace
