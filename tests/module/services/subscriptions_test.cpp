// subscriptions_test.cpp - hosts that follow features
#include "services/subscriptions.h"

#include "platform/event.h"
#include "tests/module/services/services_fixture.h"

#include <atomic>
#include <thread>

using namespace pyxen;

namespace {

using scripted::CameraHandle;
using scripted::InterfaceHandle;
using scripted::SystemHandle;

class SubscriptionServices : public ServicesFixture {
protected:
    using Receiver = ReceiverOf<const char*, const char*>;

    MV_SERVICE_RESULT Subscribe(const char* module, const char* feature, uint64_t& number) {
        return Services().Subscribe(module, feature, Receiver::Receive, &receiver, &number,
                                    &reason);
    }
    /// A subscription of "Camera/Width".
    uint64_t Follow() {
        uint64_t number = 0;
        EXPECT_EQ(Subscribe("Camera", "Width", number), MV_SERVICE_OK);
        return number;
    }
    MV_SERVICE_RESULT End(uint64_t number) { return Services().Unsubscribe(number, &reason); }
    unsigned Fire() { return sdk.Fire(CameraHandle(), "Width"); }
    std::size_t Registered(const char* module) {
        std::size_t count = 0;
        for (const scripted::Registration& one : sdk.Registrations()) {
            count += one.module == module ? 1u : 0u;
        }
        return count;
    }

    Texts changes;
    Receiver receiver{[this](const char* module, const char* feature) {
        changes.push_back(std::string(module) + "/" + feature);
    }};
};

TEST_F(SubscriptionServices, ReportChangesUntilTheirEnd) {
    Open();
    const uint64_t first = Follow();
    const uint64_t second = Follow();
    EXPECT_NE(first, second);
    EXPECT_EQ(Registered("camera0"), 1u);
    Fire();
    EXPECT_EQ(changes, (Texts{"Camera/Width", "Camera/Width"}));
    EXPECT_EQ(End(first), MV_SERVICE_OK);
    EXPECT_EQ(End(first), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason(), "there is no such subscription, or it has ended");
    Fire();
    EXPECT_EQ(changes.size(), 3u);
    EXPECT_EQ(End(second), MV_SERVICE_OK);
    EXPECT_EQ(Registered("camera0"), 0u);
    EXPECT_EQ(Fire(), 0u);
    EXPECT_EQ(changes.size(), 3u);
}

TEST_F(SubscriptionServices, SayWhyTheyCannotBe) {
    Init();
    uint64_t number = 0;
    EXPECT_EQ(Subscribe("Camera", "Width", number), MV_SERVICE_NO_CAMERA);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Subscribe("Camera", "Depth", number), MV_SERVICE_NOT_FOUND);
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrNotSupported);
    EXPECT_EQ(Subscribe("Camera", "Width", number), MV_SERVICE_SDK_FAILED);
    EXPECT_EQ(Reason(), "Camera/Width: the camera's SDK does not report changes");
    EXPECT_EQ(number, 0u);
}

TEST_F(SubscriptionServices, EndWithTheCamera) {
    Open();
    const uint64_t width = Follow();
    uint64_t port = 0;
    uint64_t system = 0;
    ASSERT_EQ(Subscribe("Interface", "InterfaceID", port), MV_SERVICE_OK);
    ASSERT_EQ(Subscribe("System", "TLVendorName", system), MV_SERVICE_OK);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Registered("camera0"), 0u);
    EXPECT_EQ(Registered("interface0"), 0u);
    EXPECT_EQ(End(width), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(End(port), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(sdk.Fire(SystemHandle(), "TLVendorName"), 1u);
    EXPECT_EQ(changes, Texts{"System/TLVendorName"});
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(End(system), MV_SERVICE_NOT_FOUND);
    sdk.FireRemoved();
    EXPECT_EQ(changes.size(), 1u) << "such a callback finds nobody";
}

TEST_F(SubscriptionServices, EndWhenTheCameraIsOpenedAgain) {
    Open();
    const uint64_t former = Follow();
    ASSERT_EQ(Grabber().OpenActCamera(), MV_REFUSED) << "the SDK has it open";
    EXPECT_EQ(End(former), MV_SERVICE_NOT_FOUND);
}

TEST_F(SubscriptionServices, LeaveNothingToAGrabberThatGoes) {
    Open();
    Follow();
    Destroy();
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(SubscriptionServices, WaitForARunningReceiverAtTheirEnd) {
    Open();
    const uint64_t number = Follow();
    platform::Event begun;
    platform::Event release;
    std::atomic<bool> returned{false};
    receiver.call = [&](const char*, const char*) {
        begun.Set();
        release.Wait(platform::kInfinite);
        returned = true;
    };
    std::thread firing([this] { Fire(); });
    ASSERT_TRUE(begun.Wait(10000));
    std::thread ending([&] {
        EXPECT_EQ(End(number), MV_SERVICE_OK);
        EXPECT_TRUE(returned);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
    };
    EXPECT_EQ(Services().ReadFeature("Camera", "Height", ignore, nullptr, nullptr), MV_SERVICE_OK)
        << "the lock is not held meanwhile";
    release.Set();
    ending.join();
    firing.join();
}

TEST_F(SubscriptionServices, MayUseServicesInTheirReceiver) {
    Open();
    uint64_t number = Follow();
    Texts results;
    receiver.call = [&](const char*, const char*) {
        results.push_back(std::to_string(Read("Camera", "Width")));
        results.push_back(std::to_string(Write("Camera", "Width", IntegerValue(656))));
        results.push_back(std::to_string(End(number)));
    };
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(results, (Texts{"0", "0", "0"}));
    EXPECT_EQ(Registered("camera0"), 0u);
}

TEST_F(SubscriptionServices, RefuseWhatWouldWaitForTheirReceiver) {
    Open();
    Follow();
    std::vector<MV_ERRCODE> results;
    receiver.call = [&](const char*, const char*) {
        for (const auto operation :
             {&CMivoraGrabber::OpenActCamera, &CMivoraGrabber::CloseActCamera,
              &CMivoraGrabber::RefreshCameraList, &CMivoraGrabber::DeInit}) {
            results.push_back((Grabber().*operation)());
        }
        results.push_back(Grabber().SelectCameraDialog(nullptr, nullptr));
        results.push_back(Grabber().Init());
    };
    Fire();
    EXPECT_EQ(results, (std::vector<MV_ERRCODE>{MV_BUSY, MV_BUSY, MV_BUSY, MV_BUSY, MV_BUSY,
                                                MV_ALREADY_INITIALISED}));
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
}

TEST_F(SubscriptionServices, DoNotWaitForOneAnotherInTheirReceivers) {
    Open();
    const uint64_t width = Follow();
    Receiver other{[](const char*, const char*) {
    }};
    uint64_t height = 0;
    ASSERT_EQ(Services().Subscribe("Camera", "Height", Receiver::Receive, &other, &height, nullptr),
              MV_SERVICE_OK);
    platform::Event inWidth;
    platform::Event inHeight;
    receiver.call = [&](const char*, const char*) {
        inWidth.Set();
        inHeight.Wait(platform::kInfinite);
        EXPECT_EQ(Services().Unsubscribe(height, nullptr), MV_SERVICE_OK);
    };
    other.call = [&](const char*, const char*) {
        inHeight.Set();
        inWidth.Wait(platform::kInfinite);
        EXPECT_EQ(Services().Unsubscribe(width, nullptr), MV_SERVICE_OK);
    };
    std::thread firing([this] { Fire(); });
    sdk.Fire(CameraHandle(), "Height");
    firing.join();
    // What a service in between left is taken back with the next one or the camera.
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Registered("camera0"), 0u);
}

TEST_F(SubscriptionServices, AreTakenBackLaterWhereNothingCanWait) {
    Open();
    uint64_t system = 0;
    ASSERT_EQ(Subscribe("System", "TLVendorName", system), MV_SERVICE_OK);
    const std::size_t before = Registered("system");
    MV_SERVICE_RESULT ended = MV_SERVICE_BUSY;
    sdk.OnCall("PxnCameraClose", [&] { ended = End(system); }); // on the thread that closes
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.ClearHooks();
    EXPECT_EQ(ended, MV_SERVICE_OK);
    EXPECT_EQ(Registered("system"), before);
    sdk.Fire(SystemHandle(), "TLVendorName");
    EXPECT_EQ(changes, Texts{});
    uint64_t next = 0;
    ASSERT_EQ(Subscribe("System", "EventCameraDiscoveryType", next), MV_SERVICE_OK);
    EXPECT_EQ(Registered("system"), before) << "the former one goes when the next one comes";
}

} // namespace
