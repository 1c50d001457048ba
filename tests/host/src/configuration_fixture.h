// configuration_fixture.h - a grabber with an ini file in a temporary directory
#pragma once

#include "tests/host/test_grabber.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Lines of the log, as support::RecordingSink returns them.
using Lines = std::vector<std::string>;

/// Installs a recording sink and creates a grabber that has no ini file yet.
class Configuration : public testing::Test {
protected:
    Configuration() : installed(&sink), iniPath(directory.PathOf("grabber.ini")) {}

    /// Writes the ini file and passes it to the grabber.
    void Start(const std::string& content, std::int32_t section = 0) {
        directory.Write("grabber.ini", content);
        ASSERT_EQ(grabber->SetGrabberIni(iniPath.c_str(), section), MV_OK);
    }

    std::string OnDisk() { return directory.Read("grabber.ini"); }

    using Read = std::uint32_t (CMivoraGrabber::*)(const char*, const char*, char*, std::uint32_t);

    std::string Text(Read read, const char* key) {
        char buffer[256];
        const std::uint32_t length =
            (grabber.get()->*read)(key, "<default>", buffer, sizeof buffer);
        EXPECT_EQ(length, std::string(buffer).size());
        return buffer;
    }

    /// Replaces the grabber with a new one on the same file, as in the next run of a program.
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
