// dialog_race_test.cpp - what a feature control dialog does while its camera is unplugged
//
// Its tree, readers and registrations, which are the same with windows and without. The test's
// thread is the dialog's.
#include "race_fixture.h"
#include "sync/feature_cache.h"
#include "ui/feature_reader.h"
#include "ui/feature_registrations.h"
#include "ui/feature_tree.h"
#include "ui/invalidation_receiver.h"

#include "platform/mutex.h"
#include "tests/support/wait_until.h"

#include <atomic>
#include <string>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

/// What a dialog has while it is open.
class DialogParts {
public:
    DialogParts(CMivoraKVNPyxenClass& grabberToShow, std::atomic<std::uint64_t>& postedSoFar)
        : grabber(grabberToShow), posted(postedSoFar) {}
    ~DialogParts() {
        registrations.Disconnect();
        receiver->Close();
        isClosed = true; // from now on nothing may be posted
    }

    /// Builds the tree of a module.
    void Show(RaceRandom& random) {
        // The camera's module, which has most features, is shown less often.
        const std::uint32_t count = grabber.GetNumFeatureCaches();
        const bool isCamera = Draw(random, 8) == 0;
        for (std::uint32_t index = 0; index < count; ++index) {
            FeatureCache& cache = *grabber.GetFeatureCache(index);
            const char* const name = cache.GetModuleName();
            if (name && (std::string(name) == "Camera") == isCamera) {
                tree.AddModule(cache);
            }
        }
    }
    void Follow(InvalidationKind kind, const char* name) {
        FeatureCache* const cache = grabber.GetFeatureCacheByName("Camera");
        ASSERT_TRUE(cache);
        const PxnFeatureInfo* const info = cache->Find(name);
        ASSERT_TRUE(info);
        FeatureLeaf leaf;
        leaf.cache = cache;
        leaf.handle = cache->GetHandle();
        leaf.moduleName = "Camera";
        leaf.name = name;
        leaf.path = cache->GetFeaturePath(name);
        leaf.sdkName = info->name;
        leaf.flags = info->featureFlags;
        registrations.Register(kind, leaf);
        followed.emplace_back(kind, leaf);
    }
    void FollowSome(RaceRandom& random) {
        static constexpr const char* kNames[] = {
            "Width",       "Height",       "OffsetX",
            "PixelFormat", "ExposureTime", "AcquisitionFrameRate",
            "PayloadSize", "Gain",         "TestPattern"};
        for (const char* const name : kNames) {
            if (Draw(random, 3) != 0) {
                Follow(static_cast<InvalidationKind>(Draw(random, 4)), name);
            }
        }
    }
    /// Reads what has changed, and something else.
    void Serve(RaceRandom& random) {
        for (const std::string& name : Take()) {
            Read(name.c_str());
        }
        if (!followed.empty()) {
            const auto& [kind, leaf] = followed[Draw(random, followed.size())];
            Read(leaf.name.c_str());
            if (Draw(random, 3) == 0) {
                registrations.Unregister(kind, leaf);
            }
            if (Draw(random, 3) == 0) {
                receiver->Suppress(Draw(random, 2) == 0, Draw(random, 2) == 0);
            }
        }
    }
    void Unfollow() {
        for (const InvalidationKind kind :
             {InvalidationKind::kValue, InvalidationKind::kSync, InvalidationKind::kBufferFormat,
              InvalidationKind::kTiming}) {
            registrations.UnregisterAll(kind);
        }
    }

private:
    void Read(const char* name) {
        FeatureCache* const cache = grabber.GetFeatureCacheByName("Camera");
        const PxnFeatureInfo* const info = cache ? cache->Find(name) : nullptr;
        if (info) {
            const Feature feature = cache->GetFeature(*info);
            reader.ToEdit(feature);
            reader.ToRefresh(feature);
            reader.RangeText(feature, info->unit);
        }
    }
    std::vector<std::string> Take() {
        const platform::MutexLock lock(mutex);
        return std::exchange(queue, {});
    }
    void Post(const char* name) {
        EXPECT_FALSE(isClosed) << "the dialog is closed";
        ++posted;
        const platform::MutexLock lock(mutex);
        queue.push_back(name);
    }

    CMivoraKVNPyxenClass& grabber;
    std::atomic<std::uint64_t>& posted;
    std::atomic<bool> isClosed{false};
    platform::Mutex mutex;
    std::vector<std::string> queue GUARDED_BY(mutex);
    FeatureTree tree;
    const FeatureReader reader{Logger(grabber.GetLogSink())};
    const std::shared_ptr<InvalidationReceiver> receiver = std::make_shared<InvalidationReceiver>(
        Logger(grabber.GetLogSink()),
        [this](std::uint32_t, PxnHandle, const char* name) { Post(name); });
    FeatureRegistrations registrations{grabber.Api(), receiver, Logger(grabber.GetLogSink())};
    std::vector<std::pair<InvalidationKind, FeatureLeaf>> followed;
};

class DialogRace : public RaceFixture {
protected:
    void SetUp() override {
        RaceFixture::SetUp();
        grabber = MakeGrabber();
        Open(*grabber);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        grabber.reset();
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    void UseDialog(RaceRandom& random) {
        DialogParts parts(*grabber, posted);
        parts.Show(random);
        parts.FollowSome(random);
        for (unsigned count = 0; count < 4; ++count) {
            Hesitate(random);
            parts.Serve(random);
        }
        if (Draw(random, 2) == 0) {
            parts.Unfollow();
        }
    }
    void UseCamera(RaceRandom& random) {
        for (unsigned count = 0; count < 6; ++count) {
            const std::string number = std::to_string(16 + 4 * Draw(random, 12));
            TryControl("set A " + std::string(Draw(random, 2) == 0 ? "Width " : "ExposureTime ") +
                       number);
            Hesitate(random);
        }
        if (Draw(random, 2) == 0) {
            TryControl("unplug A");
            isUnplugged = true;
        }
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::atomic<std::uint64_t> posted{0};
    std::atomic<bool> isUnplugged{false};
};

TEST_F(DialogRace, ShowsAndFollowsAgainstUnplugging) {
    RunRounds([this](RaceRandom& random) {
        Contest(random, {[this](RaceRandom& own) { UseDialog(own); },
                         [this](RaceRandom& own) {
                             UseCamera(own);
                         }});
        if (isUnplugged) {
            isUnplugged = false;
            Reopen(*grabber, "A", 0);
        }
    });
    // The dialogs of few rounds may all have closed before anything was set.
    DialogParts last(*grabber, posted);
    last.Follow(InvalidationKind::kValue, "Width");
    const std::uint64_t before = posted;
    Ask("set A Width 64");
    Ask("set A Width 32");
    EXPECT_TRUE(support::WaitUntil([&] { return posted > before; }));
}

} // namespace
