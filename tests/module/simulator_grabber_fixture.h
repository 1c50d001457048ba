// simulator_grabber_fixture.h - a grabber with a free-running camera of the simulator behind it
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"
#include "tests/module/scripted_sleep.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>

/// The camera is open, and four buffers are prepared.
class SimulatorGrabberFixture : public testing::Test {
protected:
    void SetUp() override {
        directory.Write("PxnC.xml", Configuration());
        grabber = MakeGrabber();
        ASSERT_EQ(grabber->Init(), MV_OK);
        ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
        ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        ASSERT_EQ(grabber->InstPostProcessCallBack(&Receive, this), MV_OK);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        grabber.reset();
    }

    /// The simulator's.
    virtual std::string Configuration() const {
        return "<PxnC><camera id=\"A\" sensorWidth=\"64\" sensorHeight=\"64\" "
               "freeRunning=\"true\"/></PxnC>";
    }
    /// A frame was handed over, on the thread of the SDK.
    virtual void OnFrame() {}

    std::unique_ptr<CMivoraKVNPyxenClass> MakeGrabber() {
        // A continuous snap needs a sink.
        MivoraInstallLogSink(&sink);
        auto made = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
        EXPECT_EQ(made->SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
        return made;
    }
    /// Runs a command of the simulator's control interface.
    void Control(const char* command) {
        using Function = std::int32_t (*)(const char*, char*, std::uint32_t);
        const auto control = reinterpret_cast<Function>(grabber->Api().FindExport("PxnControl"));
        ASSERT_TRUE(control);
        ASSERT_EQ(control(command, nullptr, 0), 0) << command;
    }
    void ExpectMoreFrames() {
        const unsigned before = frames;
        EXPECT_TRUE(support::WaitUntil([&] { return frames > before + 10; }));
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::atomic<unsigned> frames{0};

private:
    static void Receive(uint64_t, uint32_t, void* context) {
        auto& fixture = *static_cast<SimulatorGrabberFixture*>(context);
        ++fixture.frames;
        fixture.OnFrame();
    }

    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    support::RecordingSink sink;
    const ScriptedSleep sleep;
};
