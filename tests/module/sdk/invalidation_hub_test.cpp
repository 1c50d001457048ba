// invalidation_hub_test.cpp - one SDK's invalidation callbacks for all who follow it
#include "sdk/invalidation_hub.h"

#include "platform/event.h"
#include "tests/module/sdk/loaded_api.h"
#include "tests/support/wait_until.h"

#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>

using namespace pyxen;

namespace {

using Channel = InvalidationChannel;
using Ending = InvalidationEnding;

class InvalidationHubTest : public LoadedApi {
protected:
    InvalidationSubscription Subscribe(InvalidationHub::Receiver receiver,
                                       Ending ending = Ending::kWaits,
                                       Channel channel = Channel::kFeatureValue) {
        return InvalidationHub::Subscribe(api, channel, scripted::CameraHandle(), "Width", ending,
                                          std::move(receiver));
    }
    /// One that notes its name when it is called.
    InvalidationSubscription Note(const std::string& name,
                                  Channel channel = Channel::kFeatureValue) {
        return Subscribe([this, name](const Invalidation&) { called.push_back(name); },
                         Ending::kWaits, channel);
    }
    unsigned Fire() { return sdk.Fire(scripted::CameraHandle(), "Width"); }
    Texts Called() { return std::exchange(called, {}); }
    Texts HubCalls() { return sdk.TakeCalls({"PxnFeatureInvalidation"}); }

    const std::string add = R"(PxnFeatureInvalidationRegister(camera0, "Width", cb))";
    const std::string takeBack = R"(PxnFeatureInvalidationUnregister(camera0, "Width", cb))";
    Texts called;
};

// ---- sharing ----

TEST_F(InvalidationHubTest, CallsAllSubscribersInOrderThroughOneRegistration) {
    const auto first = Note("first");
    const auto second = Note("second");
    const auto third = Note("third");
    EXPECT_TRUE(first && second && third);
    EXPECT_EQ(HubCalls(), Texts{add});
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), (Texts{"first", "second", "third"}));
}

TEST_F(InvalidationHubTest, PassesHandleAndName) {
    PxnHandle handle = nullptr;
    std::string name;
    const auto subscription = Subscribe([&](const Invalidation& event) {
        EXPECT_TRUE(event.IsWanted());
        handle = event.handle;
        name = event.name;
    });
    Fire();
    EXPECT_EQ(handle, scripted::CameraHandle());
    EXPECT_EQ(name, "Width");
}

TEST_F(InvalidationHubTest, TakesTheRegistrationBackWithTheLastSubscriber) {
    for (unsigned order = 0; order < 3; ++order) {
        InvalidationSubscription all[] = {Note("0"), Note("1"), Note("2")};
        EXPECT_EQ(HubCalls(), Texts{add});
        all[order].Unsubscribe();
        EXPECT_FALSE(all[order]);
        all[(order + 1) % 3].Unsubscribe();
        EXPECT_EQ(HubCalls(), Texts{});
        EXPECT_EQ(Fire(), 1u);
        EXPECT_EQ(Called(), Texts{std::to_string((order + 2) % 3)});
        all[(order + 2) % 3].Unsubscribe();
        EXPECT_EQ(HubCalls(), Texts{takeBack});
    }
    EXPECT_EQ(Fire(), 0u);
}

TEST_F(InvalidationHubTest, KeepsChannelsApart) {
    const Channel channels[] = {Channel::kFeatureValue,     Channel::kSyncFeature,
                                Channel::kBufferFormat,     Channel::kTiming,
                                Channel::kGrabberDiscovery, Channel::kFinderDiscovery,
                                Channel::kService};
    std::vector<InvalidationSubscription> all;
    for (const Channel channel : channels) {
        all.push_back(Note(std::to_string(static_cast<int>(channel)), channel));
    }
    EXPECT_EQ(Fire(), 7u);
    EXPECT_EQ(Called(), (Texts{"0", "1", "2", "3", "4", "5", "6"}));
    all[2].Unsubscribe();
    EXPECT_EQ(Fire(), 6u);
    EXPECT_EQ(Called(), (Texts{"0", "1", "3", "4", "5", "6"}));
}

TEST_F(InvalidationHubTest, KeepsFeaturesAndModulesApart) {
    const auto note = [this](PxnHandle handle, const std::string& feature) {
        return InvalidationHub::Subscribe(
            api, Channel::kFeatureValue, handle, feature, Ending::kWaits,
            [this, feature](const Invalidation&) { called.push_back(feature); });
    };
    sdk.Data().cameras[0].localDevice.Put(scripted::IntFeature("Width", 0, 0, 1));
    const auto height = note(scripted::CameraHandle(), "Height");
    auto other = note(scripted::LocalDeviceHandle(), "Width");
    Fire();
    EXPECT_EQ(Called(), Texts{});
    sdk.Fire(scripted::LocalDeviceHandle(), "Width");
    sdk.Fire(scripted::CameraHandle(), "Height");
    EXPECT_EQ(Called(), (Texts{"Width", "Height"}));
}

TEST_F(InvalidationHubTest, MovesASubscription) {
    auto first = Note("first");
    InvalidationSubscription second = std::move(first);
    EXPECT_FALSE(first);
    first.Unsubscribe();
    Fire();
    EXPECT_EQ(Called(), Texts{"first"});
    second = Note("second");
    Fire();
    EXPECT_EQ(Called(), Texts{"second"});
    second = {};
    EXPECT_TRUE(sdk.Registrations().empty());
}

// ---- refusals ----

TEST_F(InvalidationHubTest, IsTriedAgainForTheNextOneAfterARefusal) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources);
    auto refused = Note("refused");
    EXPECT_FALSE(refused);
    const auto next = Note("next");
    EXPECT_TRUE(next);
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), Texts{"next"});
    HubCalls();
    refused.Unsubscribe();
    EXPECT_EQ(HubCalls(), Texts{});
}

TEST_F(InvalidationHubTest, IsTriedAgainForEachThatCameDuringARefusal) {
    std::optional<InvalidationSubscription> meanwhile[2];
    unsigned calls = 0;
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources, 1, 2);
    sdk.OnCall("PxnFeatureInvalidationRegister", [&] {
        if (calls++ == 0) {
            std::thread([&] {
                meanwhile[0] = Note("refused too");
                meanwhile[1] = Note("last");
            }).join();
        }
    });
    const auto refused = Note("refused");
    sdk.ClearHooks();
    EXPECT_FALSE(refused);
    EXPECT_EQ(HubCalls(), (Texts{add, add, add}));
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), Texts{"last"});
}

TEST_F(InvalidationHubTest, IsTakenBackWhenItIsNotNeededAnyMoreOnceItStands) {
    InvalidationSubscription meanwhile;
    bool isFirst = true;
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrResources);
    sdk.OnCall("PxnFeatureInvalidationRegister", [&] {
        if (std::exchange(isFirst, false)) {
            meanwhile = Note("meanwhile");
        } else {
            meanwhile.Unsubscribe();
        }
    });
    const auto refused = Note("refused");
    sdk.ClearHooks();
    EXPECT_EQ(HubCalls(), (Texts{add, add, takeBack}));
    EXPECT_EQ(Fire(), 0u);
}

TEST_F(InvalidationHubTest, CallsOnceWhenTheSdkKeptAnOlderRegistration) {
    sdk.FailAlways("PxnFeatureInvalidationUnregister", PxnErrIO);
    Note("gone");
    const auto next = Note("next");
    EXPECT_EQ(Fire(), 2u);
    EXPECT_EQ(Called(), Texts{"next"});
    sdk.ClearFailures();
}

TEST_F(InvalidationHubTest, IsNotAskedForWithoutALibrary) {
    api.Unload();
    EXPECT_EQ(api.Invalidations(), nullptr);
    EXPECT_FALSE(Note("nobody"));
}

// ---- coming and going during a call ----

TEST_F(InvalidationHubTest, LetsReceiversEndThemselvesAndOthers) {
    InvalidationSubscription second;
    InvalidationSubscription first = Subscribe([&](const Invalidation& event) {
        called.push_back("first");
        first.Unsubscribe();
        second.Unsubscribe();
        EXPECT_FALSE(event.IsWanted());
    });
    second = Note("second");
    const auto third = Note("third");
    Fire();
    EXPECT_EQ(Called(), (Texts{"first", "third"}));
    Fire();
    EXPECT_EQ(Called(), Texts{"third"});
}

TEST_F(InvalidationHubTest, LetsTheOnlyReceiverEndItself) {
    InvalidationSubscription only;
    only = Subscribe([&](const Invalidation&) { only.Unsubscribe(); });
    EXPECT_EQ(Fire(), 1u);
    EXPECT_TRUE(sdk.Registrations().empty());
    EXPECT_EQ(Fire(), 0u);
}

TEST_F(InvalidationHubTest, CallsWhoCameDuringAnEventFromTheNextOneOn) {
    InvalidationSubscription renewed;
    unsigned times = 0;
    std::function<void(const Invalidation&)> renew = [&](const Invalidation&) {
        ++times;
        renewed = Subscribe(renew);
    };
    renewed = Subscribe(renew);
    Fire();
    EXPECT_EQ(times, 1u);
    Fire();
    EXPECT_EQ(times, 2u);
}

TEST_F(InvalidationHubTest, DropsWhatAReceiverThrows) {
    const auto throwing = Subscribe([](const Invalidation&) { throw std::runtime_error("oh"); });
    const auto next = Note("next");
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), Texts{"next"});
}

// ---- calls on other threads ----

/// A receiver that stays inside its call until it may go on.
struct Staying {
    InvalidationHub::Receiver Receiver() {
        return [this](const Invalidation& event) {
            entered.Set();
            goOn.Wait(10000);
            wanted = event.IsWanted();
            ended = true;
        };
    }
    platform::Event entered;
    platform::Event goOn;
    std::atomic<bool> wanted{true};
    std::atomic<bool> ended{false};
};

TEST_F(InvalidationHubTest, WaitsForARunningCall) {
    Staying staying;
    auto subscription = Subscribe(staying.Receiver());
    std::thread sdkThread([&] { Fire(); });
    ASSERT_TRUE(staying.entered.Wait(10000));
    std::thread letting([&] {
        platform::Event never;
        never.Wait(50);
        staying.goOn.Set();
    });
    subscription.Unsubscribe();
    EXPECT_TRUE(staying.ended);
    EXPECT_FALSE(staying.wanted);
    sdkThread.join();
    letting.join();
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(InvalidationHubTest, EndsCallsBeforeTheRegistration) {
    auto subscription = Note("first");
    subscription.EndCalls(Ending::kWaits);
    EXPECT_TRUE(subscription);
    EXPECT_EQ(HubCalls(), Texts{add});
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Width"), 1u);
    EXPECT_EQ(Called(), Texts{});
    subscription.Unsubscribe();
    EXPECT_TRUE(sdk.Registrations().empty());
    subscription.EndCalls(Ending::kWaits);
}

TEST_F(InvalidationHubTest, EndsCallsWithAndWithoutWaiting) {
    for (const Ending ending : {Ending::kWaits, Ending::kAtOnce}) {
        Staying staying;
        auto subscription = Subscribe(staying.Receiver());
        std::thread sdkThread([&] { Fire(); });
        ASSERT_TRUE(staying.entered.Wait(10000));
        std::thread letting([&] {
            if (ending == Ending::kWaits) {
                platform::Event never;
                never.Wait(50);
                staying.goOn.Set();
            }
        });
        subscription.EndCalls(ending);
        EXPECT_EQ(staying.ended, ending == Ending::kWaits);
        subscription.Unsubscribe();
        EXPECT_EQ(staying.ended, ending == Ending::kWaits);
        staying.goOn.Set();
        letting.join();
        sdkThread.join();
        EXPECT_TRUE(sdk.Registrations().empty());
    }
}

TEST_F(InvalidationHubTest, WaitsForACallThatTakesTheRegistrationBack) {
    // Either thread may be the one that does, so that it takes a few attempts to see both.
    for (unsigned round = 0; round < 50; ++round) {
        Staying staying;
        auto subscription = Subscribe(staying.Receiver());
        std::thread sdkThread([&] { Fire(); });
        ASSERT_TRUE(staying.entered.Wait(10000));
        sdk.Hold("PxnFeatureInvalidationUnregister");
        std::atomic<bool> hasReturned{false};
        std::thread ending([&] {
            subscription.Unsubscribe();
            hasReturned = true;
        });
        platform::Event never;
        never.Wait(1); // mostly enough for it to wait
        staying.goOn.Set();
        EXPECT_TRUE(sdk.WaitForCall(takeBack));
        EXPECT_FALSE(support::WaitUntil([&] { return hasReturned.load(); }, 2)) << round;
        sdk.Release("PxnFeatureInvalidationUnregister");
        ending.join();
        sdkThread.join();
        EXPECT_EQ(HubCalls(), (Texts{add, takeBack}));
        EXPECT_TRUE(sdk.Registrations().empty());
    }
}

TEST_F(InvalidationHubTest, LeavesTheRegistrationToARunningCallThatMustNotBeWaitedFor) {
    Staying staying;
    auto subscription = Subscribe(staying.Receiver(), Ending::kAtOnce);
    std::thread sdkThread([&] { Fire(); });
    ASSERT_TRUE(staying.entered.Wait(10000));
    subscription.Unsubscribe();
    EXPECT_FALSE(staying.ended);
    staying.goOn.Set();
    sdkThread.join();
    EXPECT_FALSE(staying.wanted);
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(InvalidationHubTest, KeepsARegistrationThatIsNeededAgainBeforeTheCallEnds) {
    Staying staying;
    auto subscription = Subscribe(staying.Receiver(), Ending::kAtOnce);
    std::thread sdkThread([&] { Fire(); });
    ASSERT_TRUE(staying.entered.Wait(10000));
    subscription.Unsubscribe();
    const auto again = Note("again");
    staying.goOn.Set();
    sdkThread.join();
    EXPECT_EQ(HubCalls(), Texts{add});
    EXPECT_EQ(Called(), Texts{}) << "for an event that was before";
    Fire();
    EXPECT_EQ(Called(), Texts{"again"});
}

TEST_F(InvalidationHubTest, MayBeUsedOnSeveralThreadsAtOnce) {
    constexpr int kRounds = 300;
    std::atomic<bool> stop{false};
    std::atomic<unsigned> calls{0};
    std::thread sdkThread([&] {
        while (!stop) {
            Fire();
        }
    });
    const auto follow = [&](Ending ending) {
        for (int round = 0; round < kRounds; ++round) {
            auto own = std::make_shared<std::atomic<bool>>(true);
            auto subscription = Subscribe(
                [&calls, own](const Invalidation& event) {
                    if (event.IsWanted()) {
                        ++calls;
                    }
                    EXPECT_TRUE(*own);
                },
                ending);
            subscription.Unsubscribe();
            if (ending == Ending::kWaits) {
                *own = false;
            }
        }
    };
    std::thread others[] = {std::thread(follow, Ending::kWaits),
                            std::thread(follow, Ending::kAtOnce),
                            std::thread(follow, Ending::kWaits)};
    for (std::thread& other : others) {
        other.join();
    }
    stop = true;
    sdkThread.join();
    EXPECT_TRUE(sdk.Registrations().empty());
    const unsigned before = calls;
    const auto last = Subscribe([&](const Invalidation&) { ++calls; });
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(calls, before + 1);
}

// ---- contexts ----

std::vector<std::pair<PxnInvalidationCallback, void*>> givenToTheSdk;

TEST_F(InvalidationHubTest, IgnoresContextsThatAreNotItsOwn) {
    givenToTheSdk.clear();
    api.PxnFeatureInvalidationRegister =
        [](PxnHandle, const char*, PxnInvalidationCallback callback, void* context) -> PxnError {
        givenToTheSdk.emplace_back(callback, context);
        return PxnErrSuccess;
    };
    api.PxnFeatureInvalidationUnregister = [](PxnHandle, const char*,
                                              PxnInvalidationCallback) -> PxnError {
        return PxnErrSuccess;
    };
    const auto value = Note("value", Channel::kFeatureValue);
    auto timing = Note("timing", Channel::kTiming);
    ASSERT_EQ(givenToTheSdk.size(), 2u);
    const auto [valueCallback, valueContext] = givenToTheSdk[0];
    const auto [timingCallback, timingContext] = givenToTheSdk[1];
    EXPECT_NE(valueCallback, timingCallback);
    const auto call = [](PxnInvalidationCallback callback, void* context) {
        callback(scripted::CameraHandle(), "Width", context);
    };
    call(valueCallback, timingContext);
    call(valueCallback, nullptr);
    call(valueCallback, this);
    EXPECT_EQ(Called(), Texts{});
    call(valueCallback, valueContext);
    call(timingCallback, timingContext);
    EXPECT_EQ(Called(), (Texts{"value", "timing"}));
    timing.Unsubscribe();
    call(timingCallback, timingContext);
    timing = Note("again", Channel::kTiming);
    call(timingCallback, timingContext);
    EXPECT_EQ(Called(), Texts{});
}

// ---- the library's life ----

TEST_F(InvalidationHubTest, IsSharedByAllAccessesOfALibrary) {
    CPyxenAPIAccess other;
    ASSERT_TRUE(other.Load(nullptr, nullptr));
    EXPECT_EQ(other.Invalidations(), api.Invalidations());
    HubCalls();
    auto theirs = InvalidationHub::Subscribe(
        other, Channel::kFeatureValue, scripted::CameraHandle(), "Width", Ending::kWaits,
        [this](const Invalidation&) { called.push_back("theirs"); });
    auto ours = Note("ours");
    theirs.Unsubscribe();
    other.Unload();
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), Texts{"ours"});
    ours.Unsubscribe();
    EXPECT_EQ(HubCalls(), (Texts{add, takeBack}));
}

TEST_F(InvalidationHubTest, BeginsAnewWithALibraryThatIsLoadedAgain) {
    CPyxenAPIAccess other;
    ASSERT_TRUE(other.Load(nullptr, nullptr));
    const auto theirs = [&] {
        return InvalidationHub::Subscribe(
            other, Channel::kFeatureValue, scripted::CameraHandle(), "Width", Ending::kWaits,
            [this](const Invalidation&) { called.push_back("theirs"); });
    };
    for (int round = 0; round < 2; ++round) {
        auto ourOld = Note("old"); // ended only after the library has gone
        auto theirOld = theirs();
        api.Unload();
        other.Unload();
        ASSERT_TRUE(api.Load(nullptr, nullptr));
        ASSERT_TRUE(other.Load(nullptr, nullptr));
        auto ourNew = Note("new");
        auto theirNew = theirs();
        ourOld.Unsubscribe();
        theirOld.Unsubscribe();
        EXPECT_EQ(Fire(), 1u);
        EXPECT_EQ(Called(), (Texts{"new", "theirs"}));
    }
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(InvalidationHubTest, LeavesTheRegistrationToTheNextOneWithoutAValidAccess) {
    CPyxenAPIAccess other;
    ASSERT_TRUE(other.Load(nullptr, nullptr));
    auto theirs = InvalidationHub::Subscribe(
        other, Channel::kFeatureValue, scripted::CameraHandle(), "Width", Ending::kWaits,
        [this](const Invalidation&) { called.push_back("theirs"); });
    other.Unload();
    HubCalls();
    theirs.Unsubscribe();
    EXPECT_EQ(HubCalls(), Texts{});
    auto ours = Note("ours");
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(Called(), Texts{"ours"});
    ours.Unsubscribe();
    EXPECT_EQ(HubCalls(), Texts{takeBack});
}

// ---- handles that are closed ----

TEST_F(InvalidationHubTest, ForgetsWhatTheSdkDropsWithAHandle) {
    PxnHandle camera = nullptr;
    ASSERT_EQ(api.PxnCameraOpen("cam-ext-1", PxnAccessModeFull, &camera), PxnErrSuccess);
    auto old = Note("old");
    const auto system = InvalidationHub::Subscribe(
        api, Channel::kFeatureValue, PXN_SYSTEM_HANDLE, "EventCameraDiscovery", Ending::kWaits,
        [this](const Invalidation&) { called.push_back("system"); });
    ASSERT_EQ(api.PxnCameraClose(camera), PxnErrSuccess);
    api.Invalidations()->Forget(camera);
    ASSERT_EQ(api.PxnCameraOpen("cam-ext-1", PxnAccessModeFull, &camera), PxnErrSuccess);
    ASSERT_EQ(camera, scripted::CameraHandle()) << "the same handle again";
    const auto next = Note("next");
    HubCalls();
    old.Unsubscribe();
    EXPECT_EQ(HubCalls(), Texts{});
    EXPECT_EQ(Fire(), 1u);
    EXPECT_EQ(sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery"), 1u);
    EXPECT_EQ(Called(), (Texts{"next", "system"}));
}

} // namespace
