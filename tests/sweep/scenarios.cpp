// scenarios.cpp - the uses of a grabber that are swept
#include "tests/sweep/scenarios.h"

#include "mivora/camera.h"

#include <algorithm>
#include <utility>

namespace sweep {
namespace {

Operations operator+(Operations left, const Operations& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Operations Named(const std::string& prefix, Operations operations) {
    for (Operation& operation : operations) {
        operation.text = prefix + operation.text;
    }
    return operations;
}

// ---- operations ----

const Operation kInit{"Init", [](Station& station) {
                          return Answer(station.Grabber().Init());
                      }};
const Operation kDeInit{"DeInit", [](Station& station) {
                            return Answer(station.Grabber().DeInit());
                        }};
const Operation kSetCamera{"SetActCameraIndex", [](Station& station) {
                               return Answer(station.Grabber().SetActCameraIndex(
                                   static_cast<std::int32_t>(station.Camera())));
                           }};
const Operation kOpen{"OpenActCamera", [](Station& station) {
                          return Answer(station.Grabber().OpenActCamera());
                      }};
const Operation kClose{"CloseActCamera", [](Station& station) {
                           return Answer(station.Grabber().CloseActCamera());
                       }};
const Operation kPrepare{"PrepareFrameBuffers 2", [](Station& station) {
                             return Answer(station.Grabber().PrepareFrameBuffers(2));
                         }};
const Operation kStop{"StopSnap", [](Station& station) {
                          const MV_ERRCODE code = station.Grabber().StopSnap();
                          return Answer(code, station.Grabber().GetAcquisitionState());
                      }};
const Operation kRefresh{"RefreshCameraList", [](Station& station) {
                             return Answer(station.Grabber().RefreshCameraList());
                         }};
const Operation kCount{"cameras, active", [](Station& station) {
                           return Answer(station.Grabber().GetNumCameras(),
                                         station.Grabber().GetActCameraIndex());
                       }};
const Operation kVersion{"GetDriverVersion", [](Station& station) {
                             return Answer(station.Grabber().GetDriverVersion() ? 1 : 0);
                         }};
/// Delivered or not, images handed over, buffers that the host took.
Operation Frame(std::uint64_t index) {
    return {"frame " + std::to_string(index), [index](Station& station) {
                const bool isDelivered = station.Deliver(index);
                return Answer(isDelivered, station.TakeHandedOver(), station.TakeFilledBuffers());
            }};
}

/// The code, the acquisition's number, images handed over.
Operation Snap(std::uint32_t mode) {
    return {"Snap " + std::to_string(mode), [mode](Station& station) {
                const MV_ERRCODE code = station.Grabber().Snap(mode);
                return Answer(code, station.Grabber().GetAcquisitionState(),
                              station.TakeHandedOver());
            }};
}

const Operations kReady{kInit, kSetCamera};
const Operations kOpened = kReady + Operations{kOpen};
const Operations kPrepared = kOpened + Operations{kPrepare};
const Operations kOneFrame = {kPrepare, Snap(3)};

// ---- parameters ----

Operation GetLimits(std::uint32_t id) {
    return {"GetGrabberParamLimits " + std::to_string(id), [id](Station& station) {
                uint64_t limits[4] = {};
                const MV_ERRCODE code = station.Grabber().GetGrabberParamLimits(
                    id, &limits[0], &limits[1], &limits[2], &limits[3]);
                return Answer(code, limits[0], limits[1], limits[2], limits[3]);
            }};
}

Operation GetParam(std::uint32_t id) {
    return {"GetGrabberParam " + std::to_string(id), [id](Station& station) {
                uint64_t one = 0;
                uint64_t two = 0;
                const MV_ERRCODE code = station.Grabber().GetGrabberParam(id, &one, &two);
                return Answer(code, one, two);
            }};
}

Operation SetParam(std::uint32_t id, std::int64_t one, std::int64_t two) {
    return {"SetGrabberParam " + std::to_string(id) + " " + std::to_string(one) + " " +
                std::to_string(two),
            [=](Station& station) {
                return Answer(station.Grabber().SetGrabberParam(id, static_cast<uint64_t>(one),
                                                                static_cast<uint64_t>(two)));
            }};
}

const Operations kParameters{
    GetLimits(257),
    GetParam(257),
    SetParam(257, 20000, 50000),
    SetParam(261, -3, 0),
    GetParam(257),
    {"GetExposureTime",
     [](Station& station) {
         std::uint32_t value = 0;
         const bool isRead = station.Grabber().GetExposureTime(&value);
         return Answer(isRead, value);
     }},
    {"GetFrameInterval",
     [](Station& station) {
         std::uint32_t value = 0;
         const bool isRead = station.Grabber().GetFrameInterval(&value);
         return Answer(isRead, value);
     }},
    {"SetTimerMicroseconds",
     [](Station& station) {
         station.Grabber().SetTimerMicroseconds(30000, 60000);
         uint64_t exposure = 0;
         uint64_t interval = 0;
         station.Grabber().GetTimerMicroseconds(&exposure, &interval);
         return Answer(exposure, interval);
     }},
    {"OnTimingFeatureChanged",
     [](Station& station) {
         station.Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), "ExposureTime");
         station.Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), "AcquisitionFrameRate");
         uint64_t exposure = 0;
         uint64_t interval = 0;
         station.Grabber().GetTimerMicroseconds(&exposure, &interval);
         return Answer(exposure, interval);
     }},
};

/// The camera has an interval of its own besides its frame rate.
const Operation kAddFixedInterval{"AcquisitionFixedIntervalTime", [](Station& station) {
                                      station.Sdk().Edit([](scripted::Model& model) {
                                          model.cameras[0].Put(scripted::IntFeature(
                                              "AcquisitionFixedIntervalTime", 40000, 100, 1000000));
                                      });
                                      return Answer(0);
                                  }};

// ---- features ----

FeatureCache* CameraCache(Station& station) {
    return station.Grabber().GetFeatureCacheByName("Camera");
}

Operation SyncModule(bool onlyIfDifferent) {
    return {onlyIfDifferent ? "SyncModuleFeatures Camera 1" : "SyncModuleFeatures Camera 0",
            [onlyIfDifferent](Station& station) {
                return Answer(
                    station.Grabber().SyncModuleFeatures(CameraCache(station), onlyIfDifferent));
            }};
}

Operation SyncDependents(const char* name) {
    return {std::string("SyncDependentFeatures ") + name, [name](Station& station) {
                return Answer(
                    station.Grabber().SyncDependentFeatures(CameraCache(station), name, true));
            }};
}

/// Whether it can be written, and whether the buffers change. Where it fails and why are texts of
/// the dialog; their length stands for them.
template <typename Check>
Operation CheckPath(const char* name, Check check) {
    return {std::string("CheckSyncPath ") + name, [=](Station& station) {
                const pyxen::SyncCheckResult result =
                    check(station.Grabber(), CameraCache(station), name);
                return Answer(result.ok, result.bufferImpact, result.failingFeature.size(),
                              result.reason.size());
            }};
}

const Operations kChecks{
    CheckPath("Width",
              [](auto& grabber, FeatureCache* cache, const char* name) {
                  return grabber.IntFeatureCheckSyncPath(cache, name, 64);
              }),
    CheckPath("ExposureTime",
              [](auto& grabber, FeatureCache* cache, const char* name) {
                  return grabber.FloatFeatureCheckSyncPath(cache, name, 500.0);
              }),
    CheckPath("PixelFormat",
              [](auto& grabber, FeatureCache* cache, const char* name) {
                  return grabber.EnumFeatureCheckSyncPath(cache, name, "Mono8");
              }),
    CheckPath("DeviceUserID",
              [](auto& grabber, FeatureCache* cache, const char* name) {
                  return grabber.StringFeatureCheckSyncPath(cache, name, "right");
              }),
    CheckPath("ReverseX",
              [](auto& grabber, FeatureCache* cache, const char* name) {
                  return grabber.BoolFeatureCheckSyncPath(cache, name, true);
              }),
};

const Operation kPrintParameters{
    "PrintParameters", [](Station& station) {
        for (std::uint32_t index = 0; index < station.Grabber().GetNumFeatureCaches(); ++index) {
            station.Grabber().GetFeatureCache(index)->PrintParameters();
        }
        return Answer(station.Grabber().GetNumFeatureCaches());
    }};

/// The signals that the host gets.
Answer RaiseDiscoveryEvent(Station& station) {
    int signals = 0;
    {
        const support::AllocationPause pause;
        station.Grabber().InstCamCfgChangeCallBack(
            [](void* context) { ++*static_cast<int*>(context); }, &signals);
    }
    station.Grabber().InvalidationCallback(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
    station.Grabber().InstCamCfgChangeCallBack(nullptr, nullptr);
    return Answer(signals);
}

const Operation kDiscovery{"discovery event", &RaiseDiscoveryEvent};

// ---- the serial port ----

constexpr std::size_t kLongText = 1500; // more than one transfer

const Operations kSerial{
    {"EnumeratePorts",
     [](Station& station) {
         station.Channel().EnumeratePorts();
         const support::AllocationPause pause;
         return Answer(station.Channel().GetPorts().size());
     }},
    {"channel Open",
     [](Station& station) {
         return Answer(station.Channel().Open());
     }},
    {"channel WriteByte",
     [](Station& station) {
         const std::uint8_t byte = 'x';
         std::uint64_t count = 7;
         const MV_ERRCODE code = station.Channel().WriteByte(&byte, &count);
         return Answer(code, count);
     }},
    {"channel WriteBuffer",
     [](Station& station) {
         static const std::uint8_t bytes[kLongText] = {};
         std::uint64_t count = 7;
         const MV_ERRCODE code = station.Channel().WriteBuffer(bytes, kLongText, &count);
         return Answer(code, count);
     }},
    {"channel ReadByte",
     [](Station& station) {
         std::uint8_t byte = 0;
         std::uint64_t count = 7;
         const MV_ERRCODE code = station.Channel().ReadByte(&byte, &count);
         return Answer(code, count);
     }},
    {"channel ReadBuffer",
     [](Station& station) {
         std::uint8_t bytes[16] = {};
         std::uint64_t count = 7;
         const MV_ERRCODE code = station.Channel().ReadBuffer(bytes, sizeof bytes, &count);
         return Answer(code, count);
     }},
    {"channel Purge",
     [](Station& station) {
         return Answer(station.Channel().Purge(3));
     }},
    {"channel Close",
     [](Station& station) {
         return Answer(station.Channel().Close());
     }},
};

// ---- configuration ----

const Operations kConfiguration{
    {"SaveCameraModeConfig",
     [](Station& station) {
         return Answer(station.Grabber().SaveCameraModeConfig());
     }},
    {"SaveGrabberConfig",
     [](Station& station) {
         return Answer(station.Grabber().SaveGrabberConfig());
     }},
    {"channel SetConfig",
     [](Station& station) {
         return Answer(station.Channel().SetConfig(station.Grabber().GetIni(), "CmdChannel_0"));
     }},
    {"LoadGrabberConfig",
     [](Station& station) {
         return Answer(station.Grabber().LoadGrabberConfig());
     }},
    {"channel GetConfig",
     [](Station& station) {
         return Answer(station.Channel().GetConfig(station.Grabber().GetIni(), "CmdChannel_0"));
     }},
};

// ---- scenarios ----

std::vector<Scenario> SnapScenarios() {
    std::vector<Scenario> scenarios;
    for (const std::uint32_t mode : {1u, 2u, 3u, 4u, 5u}) {
        for (const bool isQueuedFirst : {false, true}) {
            if (isQueuedFirst && mode > 2) {
                continue; // these always start first
            }
            Scenario scenario{"snap_" + std::to_string(mode) +
                                  (isQueuedFirst ? "_queue_first" : ""),
                              kPrepared,
                              {Snap(mode)},
                              {kStop},
                              isQueuedFirst};
            if (mode < 3) {
                scenario.swept.push_back(Frame(0));
            }
            if (mode == 1) {
                scenario.swept.push_back(Frame(1));
                scenario.swept.push_back(Frame(0));
            }
            scenarios.push_back(std::move(scenario));
        }
    }
    return scenarios;
}

std::vector<Scenario> MakeScenarios() {
    const Operations running = kPrepared + Operations{Snap(1), Frame(0)};
    std::vector<Scenario> scenarios{
        {"initialise", {}, {kInit}, Operations{kSetCamera, kOpen} + kOneFrame + Operations{kClose}},
        {"list", kReady, {kRefresh, kCount, kVersion}, {kSetCamera, kOpen, kClose}},
        {"list_open", kOpened, {kRefresh, kCount}, {kSetCamera, kOpen, kClose}},
        {"open", kReady, {kOpen}, kOneFrame + Operations{kClose}},
        {"parameters", kOpened, kParameters, {kClose}},
        {"parameters_fixed_interval",
         Operations{kAddFixedInterval} + kOpened,
         kParameters,
         {kClose}},
        {"synchronise",
         kOpened,
         Operations{SyncModule(false), SyncModule(true)} +
             Operations{SyncDependents("PixelFormat"), SyncDependents("DeviceUserID")},
         {kClose}},
        {"check", kOpened, kChecks, {kClose}},
        {"print", kOpened, {kPrintParameters}, {kClose}},
        {"discovery", kOpened, {kDiscovery}, {kClose}},
        {"prepare", kOpened, {kPrepare}, {Snap(3), kClose}},
        {"stop_continuous", running, {kStop}, {Frame(1), kPrepare, kClose}},
        {"stop_asynchronous", kPrepared + Operations{Snap(2)}, {kStop}, {kPrepare, kClose}},
        {"serial", kOpened, kSerial, {kClose}},
        {"configuration", kOpened, kConfiguration, {kClose}},
        {"close", kPrepared, {kClose}, {kOpen, kClose}},
        {"close_acquiring", running, {kClose}, {kStop, kOpen, kClose}},
        {"deinitialise", kPrepared, {kDeInit}, {kInit, kDeInit}},
        {"deinitialise_acquiring", running, {kDeInit}, {kInit, kDeInit}},
    };
    for (Scenario& scenario : SnapScenarios()) {
        scenarios.push_back(std::move(scenario));
    }
    return scenarios;
}

// ---- the use afterwards ----

/// What an operation of the use returns when it is not needed.
constexpr int kNotNeeded = 0;

const Operations kAgain{
    kStop,
    {"Init",
     [](Station& station) {
         return station.Grabber().IsInitialized() ? Answer(kNotNeeded) : kInit.run(station);
     }},
    {"RefreshCameraList",
     [](Station& station) {
         return station.Grabber().GetNumCameras() > 0 ? Answer(kNotNeeded) : kRefresh.run(station);
     }},
    kSetCamera,
    {"OpenActCamera",
     [](Station& station) {
         return station.Grabber().IsCameraOpen() != 0 ? Answer(kNotNeeded) : kOpen.run(station);
     }},
    // As the device finder does while the camera is open.
    {"list of cameras",
     [](Station& station) {
         return Answer(station.Grabber().Api().AllocateAndGetCameraList(nullptr));
     }},
    kPrepare,
    Snap(1),
    Frame(0),
    Frame(1),
    Frame(0),
    kStop,
    Snap(2),
    Frame(0),
    kStop,
    Snap(3),
    kClose,
    kDeInit,
};

} // namespace

const std::vector<Scenario>& Scenarios() {
    static const std::vector<Scenario> scenarios = MakeScenarios();
    return scenarios;
}

const Operations& UseAgain() {
    static const Operations operations = Named("again: ", kAgain) + Named("after DeInit: ", kAgain);
    return operations;
}

const std::vector<std::string>& ResultsOfUseAgain() {
    static const std::vector<std::string> results{"", // stopped or not initialised
                                                  "0",     "0",     "0",     "0",
                                                  "2",     // cameras
                                                  "0",     // buffers
                                                  "0 1 0", // continuously
                                                  "1 1 1", "1 1 1", "1 1 1", "0 0",
                                                  "0 2 0", // asynchronously
                                                  "1 1 1", "0 0",
                                                  "0 0 1", // synchronously
                                                  "0",     "0"};
    return results;
}

// ---- what they find ----

const char* const kSyncRules =
    R"({"SyncFeatures":[)"
    R"({"ModuleName":"Camera","FeatureName":"Width","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"Width"}]},)"
    R"({"ModuleName":"Camera","FeatureName":"ExposureTime","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"ExposureTime"}]},)"
    R"({"ModuleName":"Camera","FeatureName":"PixelFormat","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"PixelFormat"}]},)"
    R"({"ModuleName":"Camera","FeatureName":"DeviceUserID","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"DeviceUserID"}]},)"
    R"({"ModuleName":"Camera","FeatureName":"ReverseX","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"ReverseX"}]}]})";

std::string IniText(const Scenario& scenario) {
    return std::string("[TLSpecificConfig_0]\nInterfaceID=if-eth0\nTLID=tl-gev\n"
                       "TLVendorName=Korvane\nTLModelName=Pyxen GigE\nTLVersion=1.4.2\n"
                       "TLType=GEV\nFeatureSyncFile=rules.json\n") +
           "FirstQueueThenStartSnap=" + (scenario.isQueuedFirst ? "1" : "0") + "\n";
}

void FillModel(scripted::Model& model) {
    constexpr std::uint64_t kPort = 0x61000;
    model.completeWaitsAtOnce = true;
    scripted::Camera& camera = model.cameras[0];
    camera["Width"].intValue = 32;
    camera["Height"].intValue = 4;
    camera["PayloadSize"].intValue = 32 * 4 * 3 / 2;
    camera["PixelFormat"].text = "Mono12p";
    camera["ReverseX"].boolValue = true;
    for (const char* const name :
         {"Width", "ExposureTime", "PixelFormat", "DeviceUserID", "ReverseX"}) {
        camera.localDevice.Put(*camera.Find(name));
    }
    camera.localDevice["Width"].intValue = 640;
    camera.localDevice["ExposureTime"].floatValue = 100;
    camera.localDevice["PixelFormat"].text = "Mono8";
    camera.localDevice["DeviceUserID"].text = "none";
    camera.localDevice["ReverseX"].boolValue = false;
    camera.streams[0]["GVSPAdjustPacketSize"].doneSequence = {false, true};
    camera.SetRegister32(kPort, 3);
    camera.SetRegister32(kPort + 0x100, 0x07F707FF);
    camera.SetRegister32(kPort + 0x124, 1);
    camera.SetRegister32(kPort + 0x14C, 4);
    model.cameras.push_back(camera);
    model.cameras[1].id = "cam-2";
    model.cameras[1].extendedId = "cam-ext-2";
    model.cameras[1].name = "Camera B";
    model.system["EventCameraDiscoveryCameraID"].text = "cam-ext-1";
}

} // namespace sweep
