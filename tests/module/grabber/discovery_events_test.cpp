// discovery_events_test.cpp - discovery events reach every initialised grabber
#include "grabber/discovery_events.h"

#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/thread.h"
#include "tests/module/grabber_fixture.h"

#include <atomic>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>

using namespace pyxen;

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
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(first.told, 1u);
    EXPECT_EQ(second.told, 1u);
    EXPECT_EQ(third.told, 1u);
}

TEST_F(DiscoveryEventsTest, ReachThoseThatStayWhicheverGoes) {
    for (unsigned leaving = 0; leaving < 3; ++leaving) {
        Listener listeners[3];
        listeners[leaving].grabber.reset();
        EXPECT_EQ(Fire(), 1u);
        for (unsigned index = 0; index < 3; ++index) {
            EXPECT_EQ(listeners[index].told, index == leaving ? 0u : 1u) << leaving;
        }
        listeners[(leaving + 1) % 3].grabber.reset();
        EXPECT_EQ(Fire(), 1u);
        EXPECT_EQ(listeners[(leaving + 2) % 3].told, 2u) << leaving;
    }
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(DiscoveryEventsTest, ReachThoseThatStayWhenOneGoesMeanwhile) {
    Listener first;
    Listener second;
    Listener third;
    first.onTold = [&] {
        discovery_events::Release(*first.grabber);
    };
    Fire();
    EXPECT_EQ(first.told, 1u);
    EXPECT_EQ(second.told, 1u);
    EXPECT_EQ(third.told, 1u);
    second.onTold = [&] {
        discovery_events::Release(*third.grabber);
    };
    Fire();
    EXPECT_EQ(first.told, 1u);
    EXPECT_EQ(second.told, 2u);
    EXPECT_EQ(third.told, 1u);
}

TEST_F(DiscoveryEventsTest, ReachGrabbersThatCameAndWentOnSeveralThreads) {
    constexpr int kRounds = 500;
    Listener listeners[3];
    platform::Thread threads[3];
    for (int index = 0; index < 3; ++index) {
        threads[index] = platform::Thread::Start(
            [](void* argument) {
                auto& listener = *static_cast<Listener*>(argument);
                for (int round = 0; round < kRounds; ++round) {
                    discovery_events::Release(*listener.grabber);
                    discovery_events::Register(*listener.grabber);
                }
            },
            &listeners[index], 0);
    }
    for (platform::Thread& thread : threads) {
        thread.Join();
    }
    EXPECT_EQ(Fire(), 1u);
    for (const Listener& listener : listeners) {
        EXPECT_EQ(listener.told, 1u);
    }
    for (Listener& listener : listeners) {
        discovery_events::Release(*listener.grabber);
    }
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(DiscoveryEventsTest, ReachGrabbersOfTheirLibraryOnly) {
    std::optional<Listener> other;
    {
        const support::EnvironmentGuard otherLibrary(
            "PYXEN_HOME", platform::JoinPath(platform::DirectoryOf(scripted::Home()), "bare"));
        other.emplace();
    }
    Listener listener;
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(listener.told, 1u);
    EXPECT_EQ(other->told, 0u);
    sdk.ClearCalls();
    EXPECT_EQ(listener.grabber->DeInit(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureInvalidationUnregister"}).size(), 1u);
}

TEST_F(DiscoveryEventsTest, ARefusedRegistrationIsTriedAgainForTheNextGrabber) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources);
    Listener refused;
    Listener next;
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(refused.told, 0u);
    EXPECT_EQ(next.told, 1u);
}

TEST_F(DiscoveryEventsTest, ARefusedRegistrationIsTriedAgainForAGrabberThatCameMeanwhile) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources);
    std::optional<Listener> meanwhile;
    std::atomic<bool> isFirst{true};
    sdk.OnCall("PxnFeatureInvalidationRegister", [&] {
        if (isFirst.exchange(false)) {
            std::thread([&] { meanwhile.emplace(); }).join();
        }
    });
    Listener refused;
    sdk.ClearHooks();
    ASSERT_TRUE(meanwhile);
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(refused.told, 0u);
    EXPECT_EQ(meanwhile->told, 1u);
    meanwhile.reset();
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
    CPyxenAPIAccess user; // of the library, which therefore keeps the registration
    ASSERT_TRUE(user.Load(nullptr, nullptr));
    // The library refuses the release, as one that lost the registration would.
    sdk.Fail("PxnFeatureInvalidationUnregister", PxnErrNotFound);
    EXPECT_EQ(listener.grabber->DeInit(), MV_OK);
    EXPECT_EQ(Fire(), 1u);
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
    Listener leaving;
    platform::Event entered;
    platform::Event released;
    std::atomic<bool> ended{false};
    leaving.onTold = [&] {
        entered.Set();
        EXPECT_FALSE(released.Wait(100));
        ended = true;
    };
    platform::Thread firing = platform::Thread::Start(
        [](void*) { scripted::GetSdk().Fire(SystemHandle(), kFeature); }, nullptr, 0);
    ASSERT_TRUE(entered.Wait(10000));
    EXPECT_EQ(leaving.grabber->DeInit(), MV_OK);
    EXPECT_TRUE(ended);
    released.Set();
    firing.Join();
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(staying.told, 2u);
    EXPECT_EQ(leaving.told, 1u);
}

TEST_F(DiscoveryEventsTest, AnUnknownGrabberIsNotReleased) {
    discovery_events::Release(Grabber());
    EXPECT_EQ(Calls(), Texts{});
}

// ---- the end of the process ----

constexpr int kHeardAtTheEnd = 42;
Listener* listenerOfTheProcess = nullptr; // never goes, as with a host that does not clean up

// The handler runs after the destructors of all static objects that were made after it was
// registered: of those that the module makes when its first grabber begins.
TEST_F(DiscoveryEventsTest, MayComeWhileTheProcessEnds) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, where none exist yet
    EXPECT_EXIT(
        {
            std::atexit([] {
                scripted::GetSdk().Fire(SystemHandle(), kFeature);
                std::_Exit(listenerOfTheProcess->told == 1 ? kHeardAtTheEnd : 1);
            });
            listenerOfTheProcess = new Listener;
            std::exit(0);
        },
        ::testing::ExitedWithCode(kHeardAtTheEnd), "");
}

} // namespace
