// The way of an invalidation from the SDK to a dialog.
#include "platform/thread.h"
#include "tests/module/sdk/loaded_api.h"
#include "ui/feature_registrations.h"
#include "ui/invalidation_receiver.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace {

struct Posted {
    std::uint32_t message;
    PxnHandle handle;
    std::string name;

    bool operator==(const Posted&) const = default;
};

class Invalidations : public LoadedApi {
protected:
    void TearDown() override { receiver->Close(); }

    FeatureLeaf Leaf(const std::string& name) {
        FeatureLeaf leaf;
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

    std::vector<Posted> posted;
    std::shared_ptr<InvalidationReceiver> receiver = InvalidationReceiver::Open(
        &sink, [this](std::uint32_t message, PxnHandle handle, const char* name) {
            posted.push_back({message, handle, name});
        });
    FeatureRegistrations registrations{api, *receiver, &sink};
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
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    void* const context = receiver->Context();
    receiver->Close();
    sink.Take();
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "Width"), 1u);
    InvalidationReceiver::SyncInvalidationCallback(scripted::CameraHandle(), "Width", context);
    InvalidationReceiver::InvalidationCallback(scripted::CameraHandle(), "Width", nullptr);
    EXPECT_EQ(Take(), std::vector<Posted>{});
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(Invalidations, GiveNoNameForWhatIsNotKnown) {
    InvalidationReceiver::InvalidationCallback(scripted::CameraHandle(), "Width",
                                               receiver->Context());
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    receiver->ForgetAll();
    sdk.Fire(scripted::CameraHandle(), "Width");
    const Texts lines = sink.Take();
    EXPECT_EQ(lines.front(), "1 CKVNPyxenFeatureCtrlDialog::InvalidationCallback: <not available>");
    EXPECT_EQ(lines.back(), lines.front());
}

TEST_F(Invalidations, MayComeOnAnotherThreadWhileTheReceiverCloses) {
    std::atomic<bool> stop{false};
    std::pair<std::atomic<bool>*, void*> given{&stop, receiver->Context()};
    platform::Thread thread = platform::Thread::Start(
        [](void* argument) {
            const auto& [end, context] =
                *static_cast<std::pair<std::atomic<bool>*, void*>*>(argument);
            do {
                InvalidationReceiver::InvalidationCallback(scripted::CameraHandle(), "Width",
                                                           context);
            } while (!*end);
        },
        &given, 0);
    ASSERT_TRUE(thread.IsJoinable());
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    receiver->Suppress(true, true);
    receiver->Close();
    const std::size_t count = posted.size(); // nobody posts any more
    receiver.reset();
    stop = true;
    thread.Join();
    EXPECT_EQ(posted.size(), count);
    receiver = InvalidationReceiver::Open(nullptr, [](std::uint32_t, PxnHandle, const char*) {});
}

TEST_F(Invalidations, AreTakenBackOneByOne) {
    registrations.Register(InvalidationKind::kValue, Leaf("Width"));
    registrations.Register(InvalidationKind::kValue, Leaf("Height"));
    registrations.Unregister(InvalidationKind::kValue, Leaf("Width"));
    registrations.Unregister(InvalidationKind::kValue, Leaf("Width"));
    ASSERT_EQ(sdk.Registrations().size(), 1u);
    EXPECT_EQ(sdk.Registrations()[0].feature, "Height");
    EXPECT_EQ(sdk.Registrations()[0].context, receiver->Context());
}

TEST_F(Invalidations, PassTheSdksOwnTextOn) {
    const char name[] = "Width";
    const void* passed = nullptr;
    const auto other = InvalidationReceiver::Open(
        nullptr, [&](std::uint32_t, PxnHandle, const char* text) { passed = text; });
    for (const PxnInvalidationCallback callback :
         {InvalidationReceiver::InvalidationCallback,
          InvalidationReceiver::SyncInvalidationCallback,
          InvalidationReceiver::BufferFormatInvalidationCallback,
          InvalidationReceiver::ExtNotificationInvalidationCallback}) {
        passed = nullptr;
        callback(scripted::CameraHandle(), name, other->Context());
        EXPECT_EQ(passed, name);
    }
    other->Close();
}

/// Three dialogs that follow the same features.
class SharedInvalidations : public Invalidations {
protected:
    struct Dialog {
        explicit Dialog(SharedInvalidations& test, const std::string& name)
            : receiver(InvalidationReceiver::Open(
                  nullptr, [&test, name](std::uint32_t, PxnHandle,
                                         const char*) { test.told.push_back(name); })),
              registrations(test.api, *receiver, nullptr) {}
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
