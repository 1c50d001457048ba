// genicam_conformance_test.cpp - the SDK for real cameras keeps what pxnc.h states
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/support/environment_guard.h"
#include "tests/support/posix/fake_camera.h"

namespace conformance_tests {
namespace {

class FakeCameraDriver : public conformance::Driver {
public:
    bool CanRemoveCamera() const override { return true; }
    void RemoveCamera() override { camera.Kill(); }
    void ReturnCamera() override { camera.Restart(); }
    std::string CameraId() const { return camera.ExtendedId(); }

private:
    /// Its description locks features while a capture runs.
    support::FakeCamera camera{MIVORA_SOURCE_DIR "/tests/pxnc/genicam/test_camera.xml"};
};

class GenicamConformance : public ConformanceTest {
protected:
    static void SetUpTestSuite() {
        interval = std::make_unique<support::EnvironmentGuard>("PYXEN_GENICAM_POLL_MS", "20");
        auto driver = std::make_unique<FakeCameraDriver>();
        const std::string id = driver->CameraId();
        Begin(std::make_unique<SdkUnderTest>("genicam", std::move(driver),
                                             conformance::SessionOptions{L"", id, 20000}));
    }
    static void TearDownTestSuite() {
        End();
        interval.reset();
    }

private:
    static std::unique_ptr<support::EnvironmentGuard> interval; // between two searches
};

std::unique_ptr<support::EnvironmentGuard> GenicamConformance::interval;

TEST_P(GenicamConformance, IsKept) {
    // Neither Aravis nor its fake camera has these.
    ExpectKept(
        {.areSkipped = {"lists: sets of valid values",
                        "values: integers are among their valid values",
                        "chunks: a frame with chunks", "chunks: what a chunk callback may call"},
         .fail = {}});
}

INSTANTIATE_TEST_SUITE_P(Checks, GenicamConformance, testing::ValuesIn(conformance::AllChecks()),
                         TestName);

} // namespace
} // namespace conformance_tests
