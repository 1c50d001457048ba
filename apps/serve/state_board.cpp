// state_board.cpp - what is known of the camera, for all who ask
#include "apps/serve/state_board.h"

#include "apps/common/json_text.h"
#include "apps/mivora/grab_report.h"

#include <utility>

namespace {

JsonValue RecordingStateJson(const std::optional<RecordingState>& recording) {
    if (!recording) {
        return nullptr;
    }
    return JsonObject(
        {{"directory", recording->directory},
         {"written", recording->written},
         {"taken", recording->taken},
         {"wanted", recording->wanted},
         {"lost", recording->lost},
         {"waiting", recording->waiting},
         {"done", recording->isDone},
         {"error", recording->error.empty() ? JsonValue(nullptr) : JsonValue(recording->error)}});
}

JsonValue LatencyJson(const FrameTiming* timing) {
    const Histogram* const latency =
        timing && timing->latency.Count() > 0 ? &timing->latency : nullptr;
    const auto milliseconds = [latency](double percent) -> JsonValue {
        return latency ? JsonValue(static_cast<double>(latency->Percentile(percent)) / 1e6)
                       : JsonValue(nullptr);
    };
    return JsonObject({{"p50", milliseconds(50)}, {"p99", milliseconds(99)}});
}

JsonValue ImageJson(const ServeState& state) {
    if (!state.image) {
        return nullptr;
    }
    return JsonObject({{"width", state.image->width},
                       {"height", state.image->height},
                       {"pixelFormat", state.pixelFormat},
                       {"bits", state.image->bits},
                       {"channels", state.image->components}});
}

bool IsOpenCamera(const ServeState& state, const KnownCamera& camera) {
    return state.isOpen && state.camera && state.camera->uniqueId == camera.uniqueId;
}

} // namespace

void StateBoard::Change(const std::function<void(ServeState& state)>& change) {
    const platform::MutexLock lock(mutex);
    change(reading.state);
    ++reading.version;
}

void StateBoard::ChangeCameras(std::vector<KnownCamera> cameras) {
    const platform::MutexLock lock(mutex);
    reading.state.cameras = std::move(cameras);
    ++reading.version;
    ++reading.camerasVersion;
}

StateBoard::Reading StateBoard::Read() const {
    const platform::MutexLock lock(mutex);
    return reading;
}

std::string CameraJson(const KnownCamera& camera, bool isOpen) {
    std::vector<JsonMember> members = KnownCameraMembers(camera);
    members.push_back({"open", isOpen});
    return JsonObject(members).Text();
}

std::string CamerasJson(const ServeState& state) {
    std::vector<JsonValue> list;
    list.reserve(state.cameras.size());
    for (const KnownCamera& camera : state.cameras) {
        list.push_back(JsonValue::FromText(CameraJson(camera, IsOpenCamera(state, camera))));
    }
    return JsonArray(list).Text();
}

std::string StateJson(const ServeState& state) {
    const JsonValue camera =
        state.camera ? JsonValue::FromText(CameraJson(*state.camera, state.isOpen)) : nullptr;
    const std::uint64_t written = state.recording ? state.recording->written : 0;
    return JsonReport({{"camera", camera},
                       {"open", state.isOpen},
                       {"grabbing", state.isGrabbing},
                       {"gone", state.isGone},
                       {"image", ImageJson(state)},
                       {"account", AccountJson(state.account, written)},
                       {"rate", state.rate},
                       {"latencyMs", LatencyJson(state.timing.get())},
                       {"recording", RecordingStateJson(state.recording)},
                       {"simulatorControl", state.hasSimulatorControl}})
        .Text();
}
