// The way of an invalidation from the SDK to a dialog.
#include "platform/event.h"
#include "platform/thread.h"
#include "sync/feature_cache.h"
#include "tests/module/sdk/loaded_api.h"
#include "ui/feature_registrations.h"
#include "ui/invalidation_receiver.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

struct Posted {
    std::uint32_t message;
    PxnHandle handle;
    std::string name;

    bool operator==(const Posted&) const = default;
};

class Invalidations : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        ASSERT_TRUE(cache.Init("Camera", &api, scripted::CameraHandle(), nullptr));
        sdk.ClearCalls();
    }
    void TearDown() override { receiver->Close(); }

    FeatureLeaf Leaf(const std::string& name) {
        FeatureLeaf leaf;
        leaf.cache = &cache;
        leaf.handle = scripted::CameraHandle();
        leaf.moduleName = "Camera";
        leaf.name = name;
        leaf.path = "/Camera/Image/" + name;
        return leaf;
    }
    std::vector<Posted> Take() { return std::exchange(posted, {}); }
    Posted Message(std::uint32_t number, const char* name) {
        return {number, scripted::CameraHandle(), name};
    }

    FeatureCache cache;
    std::vector<Posted> posted;
    std::shared_ptr<InvalidationReceiver> receiver = std::make_shared<InvalidationReceiver>(
        &sink, [this](std::uint32_t message, PxnHandle handle, const char* name) {
            posted.push_back({message, handle, name});
        });
    FeatureRegistrations registrations{api, receiver, &sink};
};

TEST_F(Invalidations, ArePostedByKind) {
    const std::pair<InvalidationKind, std::uint32_t> kinds[] = {
        {InvalidationKind::kValue, 0x8000},
        {InvalidationKind::kSync, 0x8001},
        {InvalidationKind::kBufferFormat, 0x8002},
        {InvalidationKind::kTiming, 0x8003}};
    for (const auto& [kind, message] : kinds) {
        registrations.Register(kind, Leaf("Width"));
        EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Width"), 1u);
        EXPECT_EQ(Take(), (std::vector<Posted>{Message(message, "Width")}));
        registrations.UnregisterAll(kind);
        EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Width"), 0u);
    }
    const std::string tag = "1 CKVNPyxenFeatureCtrlDialog::";
    EXPECT_EQ(sink.Take(),
              (Texts{tag + "RegisterDlgInvalidationFeatures: Registering Width",
                     tag + "InvalidationCallback: /Camera/Image/Width",
                     tag + "UnregisterDlgInvalidationFeatures: Unregistering Width",
                     tag + "RegisterSyncInvalidationFeatures: Registering Width",
                     tag + "SyncInvalidationCallback: /Camera/Image/Width",
                     tag + "UnregisterSyncInvalidationFeatures: Unregistering Width",
                     tag + "RegisterBufferFormatInvalidationFeatures: Registering Width",
                     tag + "BufferFormatInvalidationCallback: /Camera/Image/Width",
                     tag + "UnegisterBufferFormatInvalidationFeatures: Unregistering Width",
                     tag + "RegisterExtNotificationInvalidationFeatures: Registering Width",
                     tag + "ExtNotificationInvalidationCallback: /Camera/Image/Width",
                     tag + "UnegisterExtNotificationInvalidationFeatures: Unregistering Width"}));
}

TEST_F(Invalidations, AreLoggedButNotPostedWhileSuppressed) {
    registrations.Register(InvalidationKind::kSync, Leaf("Width"));
    registrations.Register(InvalidationKind::kBufferFormat, Leaf("Width"));
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    sink.Take();
    receiver->Suppress(true, false);
    sdk.Fire(scripted::CameraHandle(), "Width");
    EXPECT_EQ(Take(), (std::vector<Posted>{Message(0x8001, "Width"), Message(0x8000, "Width")}));
    receiver->Suppress(false, true);
    sdk.Fire(scripted::CameraHandle(), "Width");
    EXPECT_EQ(Take(), (std::vector<Posted>{Message(0x8002, "Width"), Message(0x8000, "Width")}));
    EXPECT_EQ(sink.Take().size(), 6u);
    receiver->Suppress(false, false);
    sdk.Fire(scripted::CameraHandle(), "Width");
    EXPECT_EQ(Take().size(), 3u);
}

TEST_F(Invalidations, DoNothingOnceTheReceiverIsClosed) {
    for (const InvalidationKind kind : {InvalidationKind::kValue, InvalidationKind::kSync}) {
        registrations.Register(kind, Leaf("Width"));
    }
    receiver->Close();
    sink.Take();
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Width"), 2u);
    EXPECT_EQ(Take(), std::vector<Posted>{});
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(Invalidations, NameTheFeatureAsItsRowDoes) {
    FeatureLeaf unknown = Leaf("Height");
    unknown.path = "<not available>";
    registrations.Register(InvalidationKind::kValue, unknown);
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    sink.Take();
    sdk.Fire(scripted::CameraHandle(), "Height");
    sdk.Fire(scripted::CameraHandle(), "Width");
    const std::string tag = "1 CKVNPyxenFeatureCtrlDialog::InvalidationCallback: ";
    EXPECT_EQ(sink.Take(), (Texts{tag + "<not available>", tag + "/Camera/Image/Width"}));
}

TEST_F(Invalidations, MayComeOnAnotherThreadWhileTheReceiverCloses) {
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    registrations.Register(InvalidationKind::kSync, Leaf("Width"));
    std::atomic<bool> stop{false};
    platform::Thread thread = platform::Thread::Start(
        [](void* end) {
            do {
                scripted::GetSdk().Fire(scripted::CameraHandle(), "Width");
            } while (!*static_cast<std::atomic<bool>*>(end));
        },
        &stop, 0);
    ASSERT_TRUE(thread.IsJoinable());
    registrations.Register(InvalidationKind::kValue, Leaf("Height"));
    registrations.UnregisterAll(InvalidationKind::kSync);
    receiver->Suppress(true, true);
    receiver->Close();
    const std::size_t count = posted.size(); // nobody posts any more
    registrations.UnregisterAll(InvalidationKind::kValue);
    stop = true;
    thread.Join();
    EXPECT_EQ(posted.size(), count);
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(Invalidations, AreTakenBackOneByOne) {
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    registrations.Register(InvalidationKind::kValue, Leaf("Height"));
    registrations.Unregister(InvalidationKind::kValue, Leaf("Width"));
    registrations.Unregister(InvalidationKind::kValue, Leaf("Width"));
    ASSERT_EQ(sdk.Registrations().size(), 1u);
    EXPECT_EQ(sdk.Registrations()[0].feature, "Height");
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Height"), 1u);
    EXPECT_EQ(Take(), (std::vector<Posted>{Message(0x8000, "Height")}));
}

TEST_F(Invalidations, PassTheSdksOwnTextOn) {
    struct Given {
        PxnInvalidationCallback callback;
        void* context;
    };
    static std::vector<Given> given;
    given.clear();
    api.PxnFeatureInvalidationRegister =
        [](PxnHandle, const char*, PxnInvalidationCallback callback, void* context) -> PxnError {
        given.push_back({callback, context});
        return PxnErrSuccess;
    };
    const char name[] = "Width";
    const void* passed = nullptr;
    const auto other = std::make_shared<InvalidationReceiver>(
        nullptr, [&](std::uint32_t, PxnHandle, const char* text) { passed = text; });
    FeatureRegistrations others{api, other, nullptr};
    for (const InvalidationKind kind :
         {InvalidationKind::kValue, InvalidationKind::kSync, InvalidationKind::kBufferFormat,
          InvalidationKind::kTiming}) {
        others.Register(kind, Leaf("Width"));
        passed = nullptr;
        given.back().callback(scripted::CameraHandle(), name, given.back().context);
        EXPECT_EQ(passed, name);
    }
    EXPECT_EQ(given.size(), 4u);
}

TEST_F(Invalidations, AskNothingOfAModuleThatIsClosed) {
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    cache.Clear();
    api.Invalidations()->Forget(scripted::CameraHandle()); // as the grabber does on closing
    sdk.ClearCalls();
    sink.Take();
    registrations.Register(InvalidationKind::kValue, Leaf("Height"));
    registrations.UnregisterAll(InvalidationKind::kValue);
    EXPECT_EQ(sdk.Calls(), Texts{});
    const std::string tag = "1 CKVNPyxenFeatureCtrlDialog::";
    EXPECT_EQ(sink.Take(),
              (Texts{tag + "RegisterDlgInvalidationFeatures: Registering Height",
                     tag + "UnregisterDlgInvalidationFeatures: Unregistering Width",
                     tag + "UnregisterDlgInvalidationFeatures: Unregistering Height"}));
}

/// Keeps each line waiting until it may go on.
class WaitingSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override {
        entered.Set();
        wasLetGo = goOn.Wait(5000);
    }
    void WriteError(const char*) override {}

    platform::Event entered;
    platform::Event goOn;
    std::atomic<bool> wasLetGo{true}; // false when a wait has timed out
};

// A sink may show its lines in a window, so that this thread is needed for the call to go on.
class DelayedInvalidations : public Invalidations {
protected:
    /// Does something while a call waits in the sink; nothing may be posted afterwards.
    void DuringACall(const std::function<void(FeatureRegistrations&, InvalidationReceiver&)>& act) {
        const auto dialog = std::make_shared<InvalidationReceiver>(
            &waiting, [this](std::uint32_t message, PxnHandle handle, const char* name) {
                posted.push_back({message, handle, name});
            });
        FeatureRegistrations followed{api, dialog, nullptr};
        followed.Register(InvalidationKind::kValue, Leaf("Width"));
        std::thread thread([&] { sdk.Fire(scripted::CameraHandle(), "Width"); });
        EXPECT_TRUE(waiting.entered.Wait(10000));
        act(followed, *dialog);
        waiting.goOn.Set();
        thread.join();
        EXPECT_TRUE(waiting.wasLetGo) << "the call was waited for";
        EXPECT_EQ(Take(), std::vector<Posted>{});
        dialog->Close();
    }

    WaitingSink waiting;
};

TEST_F(DelayedInvalidations, AreNotWaitedForWhenTheyAreTakenBack) {
    DuringACall([](FeatureRegistrations& followed, InvalidationReceiver&) {
        followed.UnregisterAll(InvalidationKind::kValue);
    });
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(DelayedInvalidations, AreNotWaitedForWhenTheReceiverCloses) {
    DuringACall([](FeatureRegistrations&, InvalidationReceiver& dialog) { dialog.Close(); });
}

/// Three dialogs that follow the same features.
class SharedInvalidations : public Invalidations {
protected:
    struct Dialog {
        explicit Dialog(SharedInvalidations& test, const std::string& name)
            : receiver(std::make_shared<InvalidationReceiver>(
                  nullptr, [&test, name](std::uint32_t, PxnHandle,
                                         const char*) { test.told.push_back(name); })),
              registrations(test.api, receiver, nullptr) {}
        ~Dialog() { receiver->Close(); }

        std::shared_ptr<InvalidationReceiver> receiver;
        FeatureRegistrations registrations;
    };

    Texts Told(const std::string& feature) {
        told.clear();
        sdk.Fire(scripted::CameraHandle(), feature);
        return told;
    }

    Texts told;
    Dialog first{*this, "first"};
    Dialog second{*this, "second"};
    Dialog third{*this, "third"};
};

TEST_F(SharedInvalidations, AreTakenBackForOneDialogOnly) {
    for (Dialog* const dialog : {&first, &second, &third}) {
        dialog->registrations.Register(InvalidationKind::kValue, Leaf("Width"));
        dialog->registrations.Register(InvalidationKind::kSync, Leaf("Width"));
        dialog->registrations.Register(InvalidationKind::kValue, Leaf("Height"));
    }
    first.registrations.Unregister(InvalidationKind::kValue, Leaf("Width"));
    second.registrations.Unregister(InvalidationKind::kSync, Leaf("Width"));
    third.registrations.Unregister(InvalidationKind::kValue, Leaf("Height"));
    Texts width = Told("Width");
    std::sort(width.begin(), width.end());
    EXPECT_EQ(width, (Texts{"first", "second", "third", "third"}));
    EXPECT_EQ(Told("Height"), (Texts{"first", "second"}));
    second.registrations.UnregisterAll(InvalidationKind::kValue);
    first.registrations.Disconnect();
    third.registrations.Disconnect();
    EXPECT_TRUE(sdk.Registrations().empty());
}

TEST_F(SharedInvalidations, SurviveTheEndOfADialogThatWasRefused) {
    sdk.Fail("PxnFeatureInvalidationRegister", PxnErrTimeout);
    first.registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    second.registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    first.registrations.UnregisterAll(InvalidationKind::kValue);
    EXPECT_EQ(Told("Width"), (Texts{"second"}));
    second.registrations.UnregisterAll(InvalidationKind::kValue);
    EXPECT_EQ(Told("Width"), Texts{});
}

TEST_F(Invalidations, AreTakenBackBeforeTheLibraryGoes) {
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    registrations.Register(InvalidationKind::kTiming, Leaf("ExposureTime"));
    sink.Take();
    registrations.Disconnect();
    EXPECT_TRUE(sdk.Registrations().empty());
    EXPECT_EQ(sink.Take(), Texts{});
    api.Unload();
    sdk.ClearCalls();
    registrations.UnregisterAll(InvalidationKind::kValue);
    registrations.UnregisterAll(InvalidationKind::kTiming);
    const std::string tag = "1 CKVNPyxenFeatureCtrlDialog::";
    EXPECT_EQ(sink.Take(),
              (Texts{tag + "UnregisterDlgInvalidationFeatures: Unregistering Width",
                     tag + "UnegisterExtNotificationInvalidationFeatures: Unregistering "
                           "ExposureTime"}));
    EXPECT_EQ(sdk.Calls(), Texts{});
}

} // namespace
