// sdk_state.cpp - the script and the record of the scripted SDK
#include "tests/scripted_sdk/sdk_state.h"

#include "pxnc/skeleton/library.h"
#include "pxnc/skeleton/never_destroyed.h"
#include "tests/scripted_sdk/call_text.h"
#include "tests/scripted_sdk/default_model.h"
#include "tests/scripted_sdk/model_lookup.h"
#include "tests/scripted_sdk/nonsense.h"
#include "tests/scripted_sdk/scripted_backend.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <utility>

namespace scripted {
namespace {

constexpr std::uint64_t kAlways = ~std::uint64_t{0};

bool BeginsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

/// The indices that `list` returns for the open cameras, one camera after the other.
std::vector<std::uint64_t> ListFrames(std::vector<std::uint64_t> (ScriptedFrames::*list)() const) {
    std::vector<std::uint64_t> all;
    for (const auto& frames : OpenCameras()) {
        const std::vector<std::uint64_t> indices = ((*frames).*list)();
        all.insert(all.end(), indices.begin(), indices.end());
    }
    return all;
}

/// Delivers the frame of whichever camera has one. `onTaken` is called before the callback.
bool DeliverOnce(std::uint64_t frame, const Filling& filling,
                 skeleton::FunctionRef<void()> onTaken) {
    const auto cameras = OpenCameras();
    return std::any_of(cameras.begin(), cameras.end(), [&](const auto& frames) {
        return frames->Deliver(frame, filling, onTaken);
    });
}

} // namespace

SdkState& SdkState::Instance() {
    static skeleton::NeverDestroyed<SdkState> instance;
    return instance.Get();
}

SdkState::SdkState() : model(DefaultModel()) {}

// ---- the whole ----

void SdkState::Reset() {
    {
        platform::MutexLock lock(mutex);
        held.clear();
        hooks.clear();
        failures.clear();
        changed.NotifyAll();
    }
    WaitForDeliveries();
    for (int count = StartupCount(); count > 0; --count) {
        skeleton::Library::Instance().Shutdown();
    }
    platform::MutexLock lock(mutex);
    model = DefaultModel();
    calls.clear();
    pastFrames.clear();
    lastCallback = nullptr;
    pastRegistrations.clear();
}

void SdkState::Edit(const std::function<void(Model&)>& change) {
    platform::MutexLock lock(mutex);
    change(model);
}

int SdkState::StartupCount() {
    return static_cast<int>(skeleton::Library::Instance().StartupCount());
}

// ---- what was called ----

std::vector<std::string> SdkState::Matching(const std::vector<std::string>& prefixes) const {
    if (prefixes.empty()) {
        return calls;
    }
    std::vector<std::string> result;
    for (const std::string& call : calls) {
        if (std::any_of(prefixes.begin(), prefixes.end(),
                        [&](const std::string& prefix) { return BeginsWith(call, prefix); })) {
            result.push_back(call);
        }
    }
    return result;
}

std::vector<std::string> SdkState::Calls(const std::vector<std::string>& prefixes) {
    platform::MutexLock lock(mutex);
    return Matching(prefixes);
}

std::vector<std::string> SdkState::TakeCalls(const std::vector<std::string>& prefixes) {
    platform::MutexLock lock(mutex);
    std::vector<std::string> result = Matching(prefixes);
    calls.clear();
    return result;
}

void SdkState::ClearCalls() {
    platform::MutexLock lock(mutex);
    calls.clear();
}

bool SdkState::WaitForCall(const std::string& text, unsigned timeoutMs) {
    const auto end = skeleton::Clock::now() + std::chrono::milliseconds(timeoutMs);
    platform::MutexLock lock(mutex);
    while (Matching({text}).empty()) {
        if (skeleton::Clock::now() >= end) {
            return false;
        }
        changed.WaitUntil(mutex, end);
    }
    return true;
}

PxnError SdkState::BeginCall(const skeleton::EntryCall& call) {
    NoteRegistrations();
    std::function<void()> hook;
    {
        platform::MutexLock lock(mutex);
        calls.push_back(CallText(call, model));
        const auto found = hooks.find(call.entry);
        if (found != hooks.end()) {
            hook = found->second;
        }
        changed.NotifyAll();
    }
    if (hook) {
        hook();
    }
    platform::MutexLock lock(mutex);
    while (held.count(call.entry) != 0) {
        changed.Wait(mutex);
    }
    return NextFailure(call);
}

// ---- results ----

void SdkState::Fail(const std::string& entry, PxnError code, unsigned nth, unsigned count) {
    platform::MutexLock lock(mutex);
    failures.push_back({entry, nullptr, "", nth - 1u, count, code});
}

void SdkState::FailAlways(const std::string& entry, PxnError code) {
    platform::MutexLock lock(mutex);
    failures.push_back({entry, nullptr, "", 0, kAlways, code});
}

void SdkState::FailFeature(PxnHandle handle, const std::string& feature, const std::string& entry,
                           PxnError code) {
    platform::MutexLock lock(mutex);
    failures.push_back({entry, handle, feature, 0, kAlways, code});
}

void SdkState::ClearFailures() {
    platform::MutexLock lock(mutex);
    failures.clear();
}

void SdkState::OnCall(const std::string& entry, std::function<void()> hook) {
    platform::MutexLock lock(mutex);
    hooks[entry] = std::move(hook);
}

void SdkState::ClearHooks() {
    platform::MutexLock lock(mutex);
    hooks.clear();
}

void SdkState::Hold(const std::string& entry) {
    platform::MutexLock lock(mutex);
    held.insert(entry);
}

void SdkState::Release(const std::string& entry) {
    platform::MutexLock lock(mutex);
    held.erase(entry);
    changed.NotifyAll();
}

PxnError SdkState::NextFailure(const skeleton::EntryCall& call) {
    using Kind = skeleton::Argument::Kind;
    PxnHandle handle = nullptr;
    const char* feature = nullptr;
    for (const skeleton::Argument& argument : call.arguments) {
        if (argument.GetKind() == Kind::kHandle) {
            handle = argument.AsHandle();
        } else if (argument.GetKind() == Kind::kFeature) {
            feature = argument.AsText();
        }
    }
    PxnError result = PxnErrSuccess;
    for (Failure& failure : failures) {
        if (failure.entry.empty() ? call.entry == std::string("PxnShutdown")
                                  : failure.entry != call.entry) {
            continue;
        }
        if (!failure.feature.empty() &&
            (failure.handle != handle || !feature || failure.feature != feature)) {
            continue;
        }
        if (failure.skip > 0) {
            --failure.skip;
        } else if (failure.count > 0 && result == PxnErrSuccess) {
            failure.count -= failure.count == kAlways ? 0 : 1;
            result = failure.code;
        }
    }
    return result;
}

std::uint32_t SdkState::ReportedCount(const char* entry, std::uint32_t count) {
    platform::MutexLock lock(mutex);
    const auto scripted = model.foundAnswers.find(entry);
    if (scripted == model.foundAnswers.end() || scripted->second.empty()) {
        return Miscount(entry, count);
    }
    const std::uint32_t reported = scripted->second.front();
    scripted->second.pop_front();
    return reported;
}

// ---- frames ----

bool SdkState::Deliver(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                       std::uint8_t fill) {
    return DeliverOnce(frame, {status, frameId, fill}, [] {});
}

bool SdkState::DeliverOnThread(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                               std::uint8_t fill) {
    const auto taken = std::make_shared<std::promise<bool>>();
    std::thread thread([=] {
        if (!DeliverOnce(frame, {status, frameId, fill}, [&] { taken->set_value(true); })) {
            taken->set_value(false);
        }
    });
    {
        platform::MutexLock lock(mutex);
        deliveries.push_back(std::move(thread));
    }
    return taken->get_future().get();
}

void SdkState::WaitForDeliveries() {
    std::vector<std::thread> threads;
    {
        platform::MutexLock lock(mutex);
        threads.swap(deliveries);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

bool SdkState::Complete(std::uint64_t frame, PxnError code, std::uint8_t fill) {
    const auto cameras = OpenCameras();
    return std::any_of(cameras.begin(), cameras.end(), [&](const auto& frames) {
        return frames->Complete(frame, code, {.byte = fill});
    });
}

std::vector<std::uint64_t> SdkState::AnnouncedFrames() {
    return ListFrames(&ScriptedFrames::AnnouncedFrames);
}

PxnFrame* SdkState::FrameOf(std::uint64_t frame) {
    for (const auto& frames : OpenCameras()) {
        if (PxnFrame* const found = frames->FrameOf(frame)) {
            return found;
        }
    }
    return nullptr;
}

std::vector<std::uint64_t> SdkState::QueuedFrames() {
    return ListFrames(&ScriptedFrames::QueuedFrames);
}

bool SdkState::IsCapturing() {
    const auto cameras = OpenCameras();
    return std::any_of(cameras.begin(), cameras.end(),
                       [](const auto& frames) { return frames->IsCapturing(); });
}

bool SdkState::DeliverFrom(std::size_t camera, std::uint64_t frame, std::int32_t status) {
    for (const auto& frames : OpenCameras()) {
        if (frames->IndexOfCamera() == camera) {
            return frames->Deliver(frame, {.status = status}, [] {});
        }
    }
    return false;
}

void SdkState::WriteQueuedFrames(std::uint8_t fill) {
    for (const auto& frames : OpenCameras()) {
        frames->WriteQueued({.byte = fill});
    }
}

std::size_t SdkState::CountOpenCameras() {
    return OpenCameras().size();
}

// ---- invalidation ----

std::vector<Registration> SdkState::Registrations() {
    std::vector<Registration> result;
    if (const auto backend = skeleton::Library::Instance().Current()) {
        for (const auto& one : backend->Changes().List()) {
            platform::MutexLock lock(mutex);
            result.push_back({NameOf(model, one.handle), one.name, one.context});
        }
    }
    return result;
}

unsigned SdkState::Fire(PxnHandle handle, const std::string& feature) {
    const auto backend = skeleton::Library::Instance().Current();
    return backend ? backend->Changes().Call(handle, backend->Texts().Intern(feature)) : 0;
}

// ---- callbacks that no SDK may call ----

void SdkState::NoteQueued(PxnFrame* frame, PxnFrameCallback callback, PxnHandle camera,
                          PxnHandle stream) {
    platform::MutexLock lock(mutex);
    if (callback) {
        pastFrames.insert(frame);
        lastCallback = callback;
        lastCamera = camera;
        lastStream = stream;
    }
}

void SdkState::NoteRegistrations() {
    const auto backend = skeleton::Library::Instance().Current();
    if (!backend) {
        return;
    }
    const auto present = backend->Changes().List();
    platform::MutexLock lock(mutex);
    for (const auto& one : present) {
        pastRegistrations.insert({one.context, {one.handle, one.name, one.callback, one.context}});
    }
}

std::vector<PxnFrame*> SdkState::PastFrames() {
    platform::MutexLock lock(mutex);
    return {pastFrames.begin(), pastFrames.end()};
}

void SdkState::CallBack(PxnFrame* frame) {
    PxnFrameCallback callback = nullptr;
    PxnHandle camera = nullptr;
    PxnHandle stream = nullptr;
    {
        platform::MutexLock lock(mutex);
        callback = lastCallback;
        camera = lastCamera;
        stream = lastStream;
    }
    if (callback) {
        callback(camera, stream, frame);
    }
}

unsigned SdkState::FireRemoved() {
    std::vector<PastRegistration> removed;
    {
        const std::vector<Registration> present = Registrations();
        platform::MutexLock lock(mutex);
        for (const auto& past : pastRegistrations) {
            if (std::none_of(present.begin(), present.end(), [&](const Registration& other) {
                    return other.context == past.first;
                })) {
                removed.push_back(past.second);
            }
        }
    }
    for (const PastRegistration& one : removed) {
        one.callback(one.handle, one.feature.c_str(), one.context);
    }
    return static_cast<unsigned>(removed.size());
}

} // namespace scripted

extern "C" PXN_API scripted::Sdk* ScriptedSdkInstance();
scripted::Sdk* ScriptedSdkInstance() {
    return &scripted::SdkState::Instance();
}
