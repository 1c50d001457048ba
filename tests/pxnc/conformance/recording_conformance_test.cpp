// recording_conformance_test.cpp - the SDK that plays recordings keeps what pxnc.h states
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/support/environment_guard.h"
#include "tests/support/written_recording.h"

namespace conformance_tests {
namespace {

/// Changes the one feature that can be written.
class PlaybackDriver : public conformance::Driver {
public:
    void UseLibrary(const conformance::SdkLibrary& library) { sdk = &library.Functions(); }
    std::optional<conformance::FeatureChange> OwnChange(PxnHandle camera) override {
        return conformance::FeatureChange{
            camera, "PlaybackRepeat", [this, camera] {
                PxnBool value = 0;
                sdk->PxnFeatureBoolGet(camera, "PlaybackRepeat", &value);
                sdk->PxnFeatureBoolSet(camera, "PlaybackRepeat", value == 0 ? 1 : 0);
            }};
    }

private:
    const conformance::SdkFunctions* sdk = nullptr;
};

/// A recording with more frames than any check takes.
class LongRecording {
public:
    LongRecording() {
        support::WrittenRecording recording;
        for (int frame = 0; frame < 400; ++frame) {
            recording.Add();
        }
        recording.Write(directory);
        auto driver = std::make_unique<PlaybackDriver>();
        PlaybackDriver& unowned = *driver;
        sdk = std::make_unique<SdkUnderTest>(
            "recording", std::move(driver),
            conformance::SessionOptions{conformance::ToWide(directory.PathOf("none")), "CAM-4711"});
        unowned.UseLibrary(sdk->library);
    }
    std::unique_ptr<SdkUnderTest> Take() { return std::move(sdk); }

private:
    support::TemporaryDirectory directory;
    support::EnvironmentGuard name{"PYXEN_RECORDING", directory.Path()};
    std::unique_ptr<SdkUnderTest> sdk;
};

class RecordingConformance : public ConformanceTest {
protected:
    static void SetUpTestSuite() {
        recording = std::make_unique<LongRecording>();
        Begin(recording->Take());
    }
    static void TearDownTestSuite() {
        End();
        recording.reset();
    }

private:
    static std::unique_ptr<LongRecording> recording;
};

std::unique_ptr<LongRecording> RecordingConformance::recording;

// There is no configuration file; the features are few and not locked, and the camera neither has
// chunks nor goes away.
TEST_P(RecordingConformance, IsKept) {
    ExpectKept(
        {.areSkipped = {"startup: a failed startup counts", "lists: sets of valid values",
                        "values: integers are among their valid values",
                        "values: raw bytes and their buffers",
                        "invalidation: locked features are reported before the start returns",
                        "chunks: a frame with chunks", "chunks: what a chunk callback may call",
                        "vanishing: handles of a camera that has gone",
                        "vanishing: frames of a camera that has gone",
                        "vanishing: waits for a camera that has gone",
                        "vanishing: registrations of a camera that has gone"},
         .fail = {}});
}

INSTANTIATE_TEST_SUITE_P(Checks, RecordingConformance, testing::ValuesIn(conformance::AllChecks()),
                         TestName);

} // namespace
} // namespace conformance_tests
