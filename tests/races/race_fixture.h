// race_fixture.h - grabbers with small, fast cameras of the simulator
#pragma once

#include "race_rounds.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "mivora/log_sink.h"
#include "platform/shared_library.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

/// Takes lines, and keeps none. An acquisition requires a sink.
class ForgetfulSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override {}
    void WriteError(const char*) override {}
};

/// Cameras A (index 0, with serial ports) and B, which send frames of 64 x 64 pixels as fast as
/// they are taken. The pauses after a stop are left out.
class RaceFixture : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Not initialised. Grabbers made by several threads need different names.
    std::unique_ptr<CMivoraKVNPyxenClass> MakeGrabber(const std::string& name = "host");
    /// Initialises the grabber and opens a camera.
    static void Open(CMivoraKVNPyxenClass& grabber, std::int32_t camera = 0);
    /// Makes an unplugged or closed camera usable again and opens it.
    void Reopen(CMivoraKVNPyxenClass& grabber, const std::string& id, std::int32_t camera);

    /// Runs a command of the simulator's control interface, which may be refused.
    std::int32_t TryControl(const std::string& command) { return Control(command, nullptr, 0); }
    /// The answer of a command that must not be refused.
    std::string Ask(const std::string& command);
    /// What the SDK has not got back by its last shutdown; nothing may be left.
    void ExpectNothingLeft() { EXPECT_EQ(Ask("leaks"), ""); }

private:
    std::int32_t Control(const std::string& command, char* answer, std::uint32_t size);

    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    const support::NoSettling noSettling;
    ForgetfulSink sink;
    platform::SharedLibrary simulator;
};
