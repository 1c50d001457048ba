// change_watch_test.cpp - invalidation callbacks
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/support/wait_until.h"

#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/sleep.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

namespace genicam_test {
namespace {

/// Keeps the names that its callback was called with.
class Listener {
public:
    static void PXN_CALL OnChange(PxnHandle handle, const char* name, void* context) {
        auto& self = *static_cast<Listener*>(context);
        {
            const platform::MutexLock lock(self.mutex);
            self.names.push_back(name);
            self.lastHandle = handle;
        }
        if (self.onChange) {
            self.onChange(handle, name);
        }
    }

    std::vector<std::string> Names() const {
        const platform::MutexLock lock(mutex);
        return names;
    }
    std::size_t CountOf(const std::string& name) const {
        const std::vector<std::string> present = Names();
        return static_cast<std::size_t>(std::count(present.begin(), present.end(), name));
    }
    bool WaitFor(const std::string& name, std::size_t count = 1) const {
        return support::WaitUntil([&] { return CountOf(name) >= count; });
    }
    PxnHandle LastHandle() const {
        const platform::MutexLock lock(mutex);
        return lastHandle;
    }

    std::function<void(PxnHandle, const char*)> onChange;

private:
    mutable platform::Mutex mutex;
    std::vector<std::string> names GUARDED_BY(mutex);
    PxnHandle lastHandle GUARDED_BY(mutex) = nullptr;
};

} // namespace

class InvalidationTest : public CameraFixture {
protected:
    static void SetUpTestSuite() {
        StartSuite(MIVORA_SOURCE_DIR "/tests/pxnc/genicam/test_camera.xml");
    }

    void SetUp() override {
        Open();
        ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 512), PxnErrSuccess);
        ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 0), PxnErrSuccess);
    }

    void Register(const char* name, Listener& listener) const {
        ASSERT_EQ(Sdk().FeatureInvalidationRegister(camera, name, Listener::OnChange, &listener),
                  PxnErrSuccess)
            << name;
    }
    void Unregister(const char* name) const {
        ASSERT_EQ(Sdk().FeatureInvalidationUnregister(camera, name, Listener::OnChange),
                  PxnErrSuccess)
            << name;
    }
};

TEST_F(InvalidationTest, ReportsTheFeatureThatWasWritten) {
    Listener listener;
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 256), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("Width"));
    EXPECT_EQ(listener.LastHandle(), camera);
    // Also when the value stays the same.
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 256), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("Width", 2));
    Unregister("Width");
}

TEST_F(InvalidationTest, ReportsFeaturesWhoseValueOrLimitsOrAccessChanged) {
    Listener listener;
    for (const char* name : {"PayloadSize", "OffsetX", "Height", "LockedInt", "Choice"}) {
        Register(name, listener);
    }
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 1024), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("PayloadSize"));
    EXPECT_TRUE(listener.WaitFor("OffsetX"));
    ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 1), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("LockedInt"));
    EXPECT_TRUE(listener.WaitFor("Choice"));
    EXPECT_EQ(listener.CountOf("Height"), 0u);
    EXPECT_EQ(listener.CountOf("PayloadSize"), 1u);
    EXPECT_EQ(listener.Names().size(), 4u);
}

TEST_F(InvalidationTest, SaysNothingAfterAWriteThatFailed) {
    Listener listener;
    Register("Width", listener);
    Register("Height", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 17), PxnErrInvalidValue);
    // The write after it is reported, so the failed one would have been by then.
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Height", 512), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("Height"));
    EXPECT_EQ(listener.CountOf("Width"), 0u);
}

TEST_F(InvalidationTest, ReportsToTheStreamWhatTheCameraChanges) {
    Listener listener;
    ASSERT_EQ(
        Sdk().FeatureInvalidationRegister(stream, "PayloadSize", Listener::OnChange, &listener),
        PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 64), PxnErrSuccess);
    EXPECT_TRUE(listener.WaitFor("PayloadSize"));
    EXPECT_EQ(listener.LastHandle(), stream);
}

TEST_F(InvalidationTest, HasReportedWhatACaptureLocksWhenItStartsAndEnds) {
    Listener listener;
    Register("Width", listener);
    for (const PxnHandle handle : {camera, stream}) {
        const std::size_t before = listener.CountOf("Width");
        ASSERT_EQ(Sdk().CaptureStart(handle), PxnErrSuccess);
        EXPECT_EQ(listener.CountOf("Width"), before + 1);
        ASSERT_EQ(Sdk().CaptureEnd(handle), PxnErrSuccess);
        EXPECT_EQ(listener.CountOf("Width"), before + 2);
    }
}

TEST_F(InvalidationTest, HasReportedWhatAnAcquisitionLocksWhenItStartsAndStops) {
    Listener listener;
    Register("IdleInt", listener);
    std::size_t count = 0;
    for (const char* stop : {"AcquisitionStop", "AcquisitionAbort"}) {
        ASSERT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStart"), PxnErrSuccess);
        EXPECT_EQ(listener.CountOf("IdleInt"), ++count);
        ASSERT_EQ(Sdk().FeatureCommandRun(camera, stop), PxnErrSuccess);
        EXPECT_EQ(listener.CountOf("IdleInt"), ++count) << stop;
    }
}

TEST_F(InvalidationTest, AllowsReadingInsideTheCallback) {
    Listener listener;
    std::atomic<std::int64_t> seen = 0;
    listener.onChange = [&](PxnHandle handle, const char* name) {
        std::int64_t value = 0;
        if (Sdk().FeatureIntGet(handle, name, &value) == PxnErrSuccess) {
            seen = value;
        }
    };
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 800), PxnErrSuccess);
    EXPECT_TRUE(support::WaitUntil([&] { return seen == 800; }));
    Unregister("Width");
}

TEST_F(InvalidationTest, KeepsRegistrationsOfOneCallbackApart) {
    Listener first;
    Listener second;
    Register("Width", first);
    Register("Width", second);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    EXPECT_TRUE(first.WaitFor("Width"));
    EXPECT_TRUE(second.WaitFor("Width"));
    // The newest goes first.
    Unregister("Width");
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 320), PxnErrSuccess);
    EXPECT_TRUE(first.WaitFor("Width", 2));
    EXPECT_EQ(second.CountOf("Width"), 1u);
    Unregister("Width");
    EXPECT_EQ(Sdk().FeatureInvalidationUnregister(camera, "Width", Listener::OnChange),
              PxnErrNotFound);
}

TEST_F(InvalidationTest, UnregisteringWaitsForTheCallback) {
    Listener listener;
    platform::Event inside;
    platform::Event leave;
    std::atomic<bool> left = false;
    listener.onChange = [&](PxnHandle, const char*) {
        inside.Set();
        leave.Wait(10000);
        left = true;
    };
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    ASSERT_TRUE(inside.Wait(10000));
    std::atomic<bool> leftBefore = false;
    std::thread unregistering([&] {
        EXPECT_EQ(Sdk().FeatureInvalidationUnregister(camera, "Width", Listener::OnChange),
                  PxnErrSuccess);
        leftBefore = left.load();
    });
    leave.Set();
    unregistering.join();
    EXPECT_TRUE(leftBefore);
}

TEST_F(InvalidationTest, UnregistersInsideTheCallbackWithoutWaiting) {
    Listener listener;
    std::atomic<PxnError> result = 1;
    listener.onChange = [&](PxnHandle handle, const char* name) {
        result = Sdk().FeatureInvalidationUnregister(handle, name, Listener::OnChange);
    };
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    EXPECT_TRUE(support::WaitUntil([&] { return result == PxnErrSuccess; }));
    EXPECT_EQ(Sdk().FeatureInvalidationUnregister(camera, "Width", Listener::OnChange),
              PxnErrNotFound);
}

TEST_F(InvalidationTest, ClosesTheCameraInsideTheCallback) {
    Listener listener;
    std::atomic<PxnError> result = 1;
    listener.onChange = [&](PxnHandle handle, const char*) {
        result = Sdk().CameraClose(handle);
    };
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    EXPECT_TRUE(support::WaitUntil([&] { return result != 1; }));
    EXPECT_EQ(result, PxnErrSuccess);
    ForgetHandles();
    Open();
}

TEST_F(InvalidationTest, ClosesTheCameraInsideACallbackThatIsWaitedFor) {
    Listener listener;
    platform::Event inside;
    platform::Event close;
    std::atomic<PxnError> result = 1;
    listener.onChange = [&](PxnHandle handle, const char*) {
        inside.Set();
        close.Wait(10000);
        result = Sdk().CameraClose(handle);
    };
    Register("Width", listener);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    ASSERT_TRUE(inside.Wait(10000));
    // Waits for the callback as well, but not without limit.
    std::thread stopping(
        [&] { EXPECT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess); });
    std::thread unregistering([&] {
        // The closing may remove the registration first.
        const PxnError removed =
            Sdk().FeatureInvalidationUnregister(camera, "Width", Listener::OnChange);
        EXPECT_TRUE(removed == PxnErrSuccess || removed == PxnErrBadHandle) << removed;
    });
    // Gives both the time to begin their waits.
    platform::SleepMs(50);
    close.Set();
    stopping.join();
    unregistering.join();
    EXPECT_EQ(result, PxnErrSuccess);
    ForgetHandles();
    Open();
}

TEST_F(InvalidationTest, ClosingTakesTheRegistrationsAlong) {
    Listener listener;
    Register("Width", listener);
    const PxnHandle closed = camera;
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 160), PxnErrSuccess);
    Close();
    const std::size_t count = listener.Names().size();
    EXPECT_EQ(Sdk().FeatureInvalidationUnregister(closed, "Width", Listener::OnChange),
              PxnErrBadHandle);
    Open();
    Listener next;
    Register("Width", next);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 320), PxnErrSuccess);
    EXPECT_TRUE(next.WaitFor("Width"));
    EXPECT_EQ(listener.Names().size(), count);
    Unregister("Width");
}

TEST_F(InvalidationTest, RefusesWhatMakesNoSense) {
    Listener listener;
    EXPECT_EQ(Sdk().FeatureInvalidationRegister(camera, "Nothing", Listener::OnChange, &listener),
              PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureInvalidationRegister(camera, "Width", nullptr, &listener),
              PxnErrBadParameter);
    EXPECT_EQ(Sdk().FeatureInvalidationRegister(nullptr, "Width", Listener::OnChange, &listener),
              PxnErrBadHandle);
}

TEST_F(InvalidationTest, SurvivesRegistrationsFromManyThreads) {
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    // A feature for each thread: of one feature it would take back another thread's registration.
    for (const char* name : {"SteppedInt", "Height", "OffsetX", "LockedInt"}) {
        threads.emplace_back([&, name] {
            for (int round = 0; round < 50; ++round) {
                Listener listener;
                failures += Sdk().FeatureInvalidationRegister(camera, name, Listener::OnChange,
                                                              &listener) != PxnErrSuccess;
                failures +=
                    Sdk().FeatureIntSet(camera, "SteppedInt", round % 2 * 5) != PxnErrSuccess;
                failures += Sdk().FeatureInvalidationUnregister(camera, name, Listener::OnChange) !=
                            PxnErrSuccess;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

} // namespace genicam_test
