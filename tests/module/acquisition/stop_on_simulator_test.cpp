// stop_on_simulator_test.cpp - stopping inside the callback of a library that allows little there
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/event.h"
#include "tests/module/acquisition/scripted_sleep.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

namespace {

class StopOnSimulator : public testing::Test {
protected:
    void SetUp() override {
        directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" sensorWidth=\"64\" "
                                    "sensorHeight=\"64\" freeRunning=\"true\"/></PxnC>");
        // A continuous snap needs one.
        MivoraInstallLogSink(&sink);
        grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
        ASSERT_EQ(grabber->SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
        ASSERT_EQ(grabber->Init(), MV_OK);
        ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
        ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        ASSERT_EQ(grabber->InstPostProcessCallBack(&OnFrame, this), MV_OK);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        grabber.reset();
    }

    /// Runs until the callback of the third frame has stopped, while others wait in the queue.
    void StopInsideACallback() {
        stopAt = 3;
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        ASSERT_TRUE(stopped.Wait(10000));
        ASSERT_EQ(grabber->GetAcquisitionState(), 0u);
        stopAt = 0;
    }
    void ExpectFrames() {
        const unsigned before = frames;
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        EXPECT_TRUE(support::WaitUntil([&] { return frames > before + 10; }));
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;

private:
    static void OnFrame(uint64_t, uint32_t, void* context) {
        auto& test = *static_cast<StopOnSimulator*>(context);
        if (++test.frames == test.stopAt) {
            EXPECT_EQ(test.grabber->StopSnap(), MV_OK);
            test.stopped.Set();
        }
    }

    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    support::RecordingSink sink;
    const ScriptedSleep sleep;
    platform::Event stopped;
    std::atomic<unsigned> frames{0};
    std::atomic<unsigned> stopAt{0};
};

TEST_F(StopOnSimulator, InsideTheCallbackDoesNotHinderTheNextSnap) {
    StopInsideACallback();
    ExpectFrames();
}

TEST_F(StopOnSimulator, InsideTheCallbackLeavesNoFrameWhoseMemoryIsFreed) {
    StopInsideACallback();
    EXPECT_EQ(grabber->PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(grabber->PrepareFrameBuffers(2), MV_OK);
    ExpectFrames();
}

} // namespace
