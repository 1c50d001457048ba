// discovery_events_test.cpp - discovery events reach every initialised grabber
#include "grabber/discovery_events.h"

#include "platform/event.h"
#include "platform/thread.h"
#include "tests/module/acquisition/grabber_fixture.h"

#include <atomic>
#include <functional>

namespace {

using scripted::SystemHandle;

constexpr const char* kFeature = "EventCameraDiscovery";

// A grabber beside the fixture's, and how often its host was told of a change.
struct Listener {
    Listener() : grabber(std::make_unique<CMivoraKVNPyxenClass>(nullptr)) {
        EXPECT_EQ(grabber->Init(), MV_OK);
        grabber->InstCamCfgChangeCallBack(
            [](void* context) {
                auto& self = *static_cast<Listener*>(context);
                ++self.told;
                if (self.onTold) {
                    self.onTold();
                }
            },
            this);
    }

    std::atomic<unsigned> told{0};
    std::function<void()> onTold;
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
};

class DiscoveryEventsTest : public GrabberFixture {
protected:
    unsigned Fire() { return sdk.Fire(SystemHandle(), kFeature); }
};

TEST_F(DiscoveryEventsTest, ReachTheHost) {
    Listener listener;
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(listener.told, 1u);
    EXPECT_EQ(listener.grabber->DeInit(), MV_OK);
    EXPECT_EQ(Fire(), 0u);
    EXPECT_EQ(listener.told, 1u);
}

TEST_F(DiscoveryEventsTest, ReachEveryGrabberOnce) {
    Listener first;
    Listener second;
    Listener third;
    EXPECT_EQ(Fire(), 3u);
    EXPECT_EQ(first.told, 1u);
    EXPECT_EQ(second.told, 1u);
    EXPECT_EQ(third.told, 1u);
}

TEST_F(DiscoveryEventsTest, ReachThoseThatStayWhicheverGoes) {
    for (unsigned leaving = 0; leaving < 3; ++leaving) {
        Listener listeners[3];
        listeners[leaving].grabber.reset();
        EXPECT_EQ(Fire(), 2u);
        for (unsigned index = 0; index < 3; ++index) {
            EXPECT_EQ(listeners[index].told, index == leaving ? 0u : 1u) << leaving;
        }
        listeners[(leaving + 1) % 3].grabber.reset();
        EXPECT_EQ(Fire(), 1u);
        EXPECT_EQ(listeners[(leaving + 2) % 3].told, 2u) << leaving;
    }
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(DiscoveryEventsTest, ARefusedRegistrationIsNotReleased) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources);
    Listener listener;
    EXPECT_EQ(sdk.Registrations().size(), 0u);
    sdk.ClearCalls();
    EXPECT_EQ(listener.grabber->DeInit(), MV_OK);
    EXPECT_EQ(Calls(), Texts{"PxnShutdown()"});
}

TEST_F(DiscoveryEventsTest, AnEventThatComesTooLateIsIgnored) {
    Listener listener;
    // The library refuses the release, as one that lost the registration would.
    sdk.Fail("PxnFeatureInvalidationUnregister", PxnErrNotFound);
    EXPECT_EQ(listener.grabber->DeInit(), MV_OK);
    Fire();
    EXPECT_EQ(listener.told, 0u);
}

TEST_F(DiscoveryEventsTest, AHostMayRefreshTheListFromItsReceiver) {
    Listener listener;
    listener.onTold = [&] {
        EXPECT_EQ(listener.grabber->RefreshCameraList(), MV_OK);
    };
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(listener.told, 1u);
}

TEST_F(DiscoveryEventsTest, ReleaseWaitsForACallOnAnotherThread) {
    Listener staying;
    auto leaving = std::make_unique<Listener>();
    platform::Event entered;
    platform::Event goOn;
    std::atomic<bool> ended{false};
    leaving->onTold = [&] {
        entered.Set();
        goOn.Wait(platform::kInfinite);
        ended = true;
    };
    struct Context {
        scripted::Sdk& sdk;
    } context{sdk};
    platform::Thread firing = platform::Thread::Start(
        [](void* argument) { static_cast<Context*>(argument)->sdk.Fire(SystemHandle(), kFeature); },
        &context, 0);
    ASSERT_TRUE(entered.Wait(10000));
    sdk.OnCall("PxnFeatureInvalidationUnregister", [&] { goOn.Set(); });
    leaving->grabber.reset();
    EXPECT_TRUE(ended);
    firing.Join();
    sdk.OnCall("PxnFeatureInvalidationUnregister", {});
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(staying.told, 2u);
}

TEST_F(DiscoveryEventsTest, AnUnknownGrabberIsNotReleased) {
    DiscoveryEvents::Release(Grabber());
    EXPECT_EQ(Calls(), Texts{});
}

} // namespace
