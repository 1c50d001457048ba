// grabber_fixture.h - a grabber with the scripted SDK behind it
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"
#include "tests/module/scripted_sleep.h"
#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// `text` repeated for the indices 0 to `count` - 1, with the number between `before` and `after`.
inline Texts Numbered(const std::string& before, unsigned count, const std::string& after = "") {
    Texts texts;
    for (unsigned i = 0; i < count; ++i) {
        texts.push_back(before + std::to_string(i) + after);
    }
    return texts;
}

inline Texts operator+(Texts left, const Texts& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A grabber that has not been initialised yet, an ini file of its own, no settling pauses.
class GrabberFixture : public ::testing::Test {
protected:
    void SetUp() override { sdk.Reset(); }
    void TearDown() override {
        // They see what the test's body had, which is gone.
        sdk.ClearHooks();
        sleep.Open();
        Destroy();
    }

    CMivoraKVNPyxenClass& Grabber() {
        if (!grabber) {
            Make();
        }
        return *grabber;
    }
    /// The grabber's ini file gets this content; to be called before Grabber.
    void WriteIni(const std::string& content) { directory.Write("host.ini", content); }
    void WithoutIni() { useIni = false; }
    /// The grabber logs there, or nowhere without one; to be called before Grabber.
    void UseSink(ILogSink* other) { usedSink = other; }
    void WithoutSink() { UseSink(nullptr); }

    /// Initialised, camera 0 active, nothing recorded.
    void Init() {
        ASSERT_EQ(Grabber().Init(), MV_OK);
        ASSERT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
        Forget();
    }
    /// The same with the camera open.
    void Open() {
        Init();
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
        Forget();
    }
    /// The same with buffers prepared.
    void Prepare(uint64_t count) {
        Open();
        ASSERT_EQ(Grabber().PrepareFrameBuffers(count), MV_OK);
        Forget();
    }
    /// The grabber goes; what is left of its work must be quiet.
    void Destroy() { grabber.reset(); }
    void Forget() {
        sink.Take();
        sdk.ClearCalls();
    }

    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }
    Texts Log() { return sink.Take(); }
    Texts Calls() { return sdk.TakeCalls(); }

    scripted::Sdk& sdk = scripted::GetSdk();
    support::EnvironmentGuard home{"PYXEN_HOME", scripted::Home()};
    support::TemporaryDirectory directory;
    support::RecordingSink sink;
    ScriptedSleep sleep;

private:
    void Make() {
        MivoraInstallLogSink(usedSink);
        grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
        if (useIni) {
            ASSERT_EQ(grabber->SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
        }
    }

    bool useIni = true;
    ILogSink* usedSink = &sink;
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
};

/// What the host's post-process receiver was told.
struct HandedOver {
    uint64_t index;
    uint32_t fromCallback;

    bool operator==(const HandedOver&) const = default;
};
