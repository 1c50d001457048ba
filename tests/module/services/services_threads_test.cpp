// services_threads_test.cpp - services against one another, opening, closing and callbacks
#include "platform/event.h"
#include "tests/module/services/services_fixture.h"

#include <atomic>
#include <thread>

using namespace pyxen;

namespace {

using scripted::CameraHandle;
using scripted::SystemHandle;

class ServiceThreads : public ServicesFixture {
protected:
    /// From any thread.
    MV_SERVICE_RESULT ReadWidth() {
        const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
        };
        return Services().ReadFeature("Camera", "Width", ignore, nullptr, nullptr);
    }
    /// Calls `call` for each frame that is handed over.
    void OnFrame(std::function<void()> call) {
        onFrame = std::move(call);
        ASSERT_EQ(Grabber().InstPostProcessCallBack(
                      [](uint64_t, uint32_t, void* context) {
                          static_cast<ServiceThreads*>(context)->onFrame();
                      },
                      this),
                  MV_OK);
    }
    void TearDown() override {
        for (const char* const entry :
             {"PxnFeatureIntGet", "PxnFeatureBoolGet", "PxnCameraClose"}) {
            sdk.Release(entry);
        }
        ServicesFixture::TearDown();
    }

private:
    std::function<void()> onFrame;
};

TEST_F(ServiceThreads, ExcludeOneAnother) {
    Open();
    sdk.Hold("PxnFeatureIntGet");
    std::thread first([this] { EXPECT_EQ(ReadWidth(), MV_SERVICE_OK); });
    ASSERT_TRUE(sdk.WaitForCall("PxnFeatureIntGet"));
    std::atomic<bool> isDone{false};
    std::thread second([&] {
        EXPECT_EQ(ReadWidth(), MV_SERVICE_OK);
        isDone = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(isDone);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntGet"}).size(), 1u);
    sdk.Release("PxnFeatureIntGet");
    first.join();
    second.join();
}

TEST_F(ServiceThreads, WaitForACameraThatIsBeingClosed) {
    Open();
    sdk.Hold("PxnCameraClose");
    std::thread closing([this] { EXPECT_EQ(Grabber().CloseActCamera(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall("PxnCameraClose"));
    std::thread reading([this] { EXPECT_EQ(ReadWidth(), MV_SERVICE_NO_CAMERA); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    sdk.Release("PxnCameraClose");
    closing.join();
    reading.join();
}

TEST_F(ServiceThreads, LetClosingWaitForThem) {
    Open();
    sdk.Hold("PxnFeatureBoolGet"); // nothing that closing itself reads
    std::thread reading([this] {
        const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
        };
        EXPECT_EQ(Services().ReadFeature("Camera", "ReverseX", ignore, nullptr, nullptr),
                  MV_SERVICE_OK);
    });
    ASSERT_TRUE(sdk.WaitForCall("PxnFeatureBoolGet"));
    std::thread closing([this] { EXPECT_EQ(Grabber().CloseActCamera(), MV_OK); });
    EXPECT_FALSE(sdk.WaitForCall("PxnCameraClose", 100));
    sdk.Release("PxnFeatureBoolGet");
    reading.join();
    closing.join();
    EXPECT_EQ(ReadWidth(), MV_SERVICE_NO_CAMERA);
}

TEST_F(ServiceThreads, AreRefusedOnTheThreadThatOpensOrCloses) {
    Init();
    std::vector<MV_SERVICE_RESULT> results;
    const auto ask = [&] {
        results.push_back(ReadWidth());
    };
    for (const char* const entry : {"PxnCameraOpen", "PxnCameraClose", "PxnCamerasList"}) {
        sdk.OnCall(entry, ask);
    }
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(results, std::vector{MV_SERVICE_BUSY});
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(results, (std::vector{MV_SERVICE_BUSY, MV_SERVICE_BUSY}));
    results.clear();
    ASSERT_EQ(Grabber().RefreshCameraList(), MV_OK);
    ASSERT_FALSE(results.empty());
    EXPECT_EQ(results.front(), MV_SERVICE_BUSY);
    results.clear();
    sdk.OnCall("PxnShutdown", ask);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(results, std::vector{MV_SERVICE_BUSY});
    sdk.OnCall("PxnStartup", ask);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(results[1], MV_SERVICE_BUSY);
    sdk.ClearHooks();
}

TEST_F(ServiceThreads, AnswerTheReceiversOfUpdatedDialogs) {
    Init();
    std::vector<MV_SERVICE_RESULT> results;
    ReceiverOf<uint32_t> receiver{[&](uint32_t) {
        results.push_back(ReadWidth());
    }};
    ASSERT_EQ(Grabber().InstDialogUpdateCallBack(receiver.Receive, &receiver), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(results, (std::vector{MV_SERVICE_OK, MV_SERVICE_NO_CAMERA}));
    ASSERT_EQ(Grabber().InstDialogUpdateCallBack(nullptr, nullptr), MV_OK);
}

TEST_F(ServiceThreads, NeverWaitInsideAFrameCallback) {
    Prepare(1);
    MV_SERVICE_RESULT free = MV_SERVICE_BUSY;
    MV_SERVICE_RESULT taken = MV_SERVICE_OK;
    OnFrame([&] {
        free = ReadWidth();
        sdk.Hold("PxnFeatureBoolGet");
        std::thread other([this] {
            const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
            };
            EXPECT_EQ(Services().ReadFeature("Camera", "ReverseX", ignore, nullptr, nullptr),
                      MV_SERVICE_OK);
        });
        EXPECT_TRUE(sdk.WaitForCall("PxnFeatureBoolGet"));
        taken = ReadWidth();
        sdk.Release("PxnFeatureBoolGet");
        other.join();
    });
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(free, MV_SERVICE_OK);
    EXPECT_EQ(taken, MV_SERVICE_BUSY);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
}

TEST_F(ServiceThreads, LetTheCameraBeClosedFromUnderAFrameCallback) {
    Prepare(1);
    platform::Event inside;
    std::vector<MV_SERVICE_RESULT> results;
    OnFrame([&] {
        inside.Set();
        EXPECT_TRUE(sdk.WaitForCall("PxnCameraClose"));
        results.push_back(ReadWidth());
        results.push_back(Services().RunCommand("Camera", "AcquisitionStop", 1000, nullptr));
    });
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(inside.Wait(10000));
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.WaitForDeliveries();
    EXPECT_EQ(results, (std::vector{MV_SERVICE_BUSY, MV_SERVICE_BUSY}));
}

TEST_F(ServiceThreads, LetTheCameraBeClosedFromUnderAReceiverOfChanges) {
    Open();
    platform::Event inside;
    std::vector<MV_SERVICE_RESULT> results;
    ReceiverOf<const char*, const char*> receiver{[&](const char*, const char*) {
        inside.Set();
        EXPECT_TRUE(support::WaitUntil([this] { return ReadWidth() == MV_SERVICE_BUSY; }))
            << "closing has not begun";
        uint64_t number = 0;
        results.push_back(ReadWidth());
        results.push_back(Services().Subscribe("Camera", "Height",
                                               ReceiverOf<const char*, const char*>::Receive,
                                               &receiver, &number, nullptr));
    }};
    uint64_t number = 0;
    ASSERT_EQ(
        Services().Subscribe("Camera", "Width", receiver.Receive, &receiver, &number, nullptr),
        MV_SERVICE_OK);
    std::thread firing([this] { sdk.Fire(CameraHandle(), "Width"); });
    ASSERT_TRUE(inside.Wait(10000));
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(results, (std::vector{MV_SERVICE_BUSY, MV_SERVICE_BUSY}))
        << "closing has not waited for the receiver";
    firing.join();
}

TEST_F(ServiceThreads, GiveUpACommandInsideACallbackThatIsWaitedFor) {
    Camera().Find("AcquisitionStop")->doneSequence.assign(10'000'000, false);
    Prepare(1);
    MV_SERVICE_RESULT result = MV_SERVICE_OK;
    OnFrame(
        [&] { result = Services().RunCommand("Camera", "AcquisitionStop", 0xFFFFFFFF, nullptr); });
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(sdk.WaitForCall("PxnFeatureCommandIsDone(camera0, \"AcquisitionStop\")"));
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.WaitForDeliveries();
    EXPECT_EQ(result, MV_SERVICE_TIMED_OUT);
}

TEST_F(ServiceThreads, LetReceiversOfConfigurationChangesCallOperationsDuringDeInit) {
    Open();
    platform::Event inside;
    platform::Event deinitialising;
    std::vector<int> results;
    ReceiverOf<> receiver{[&] {
        inside.Set();
        EXPECT_TRUE(deinitialising.Wait(10000));
        results.push_back(ReadWidth());
        results.push_back(Grabber().RefreshCameraList());
    }};
    ASSERT_EQ(Grabber().InstCamCfgChangeCallBack(receiver.Receive, &receiver), MV_OK);
    std::thread firing([this] { sdk.Fire(SystemHandle(), "EventCameraDiscovery"); });
    ASSERT_TRUE(inside.Wait(10000));
    std::thread ending([&] {
        deinitialising.Set();
        EXPECT_EQ(Grabber().DeInit(), MV_OK);
    });
    firing.join();
    ending.join();
    EXPECT_EQ(results, (std::vector<int>{MV_SERVICE_OK, MV_OK}));
    ASSERT_EQ(Grabber().InstCamCfgChangeCallBack(nullptr, nullptr), MV_OK);
}

TEST_F(ServiceThreads, OfTwoGrabbersDoNotWaitForOneAnother) {
    scripted::Camera second = Camera();
    second.id = "cam-2";
    second.extendedId = "cam-ext-2";
    sdk.Data().cameras.push_back(second);
    Open();
    CMivoraKVNPyxenClass other(nullptr);
    ASSERT_EQ(other.Init(), MV_OK);
    ASSERT_EQ(other.SetActCameraIndex(1), MV_OK);
    ASSERT_EQ(other.OpenActCamera(), MV_OK);
    // Each camera's receiver turns to the other grabber while both cameras are being closed.
    std::atomic<unsigned> inside{0};
    std::atomic<unsigned> refused{0};
    std::atomic<unsigned> done{0};
    const auto isBusy = [](IMivoraModuleServices& services) {
        const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
        };
        return services.ReadFeature("Camera", "Width", ignore, nullptr, nullptr) == MV_SERVICE_BUSY;
    };
    const auto turnTo = [&](CMivoraKVNPyxenClass& turned) {
        ++inside;
        EXPECT_TRUE(support::WaitUntil([&] { return isBusy(turned.Services()); }));
        ++refused;
        EXPECT_TRUE(support::WaitUntil([&] { return refused == 2; }));
        EXPECT_EQ(turned.CloseActCamera(), MV_BUSY);
        EXPECT_EQ(turned.DeInit(), MV_BUSY);
        ++done;
        EXPECT_TRUE(support::WaitUntil([&] { return done == 2; })) << "the other one may be closed";
    };
    using Receiver = ReceiverOf<const char*, const char*>;
    Receiver first{[&](const char*, const char*) {
        turnTo(other);
    }};
    Receiver last{[&](const char*, const char*) {
        turnTo(Grabber());
    }};
    uint64_t number = 0;
    ASSERT_EQ(Services().Subscribe("Camera", "Width", Receiver::Receive, &first, &number, nullptr),
              MV_SERVICE_OK);
    ASSERT_EQ(
        other.Services().Subscribe("Camera", "Width", Receiver::Receive, &last, &number, nullptr),
        MV_SERVICE_OK);
    std::vector<std::thread> threads;
    threads.emplace_back([this] { sdk.Fire(CameraHandle(0), "Width"); });
    threads.emplace_back([this] { sdk.Fire(CameraHandle(1), "Width"); });
    ASSERT_TRUE(support::WaitUntil([&] { return inside == 2; }));
    threads.emplace_back([this] { EXPECT_EQ(Grabber().CloseActCamera(), MV_OK); });
    threads.emplace_back([&] { EXPECT_EQ(other.CloseActCamera(), MV_OK); });
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(ServiceThreads, HoldAgainstACameraThatOpensAndCloses) {
    Init();
    std::atomic<bool> isOver{false};
    std::atomic<unsigned> served{0};
    std::vector<std::thread> threads;
    const auto repeat = [&](auto service) {
        threads.emplace_back([&, service] {
            while (!isOver) {
                const MV_SERVICE_RESULT result = service();
                EXPECT_TRUE(result == MV_SERVICE_OK || result == MV_SERVICE_NO_CAMERA ||
                            result == MV_SERVICE_NOT_INITIALISED)
                    << result;
                served += result == MV_SERVICE_OK ? 1u : 0u;
            }
        });
    };
    std::atomic<unsigned> changes{0};
    ReceiverOf<const char*, const char*> change{[&](const char*, const char*) {
        ++changes;
        ReadWidth();
    }};
    const auto listed = [](const MV_FEATURE_DESCRIPTION*, void*) {
    };
    const auto camera = [](const MV_CAMERA_DESCRIPTION*, void*) {
    };
    repeat([&] { return ReadWidth(); });
    repeat([&] { return Services().ListFeatures("Camera", listed, nullptr, nullptr); });
    repeat([&] { return Services().ListCameras(camera, nullptr, nullptr); });
    repeat([&] {
        const MV_FEATURE_VALUE value = IntegerValue(656);
        return Services().WriteFeature("Camera", "Width", &value, nullptr, nullptr, nullptr);
    });
    repeat([&] {
        uint64_t number = 0;
        const MV_SERVICE_RESULT result =
            Services().Subscribe("Camera", "Width", change.Receive, &change, &number, nullptr);
        if (result == MV_SERVICE_OK) {
            Services().Unsubscribe(number, nullptr);
        }
        return result;
    });
    threads.emplace_back([&] {
        while (!isOver) {
            sdk.Fire(CameraHandle(), "Width");
            std::this_thread::yield();
        }
    });
    for (unsigned round = 0; round < 30; ++round) {
        EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
        const unsigned before = served;
        EXPECT_TRUE(support::WaitUntil([&] { return served > before + 5; }));
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
        if (round % 5 == 4) {
            EXPECT_EQ(Grabber().DeInit(), MV_OK);
            EXPECT_EQ(Grabber().Init(), MV_OK);
            EXPECT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
        }
    }
    isOver = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(sdk.CountOpenCameras(), 0u);
}

} // namespace
