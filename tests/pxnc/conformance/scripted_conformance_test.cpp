// scripted_conformance_test.cpp - the scripted SDK keeps what pxnc.h states until a test breaks it
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/pxnc/conformance/scripted_driver.h"

#include <algorithm>
#include <set>

namespace conformance_tests {
namespace {

std::unique_ptr<SdkUnderTest> MakeScripted() {
    ScriptedDriver::UseModel();
    return std::make_unique<SdkUnderTest>("scripted", std::make_unique<ScriptedDriver>(),
                                          conformance::SessionOptions{});
}

/// Its handles refer to the same modules whether a camera is open or not, all modules have
/// registers, and all frames have chunks: tests script what differs.
const Exceptions kScripted = {
    .areSkipped = {"startup: a failed startup counts",
                   "invalidation: locked features are reported before the start returns",
                   "chunks: a frame with chunks", "chunks: what a chunk callback may call",
                   "vanishing: handles of a camera that has gone",
                   "vanishing: frames of a camera that has gone",
                   "vanishing: waits for a camera that has gone",
                   "vanishing: registrations of a camera that has gone"},
    .fail = {"arguments: registers of the system", "arguments: handles of a closed camera",
             "invalidation: closing the camera inside the callback",
             "chunks: frames that have not come back", "chunks: a frame without chunks"}};

class ScriptedConformance : public ConformanceTest {
protected:
    static void SetUpTestSuite() { Begin(MakeScripted()); }
    static void TearDownTestSuite() { End(); }
};

TEST_P(ScriptedConformance, IsKept) {
    ExpectKept(kScripted);
}

INSTANTIATE_TEST_SUITE_P(Checks, ScriptedConformance, testing::ValuesIn(conformance::AllChecks()),
                         TestName);

/// The checks that fail besides kScripted.fail when the SDK breaks a promise.
std::set<std::string> FailuresWith(bool scripted::BrokenPromises::*promise) {
    const std::unique_ptr<SdkUnderTest> sdk = MakeScripted();
    scripted::GetSdk().Edit([&](scripted::Model& model) { model.broken.*promise = true; });
    std::set<std::string> failed;
    for (const Check& check : conformance::AllChecks()) {
        if (RunCheck(check, *sdk->session).outcome == conformance::Outcome::kFailed) {
            failed.insert(FullName(check));
        }
    }
    for (const std::string& known : kScripted.fail) {
        EXPECT_EQ(failed.erase(known), 1u) << known;
    }
    return failed;
}

using Names = std::set<std::string>;

TEST(BrokenPromises, AreFoundWhenUnannouncedFramesAreQueued) {
    EXPECT_EQ(FailuresWith(&scripted::BrokenPromises::unannouncedFramesAreQueued),
              (Names{"queue: a frame that is not announced", "queue: a frame that is queued"}));
}

TEST(BrokenPromises, AreFoundWhenCallbacksOverlap) {
    EXPECT_EQ(FailuresWith(&scripted::BrokenPromises::callbacksOverlap),
              (Names{"frames: callbacks of a camera do not overlap"}));
}

TEST(BrokenPromises, AreFoundWhenFramesAreHandedBackTwice) {
    EXPECT_EQ(FailuresWith(&scripted::BrokenPromises::framesAreHandedBackTwice),
              (Names{"frames: one callback for each queueing",
                     "frames: flushing gives the memory back"}));
}

} // namespace
} // namespace conformance_tests
