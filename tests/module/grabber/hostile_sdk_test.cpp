// hostile_sdk_test.cpp - whole sessions with an SDK that answers nonsense
//
// The sanitizers find what is read or written where nothing is; the tests check that every session
// ends, that it leaves nothing behind, and that the same process works again with sound answers.
#include "pxnc_entries.h"
#include "serial/cmd_kvn_pyxen.h"
#include "sync/feature_writer.h"
#include "tests/module/acquisition/snap_fixture.h"
#include "tests/module/services/services_user.h"
#include "ui/device_discovery.h"
#include "ui/device_row.h"
#include "ui/feature_reader.h"
#include "ui/feature_registrations.h"
#include "ui/feature_tree.h"
#include "ui/feature_value_text.h"
#include "ui/invalidation_receiver.h"
#include "ui/slider_scale.h"
#include "ui/value_text.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

using scripted::CountNonsense;
using scripted::Model;
using scripted::NumberNonsense;
using scripted::TextNonsense;

struct Hostility {
    const char* name;
    std::function<void(Model&)> apply;

    friend std::ostream& operator<<(std::ostream& stream, const Hostility& hostility) {
        return stream << hostility.name;
    }
};

Hostility Garbled(const char* name, TextNonsense kind) {
    return {name, [kind](Model& model) {
                model.nonsense.texts = kind;
            }};
}

Hostility Counts(const char* name, CountNonsense kind) {
    return {name, [kind](Model& model) {
                model.nonsense.counts = kind;
            }};
}

Hostility Numbers(const char* name, NumberNonsense kind) {
    return {name, [kind](Model& model) {
                model.nonsense.numbers = kind;
            }};
}

Hostility Size(const char* name, const char* feature, std::int64_t value) {
    return {name, [=](Model& model) {
                model.cameras[0][feature].intValue = value;
            }};
}

/// One host's use of all that the module has.
class HostileSession : public SnapFixture {
protected:
    void SetUp() override {
        SnapFixture::SetUp();
        directory.Write(
            "rules.json",
            R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"ReverseX","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"ReverseX"}]},{"ModuleName":"Camera","FeatureName":"PixelFormat","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"PixelFormat"}]}]})");
        Model& model = sdk.Data();
        model.completeWaitsAtOnce = true;
        scripted::Camera& camera = model.cameras[0];
        for (const char* const name : {"Width", "DeviceUserID", "PixelFormat"}) {
            camera[name].isStreamable = true;
        }
        camera["PixelFormat"].selected = {"DeviceUserID"};
        camera.localDevice.Put(scripted::BoolFeature("ReverseX", true));
        camera.localDevice.Put(*camera.Find("PixelFormat"));
        camera.Put(scripted::RawFeature("LookUpTable", {'a', 'b', 'c'}));
        camera.SetRegister32(0x61124, 1); // ready to send: without it, a write waits for ever
        camera["PixelFormat"].text = "Mono12p";
        camera["Width"].intValue = 32;
        camera["Height"].intValue = 4;
        camera["PayloadSize"].intValue = 32 * 4 * 3 / 2;
        model.system.Put(scripted::IntFeature("EventInterfaceDiscovery", 0, 0, 0xFFFF));
        WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
        sound = model;
    }

    /// From initialising to de-initialising, going on after every failure. True when all that a
    /// sound SDK allows has worked. The services may be left out, which take their time.
    bool UseEverything(bool withServices = true) {
        bool worked = Grabber().Init() == MV_OK;
        Grabber().GetDriverVersion();
        Grabber().LoadGrabberConfig();
        worked &= Grabber().RefreshCameraList() == MV_OK;
        for (CMivoraCamera* camera = Grabber().GetFirstCamera(); camera;
             camera = camera->GetNext()) {
            worked &= camera->GetCameraName() != nullptr;
        }
        Grabber().SetActCameraIndex(-1);
        worked &= Grabber().SetActCameraIndex(0) == MV_OK;
        worked &= Grabber().OpenActCamera() == MV_OK;
        UseParameters();
        UseDialogs();
        if (withServices) {
            ServicesUser user(Grabber().Services(), directory.PathOf("settings.json"));
            worked &= user.UseAll();
        }
        worked &= UseSerialPort();
        worked &= Grabber().PrepareFrameBuffers(3) == MV_OK;
        for (const uint32_t mode : {1u, 2u, 3u, 4u, 5u}) {
            worked &= Grabber().Snap(mode) == MV_OK;
            DeliverFrames();
            UseBuffers();
            worked &= Grabber().StopSnap() == MV_OK;
            EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        }
        Grabber().SaveCameraModeConfig();
        Grabber().SaveGrabberConfig();
        worked &= Grabber().CloseActCamera() == MV_OK;
        EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
        worked &= Grabber().DeInit() == MV_OK;
        return worked;
    }

    /// What is left when nobody uses the SDK any more.
    void ExpectNothingLeft() {
        EXPECT_EQ(sdk.StartupCount(), 0);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.Registrations(), std::vector<scripted::Registration>{});
    }

    /// Has `run` called on the calling thread before the SDK does anything.
    void BeforeEveryCall(const std::function<void()>& run) {
#define HOSTILE_SDK_ENTRY(name) #name,
        for (const char* const entry : {PXN_ENTRIES(HOSTILE_SDK_ENTRY)}) {
            sdk.OnCall(entry, run);
        }
#undef HOSTILE_SDK_ENTRY
    }

    virtual void DeliverFrames() {
        for (unsigned frame = 0; frame < 3; ++frame) {
            sdk.DeliverOnThread(frame, PxnFrameStatusComplete, frame, 0xA5);
        }
        sdk.WaitForDeliveries();
    }

    void AnswerSoundly() {
        sdk.Edit([this](Model& model) { model = sound; });
    }

private:
    void UseParameters() {
        for (const uint32_t id : {MVGF_FRAME_BUFFER_COUNT, MVGF_ACQUISITION_CAPABILITIES,
                                  MVGF_TIMER_VALUES, MVGF_TIMER_ENABLED, MVGF_TIME_BASE, MVGF_GAIN,
                                  MVGF_OFFSET, MVGF_STROBE_VALUES, MVGF_FRAMES_RECEIVED}) {
            uint64_t one = 0;
            uint64_t two = 0;
            uint64_t limits[4] = {};
            Grabber().GetGrabberParamLimits(id, &limits[0], &limits[1], &limits[2], &limits[3]);
            Grabber().GetGrabberParam(id, &one, &two);
            Grabber().SetGrabberParam(id, one, two);
            Grabber().SetGrabberParam(id, limits[1], limits[3]);
        }
        uint32_t interval = 0;
        Grabber().GetExposureTime(&interval);
        Grabber().GetFrameInterval(&interval);
        uint64_t exposure = 0;
        uint64_t frame = 0;
        Grabber().GetTimerMicroseconds(&exposure, &frame);
        Grabber().SetTimerMicroseconds(exposure, frame);
    }

    void UseBuffers() {
        uint64_t index = 0;
        while (Grabber().GetLastFilledBuffer(&index) == MV_OK) {
            EXPECT_LT(index, 3u);
            Grabber().GetFrameBuffer(index);
            Grabber().ReleaseFrameBuffer(index);
        }
    }

    bool UseSerialPort() {
        CCmdKVNPyxen channel(&Grabber(), Grabber().SerialMutex());
        channel.EnumeratePorts();
        for (const SerialPortEntry& port : channel.GetPorts()) {
            for (const SerialField field : {SerialField::kBaud, SerialField::kParity,
                                            SerialField::kByteSize, SerialField::kStopBits}) {
                AllowedSerialChoices(field, port.capability);
            }
        }
        SerialSettings settings;
        std::snprintf(settings.portName, sizeof settings.portName, "PYXENSERIALPORT2");
        channel.SetSettings(settings);
        const bool worked = channel.Open() == MV_OK;
        uint64_t count = 0;
        std::vector<uint8_t> bytes(64);
        channel.ReadByte(bytes.data(), &count);
        EXPECT_LE(count, 1u);
        channel.ReadBuffer(bytes.data(), bytes.size(), &count);
        EXPECT_LE(count, bytes.size());
        channel.WriteBuffer(bytes.data(), bytes.size(), &count);
        EXPECT_LE(count, bytes.size());
        channel.Purge(~0u);
        channel.Close();
        return worked;
    }

    /// The dialogs without their windows.
    void UseDialogs() {
        CPyxenAPIAccess& api = Grabber().Api();
        if (!api.IsValid()) {
            return;
        }
        PxnCameraInfo* cameras = nullptr;
        const std::uint32_t count = api.AllocateAndGetCameraList(&cameras);
        for (std::uint32_t index = 0; index < std::min(count, 100u); ++index) {
            DeviceRowTexts(cameras[index], ReadDeviceConnection(api, cameras[index], &sink));
        }
        std::free(cameras);
        DeviceDiscovery discovery(api);
        discovery.Register([](DeviceDiscovery::Event, PxnHandle, const char*) {});
        const auto receiver = std::make_shared<InvalidationReceiver>(
            &sink, [](std::uint32_t, PxnHandle, const char*) {});
        FeatureRegistrations registrations(api, receiver, &sink);
        FeatureTree tree;
        for (std::uint32_t index = 0; index < Grabber().GetNumFeatureCaches(); ++index) {
            FeatureCache* const cache = Grabber().GetFeatureCache(index);
            cache->PrintParameters();
            if (cache->GetModuleName()) {
                tree.AddModule(*cache);
            }
        }
        for (const FeatureLeaf& leaf : tree.GetLeaves()) {
            registrations.Register(InvalidationKind::kValue, leaf);
            UseLeaf(leaf);
        }
        sdk.Fire(scripted::CameraHandle(), "Width");
        sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
        registrations.UnregisterAll(InvalidationKind::kValue);
        registrations.Disconnect();
        receiver->Close();
        discovery.Unregister();
    }

    void UseLeaf(const FeatureLeaf& leaf) {
        const PxnFeatureInfo* const info = leaf.cache->Find(leaf.name.c_str());
        if (!info) {
            return;
        }
        const Feature feature = leaf.In(Grabber().Api(), *info);
        FormatFeatureValue(feature);
        const FeatureReader reader(&sink);
        reader.RangeText(feature, info->unit);
        std::optional<FeatureForm> form = reader.ToEdit(feature);
        reader.ToRefresh(feature);
        if (form) {
            SliderScale scale;
            scale.SetRange(form->range.integers.least, form->range.integers.most);
            if (const std::int64_t* const value = form->value.GetIf<std::int64_t>()) {
                scale.SetClampedValue(*value);
            }
            scale.GetPosition();
            scale.SetPosition(scale.GetSliderMax());
            FormatInteger(scale.GetValue());
            FeatureWriter(Grabber().Sync()).Write(*leaf.cache, feature, form->value);
        }
        Grabber().SyncDependentFeatures(leaf.cache, leaf.name.c_str(), true);
    }

    Model sound;
};

class HostileAnswers : public HostileSession, public ::testing::WithParamInterface<Hostility> {};

TEST_P(HostileAnswers, LeaveNothingBehindAndTheNextSessionWorks) {
    sdk.Edit(GetParam().apply);
    UseEverything();
    ExpectNothingLeft();
    UseEverything();
    ExpectNothingLeft();
    AnswerSoundly();
    EXPECT_TRUE(UseEverything());
    ExpectNothingLeft();
}

TEST_P(HostileAnswers, MayBeginAtAnyCall) {
    ASSERT_TRUE(UseEverything());
    const std::size_t count = Calls().size();
    ASSERT_GT(count, 100u);
    constexpr std::size_t kSessions = 6;
    for (std::size_t nth = 2; nth <= count; nth += count / kSessions) {
        std::size_t calls = 0;
        BeforeEveryCall([&] {
            if (++calls == nth) {
                sdk.Edit([](Model& model) {
                    GetParam().apply(model);
                    // The list of interfaces is read until it has the length it had at first.
                    model.nonsense.soundCount = "PxnInterfacesList";
                });
            }
        });
        UseEverything();
        sdk.ClearHooks();
        ExpectNothingLeft();
        AnswerSoundly();
        ASSERT_TRUE(UseEverything(false)) << "after call " << nth;
        Forget();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, HostileAnswers,
    ::testing::Values(
        Garbled("NullTexts", TextNonsense::kNull), Garbled("EmptyTexts", TextNonsense::kEmpty),
        Garbled("LongTexts", TextNonsense::kLong), Garbled("TextsNotUtf8", TextNonsense::kNotUtf8),
        Garbled("Placeholders", TextNonsense::kPlaceholders),
        Garbled("ControlCharacters", TextNonsense::kControls),
        Counts("NothingCounted", CountNonsense::kZero),
        Counts("HalfOfAllCounted", CountNonsense::kHalfOfAll),
        Counts("MostCounted", CountNonsense::kMost),
        Hostility{"GrowingCounts",
                  [](Model& model) {
                      model.nonsense.counts = CountNonsense::kGrowing;
                      // The list of interfaces is read until it has the length it had at first.
                      model.nonsense.soundCount = "PxnInterfacesList";
                  }},
        Counts("ShrinkingCounts", CountNonsense::kShrinking),
        Numbers("LimitsUpsideDown", NumberNonsense::kUpsideDown),
        Numbers("NotANumber", NumberNonsense::kNotANumber),
        Numbers("Infinity", NumberNonsense::kInfinite), Numbers("Least", NumberNonsense::kLeast),
        Numbers("Most", NumberNonsense::kMost), Size("NoPayload", "PayloadSize", 0),
        Size("NegativePayload", "PayloadSize", -1),
        Size("PayloadOfFourGigabytes", "PayloadSize", std::int64_t{1} << 32),
        Size("PayloadOfATerabyte", "PayloadSize", std::int64_t{1} << 40),
        Size("NoWidth", "Width", 0), Size("NegativeWidth", "Width", -1),
        Size("WidthOf31Bits", "Width", std::int64_t{1} << 31),
        Size("WidthOf40Bits", "Width", std::int64_t{1} << 40), Size("NoHeight", "Height", 0),
        Size("HeightOf31Bits", "Height", std::int64_t{1} << 31),
        Size("HeightOf40Bits", "Height", std::int64_t{1} << 40),
        Hostility{"HugeImage",
                  [](Model& model) {
                      model.cameras[0]["Width"].intValue = 0xFFFFFFFF;
                      model.cameras[0]["Height"].intValue = 0xFFFFFFFF;
                  }},
        Hostility{"HugePlainImage",
                  [](Model& model) {
                      model.cameras[0]["PixelFormat"].text = "Mono8";
                      model.cameras[0]["Width"].intValue = 0xFFFFFFFF;
                      model.cameras[0]["Height"].intValue = 0xFFFFFFFF;
                  }},
        Hostility{"LatestVersion",
                  [](Model& model) {
                      model.version = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
                  }},
        Hostility{"OneByteTooMany",
                  [](Model& model) {
                      model.nonsense.excess = 1;
                  }},
        Hostility{"GigabytesTooMany",
                  [](Model& model) {
                      model.nonsense.excess = 0xC0000000;
                  }},
        Hostility{"StreamsWithoutAList",
                  [](Model& model) {
                      model.nonsense.areStreamsMissing = true;
                      model.nonsense.counts = CountNonsense::kHalfOfAll;
                  }},
        Hostility{"RegistersOfOnes",
                  [](Model& model) {
                      for (std::uint64_t address = 0x60000; address < 0x63000; ++address) {
                          model.cameras[0].registers[address] = 0xFF;
                      }
                  }},
        Hostility{"UnknownTypes",
                  [](Model& model) {
                      for (scripted::Feature& feature : model.cameras[0].features) {
                          feature.type = 0xFFFFFFFF;
                      }
                  }},
        Hostility{"TypesExchanged",
                  [](Model& model) {
                      for (scripted::Feature& feature : model.cameras[0].features) {
                          feature.type = feature.type % PxnFeatureDataNone + 1;
                      }
                  }},
        Hostility{"NoModules",
                  [](Model& model) {
                      model.interfaces.clear();
                  }}),
    [](const auto& tested) { return std::string(tested.param.name); });

class HostileCallbacks : public HostileSession {
protected:
    /// Each frame that was ever queued, once more. Only those below `records`, which are there, may
    /// reach the host.
    void CallBackWithPastFrames(uint64_t records) {
        TakeHandedOver();
        for (PxnFrame* const frame : sdk.PastFrames()) {
            sdk.CallBack(frame);
        }
        for (const HandedOver& one : TakeHandedOver()) {
            EXPECT_LT(one.index, records);
        }
    }
    /// `run` on a thread of the SDK, to its end.
    static void OnSdkThread(const std::function<void()>& run) { std::thread(run).join(); }

    void CallBackWithEverything() {
        if (isInside.exchange(true)) {
            return; // what is called back calls the SDK in its turn
        }
        for (unsigned frame = 0; frame < 3; ++frame) {
            sdk.Deliver(frame);
        }
        for (const char* const feature : {"Width", "ExposureTime", "PixelFormat"}) {
            sdk.Fire(scripted::CameraHandle(), feature);
        }
        sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
        sdk.FireRemoved();
        isInside = false;
    }

    std::atomic<bool> isInside{false};
};

TEST_F(HostileCallbacks, WithFramesThatAreGoneDoNotReachTheHost) {
    Ready(3);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_EQ(sdk.PastFrames().size(), 3u);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    CallBackWithPastFrames(1);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    CallBackWithPastFrames(1);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    CallBackWithPastFrames(1);
    Destroy();
    CallBackWithPastFrames(0);
}

TEST_F(HostileCallbacks, WithForeignContextDoNotReachTheHost) {
    Ready(3);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    PxnFrame* const frame = sdk.FrameOf(0);
    ASSERT_NE(frame, nullptr);
    int foreign = 0;
    for (unsigned word = 0; word < 3; ++word) {
        for (void* const context :
             {static_cast<void*>(nullptr), static_cast<void*>(&foreign),
              static_cast<void*>(sdk.FrameOf(1)), reinterpret_cast<void*>(~std::uintptr_t{0}),
              reinterpret_cast<void*>(std::uintptr_t{2})}) {
            void* const own = std::exchange(frame->context[word], context);
            if (context != own) {
                sdk.CallBack(frame);
            }
            frame->context[word] = own;
        }
    }
    PxnFrame copy = *frame;
    sdk.CallBack(&copy);
    sdk.CallBack(nullptr);
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    EXPECT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{1, 1}}));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
}

TEST_F(HostileCallbacks, WithOneFrameTwiceEndInEveryMode) {
    Ready(3);
    sdk.Data().completeWaitsAtOnce = true;
    sdk.Data().broken.framesAreHandedBackTwice = true;
    for (const uint32_t mode : {1u, 2u, 3u, 4u, 5u}) {
        ASSERT_EQ(Grabber().Snap(mode), MV_OK) << mode;
        for (unsigned frame = 0; frame < 3; ++frame) {
            OnSdkThread([&] {
                sdk.Deliver(frame);
                sdk.Deliver(frame);
                sdk.Deliver(frame);
            });
        }
        EXPECT_EQ(Grabber().StopSnap(), MV_OK) << mode;
        for (const HandedOver& one : TakeHandedOver()) {
            EXPECT_LT(one.index, 3u);
        }
    }
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    ExpectNothingLeft();
}

TEST_F(HostileCallbacks, DuringEveryCallOnTheCallingThreadLeaveNothingBehind) {
    sdk.Data().broken.callbacksOverlap = true; // a call inside a callback is one of them
    BeforeEveryCall([this] { CallBackWithEverything(); });
    UseEverything();
    sdk.ClearHooks();
    ExpectNothingLeft();
    EXPECT_TRUE(UseEverything());
    ExpectNothingLeft();
}

TEST_F(HostileCallbacks, DuringEveryCallOnAnotherThreadLeaveNothingBehind) {
    sdk.Data().broken.callbacksOverlap = true; // a call inside a callback is one of them
    BeforeEveryCall([this] {
        if (!isInside) {
            OnSdkThread([this] { CallBackWithEverything(); });
        }
    });
    UseEverything();
    sdk.ClearHooks();
    ExpectNothingLeft();
    EXPECT_TRUE(UseEverything());
    ExpectNothingLeft();
}

TEST_F(HostileCallbacks, AfterUnregisteringReachNobody) {
    ASSERT_TRUE(UseEverything());
    sink.Take();
    EXPECT_GT(sdk.FireRemoved(), 10u);
    EXPECT_EQ(sink.Take(), Texts{});
    Destroy();
    EXPECT_GT(sdk.FireRemoved(), 10u);
}

} // namespace
