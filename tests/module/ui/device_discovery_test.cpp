// device_discovery_test.cpp - how device finders hear of cameras and interfaces
#include "ui/device_discovery.h"

#include "platform/event.h"
#include "tests/module/sdk/loaded_api.h"

#include <atomic>
#include <memory>
#include <thread>

using namespace pyxen;

namespace {

class DeviceDiscoveryTest : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        ASSERT_TRUE(otherApi.Load(nullptr, nullptr));
        sdk.Data().system.Put(scripted::IntFeature("EventInterfaceDiscovery", 0, 0, 0xFFFF));
        sdk.ClearCalls();
    }

    /// A finder of that name, following.
    std::unique_ptr<DeviceDiscovery> Follow(CPyxenAPIAccess& access, const std::string& name) {
        auto discovery = std::make_unique<DeviceDiscovery>(access);
        discovery->Register(Posting(name));
        return discovery;
    }
    DeviceDiscovery::Post Posting(const std::string& name) {
        return [this, name](DeviceDiscovery::Event event, PxnHandle handle, const char* feature) {
            EXPECT_EQ(handle, PXN_SYSTEM_HANDLE);
            const bool isCamera = event == DeviceDiscovery::Event::kCamera;
            EXPECT_STREQ(feature, isCamera ? "EventCameraDiscovery" : "EventInterfaceDiscovery");
            posted.push_back(name + (isCamera ? " camera" : " interface"));
        };
    }
    Texts Posted(const char* feature) {
        posted.clear();
        sdk.Fire(PXN_SYSTEM_HANDLE, feature);
        return posted;
    }
    Texts CameraPosted() { return Posted("EventCameraDiscovery"); }
    Texts InterfacePosted() { return Posted("EventInterfaceDiscovery"); }

    CPyxenAPIAccess otherApi;
    Texts posted;
};

TEST_F(DeviceDiscoveryTest, RegistersInterfacesThenCameras) {
    const auto finder = Follow(api, "finder");
    finder->Unregister();
    EXPECT_EQ(sdk.TakeCalls(),
              (Texts{R"(PxnFeatureInvalidationRegister(system, "EventInterfaceDiscovery", cb))",
                     R"(PxnFeatureInvalidationRegister(system, "EventCameraDiscovery", cb))",
                     R"(PxnFeatureInvalidationUnregister(system, "EventInterfaceDiscovery", cb))",
                     R"(PxnFeatureInvalidationUnregister(system, "EventCameraDiscovery", cb))"}));
    finder->Unregister();
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(DeviceDiscoveryTest, FollowsNothingWithoutTheSdk) {
    CPyxenAPIAccess unloaded;
    const auto finder = Follow(unloaded, "finder");
    EXPECT_EQ(CameraPosted(), Texts{});
    finder->Unregister();
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(DeviceDiscoveryTest, PostsEventsOfBothKinds) {
    const auto finder = Follow(api, "finder");
    EXPECT_EQ(CameraPosted(), Texts{"finder camera"});
    EXPECT_EQ(InterfacePosted(), Texts{"finder interface"});
    finder->Unregister();
    EXPECT_EQ(CameraPosted(), Texts{});
}

TEST_F(DeviceDiscoveryTest, ReachesBothFindersHoweverOftenTheyRenew) {
    const auto first = Follow(api, "first");
    const auto second = Follow(otherApi, "second");
    for (int event = 0; event < 3; ++event) {
        EXPECT_EQ(CameraPosted().size(), 2u);
        // As both do when they handle an event, the older one first.
        first->Unregister();
        second->Unregister();
        first->Register(Posting("first"));
        second->Register(Posting("second"));
    }
    first->Unregister();
    first->Register(Posting("first"));
    EXPECT_EQ(CameraPosted(), (Texts{"second camera", "first camera"}));
    EXPECT_EQ(InterfacePosted(), (Texts{"second interface", "first interface"}));
}

TEST_F(DeviceDiscoveryTest, StaysWithTheFinderThatStays) {
    for (const bool firstGoes : {true, false}) {
        auto first = Follow(api, "first");
        auto second = Follow(otherApi, "second");
        (firstGoes ? first : second).reset();
        EXPECT_EQ(CameraPosted(), Texts{firstGoes ? "second camera" : "first camera"});
        EXPECT_EQ(InterfacePosted(), Texts{firstGoes ? "second interface" : "first interface"});
    }
    EXPECT_TRUE(sdk.Registrations().empty());
}

// The thread of the finder's window may be what the call waits for.
TEST_F(DeviceDiscoveryTest, DoesNotWaitForARunningCall) {
    platform::Event entered;
    platform::Event goOn;
    std::atomic<bool> ended{false};
    DeviceDiscovery discovery(api);
    discovery.Register([&](DeviceDiscovery::Event, PxnHandle, const char*) {
        entered.Set();
        goOn.Wait(10000);
    });
    std::thread thread([&] {
        sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
        ended = true;
    });
    EXPECT_TRUE(entered.Wait(10000));
    discovery.Unregister();
    EXPECT_FALSE(ended) << "the call was waited for";
    goOn.Set();
    thread.join();
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(DeviceDiscoveryTest, WorksWithoutWhatTheSdkRefuses) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrInternalFault);
    const auto finder = Follow(api, "finder");
    EXPECT_EQ(InterfacePosted(), Texts{});
    EXPECT_EQ(CameraPosted(), Texts{"finder camera"});
}

} // namespace
