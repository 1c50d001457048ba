// frame_state.cpp - frames and callbacks of the scripted SDK
#include "tests/scripted_sdk/sdk_state.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace scripted {
namespace {

// Which callbacks this thread is inside of: those must not be waited for by their own thread.
thread_local int insideFrameCallback = 0;
thread_local int insideInvalidation = 0;

std::uint64_t IndexOf(const PxnFrame* frame) {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(frame->context[2]));
}

} // namespace

void SdkState::WaitForFrameCallbacks(PxnHandle camera, Lock& lock) {
    changed.wait(lock, [&] { return runningFrameCallbacks[camera] == 0; });
}

PxnError SdkState::CloseCamera(PxnHandle camera, Lock& lock) {
    std::size_t index = 0;
    if (!FindCamera(camera, index) || openCameras.count(index) == 0) {
        return PxnErrBadHandle;
    }
    if (insideFrameCallback > 0) {
        return PxnErrInvalidCall;
    }
    const auto ofCamera = [&](const Frame& frame) {
        return frame.camera == camera;
    };
    std::erase_if(queued, ofCamera);
    WaitForFrameCallbacks(camera, lock);
    std::erase_if(queued, ofCamera);
    std::erase_if(announced, ofCamera);
    capturing.erase(camera);
    std::erase_if(registrations, [&](const Registered& registration) {
        return registration.handle == camera || registration.handle == LocalDeviceHandle(index) ||
               std::count(streamHandles[index].begin(), streamHandles[index].end(),
                          registration.handle) != 0;
    });
    openCameras.erase(index);
    return PxnErrSuccess;
}

PxnError SdkState::Announce(PxnHandle camera, const PxnFrame* frame) {
    const auto found = std::find_if(announced.begin(), announced.end(),
                                    [&](const Frame& known) { return known.frame == frame; });
    if (found == announced.end()) {
        announced.push_back({camera, const_cast<PxnFrame*>(frame), nullptr, IndexOf(frame)});
    }
    return PxnErrSuccess;
}

PxnError SdkState::Revoke(PxnHandle camera, const PxnFrame* frame, Lock& lock) {
    if (insideFrameCallback > 0) {
        return PxnErrInvalidCall;
    }
    WaitForFrameCallbacks(camera, lock);
    const auto same = [&](const Frame& known) {
        return known.frame == frame;
    };
    std::erase_if(queued, same);
    return std::erase_if(announced, same) != 0 ? PxnErrSuccess : PxnErrNotFound;
}

PxnError SdkState::RevokeAll(PxnHandle camera, Lock& lock) {
    if (insideFrameCallback > 0) {
        return PxnErrInvalidCall;
    }
    WaitForFrameCallbacks(camera, lock);
    const auto ofCamera = [&](const Frame& frame) {
        return frame.camera == camera;
    };
    std::erase_if(queued, ofCamera);
    std::erase_if(announced, ofCamera);
    return PxnErrSuccess;
}

PxnError SdkState::StartCapture(PxnHandle camera) {
    capturing.insert(camera);
    return PxnErrSuccess;
}

PxnError SdkState::EndCapture(PxnHandle camera, Lock& lock) {
    if (insideFrameCallback > 0) {
        return PxnErrInvalidCall;
    }
    WaitForFrameCallbacks(camera, lock);
    capturing.erase(camera);
    return PxnErrSuccess;
}

PxnError SdkState::Queue(PxnHandle camera, const PxnFrame* frame, PxnFrameCallback callback) {
    queued.push_back({camera, const_cast<PxnFrame*>(frame), callback, IndexOf(frame)});
    return PxnErrSuccess;
}

PxnError SdkState::Flush(PxnHandle camera) {
    std::erase_if(queued, [&](const Frame& frame) { return frame.camera == camera; });
    return PxnErrSuccess;
}

PxnError SdkState::WaitForFrame(PxnHandle camera, const PxnFrame* frame, std::uint32_t timeout,
                                Lock& lock) {
    if (model.completeWaitsAtOnce) {
        std::erase_if(queued, [&](const Frame& known) { return known.frame == frame; });
        FillFrame({camera, const_cast<PxnFrame*>(frame), nullptr, 0}, PxnFrameStatusComplete, 0, 0);
        return PxnErrSuccess;
    }
    const std::uint64_t began = generation;
    const auto ready = [&] {
        return generation != began ||
               std::any_of(completed.begin(), completed.end(),
                           [&](const Completed& done) { return done.frame == frame; });
    };
    if (timeout == 0xFFFFFFFFu) {
        changed.wait(lock, ready);
    } else if (!changed.wait_for(lock, std::chrono::milliseconds(timeout), ready)) {
        return PxnErrTimeout;
    }
    const auto found = std::find_if(completed.begin(), completed.end(),
                                    [&](const Completed& done) { return done.frame == frame; });
    if (found == completed.end()) {
        return PxnErrNotAvailable;
    }
    const PxnError code = found->code;
    completed.erase(found);
    return code;
}

bool SdkState::TakeQueued(std::uint64_t index, bool withCallback, Frame& taken) {
    const auto found = std::find_if(queued.begin(), queued.end(), [&](const Frame& known) {
        return known.index == index && (known.callback != nullptr) == withCallback;
    });
    if (found == queued.end()) {
        return false;
    }
    taken = *found;
    queued.erase(found);
    return true;
}

void SdkState::FillFrame(const Frame& target, std::int32_t status, std::uint64_t frameId,
                         std::uint8_t fill) {
    PxnFrame& frame = *target.frame;
    std::size_t index = 0;
    FindCamera(target.camera, index);
    if (index < model.cameras.size()) {
        Camera& camera = model.cameras[index];
        const auto number = [&](const char* name) {
            const Feature* feature = camera.Find(name);
            return feature != nullptr ? static_cast<std::uint32_t>(feature->intValue) : 0;
        };
        frame.width = number("Width");
        frame.height = number("Height");
        if (const Feature* format = camera.Find("PixelFormat")) {
            for (const EnumEntry& entry : format->entries) {
                if (entry.name == format->text) {
                    frame.pixelFormat = static_cast<std::uint32_t>(entry.intValue);
                }
            }
        }
    }
    frame.receiveStatus = status;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagFrameId | PxnFrameFlagImageData;
    frame.frameId = frameId;
    frame.imageData = frame.buffer;
    frame.imageSize = frame.bufferSize;
    frame.payloadType = PxnPayloadImage;
    if (frame.buffer != nullptr) {
        std::memset(frame.buffer, fill, frame.bufferSize);
    }
}

bool SdkState::StartDelivery(std::uint64_t index, std::int32_t status, std::uint64_t frameId,
                             std::uint8_t fill, Frame& taken) {
    const Lock lock(mutex);
    if (!TakeQueued(index, true, taken)) {
        return false;
    }
    FillFrame(taken, status, frameId, fill);
    ++runningFrameCallbacks[taken.camera];
    return true;
}

void SdkState::CallBack(const Frame& target) {
    PxnHandle stream = nullptr;
    {
        const Lock lock(mutex);
        std::size_t index = 0;
        if (FindCamera(target.camera, index)) {
            stream = StreamHandle(index);
        }
    }
    ++insideFrameCallback;
    target.callback(target.camera, stream, target.frame);
    --insideFrameCallback;
    {
        const Lock lock(mutex);
        --runningFrameCallbacks[target.camera];
    }
    changed.notify_all();
}

bool SdkState::Deliver(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                       std::uint8_t fill) {
    Frame taken;
    if (!StartDelivery(frame, status, frameId, fill, taken)) {
        return false;
    }
    CallBack(taken);
    return true;
}

bool SdkState::DeliverOnThread(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                               std::uint8_t fill) {
    Frame taken;
    if (!StartDelivery(frame, status, frameId, fill, taken)) {
        return false;
    }
    std::thread thread([this, taken] { CallBack(taken); });
    const Lock lock(mutex);
    deliveries.push_back(std::move(thread));
    return true;
}

void SdkState::WaitForDeliveries() {
    std::vector<std::thread> threads;
    {
        const Lock lock(mutex);
        threads.swap(deliveries);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

bool SdkState::Complete(std::uint64_t frame, PxnError code, std::uint8_t fill) {
    {
        const Lock lock(mutex);
        Frame taken;
        if (!TakeQueued(frame, false, taken)) {
            return false;
        }
        if (code == PxnErrSuccess) {
            FillFrame(taken, PxnFrameStatusComplete, 0, fill);
        }
        completed.push_back({taken.frame, code});
    }
    changed.notify_all();
    return true;
}

std::vector<std::uint64_t> SdkState::AnnouncedFrames() {
    const Lock lock(mutex);
    std::vector<std::uint64_t> result;
    for (const Frame& frame : announced) {
        result.push_back(frame.index);
    }
    return result;
}

std::vector<std::uint64_t> SdkState::QueuedFrames() {
    const Lock lock(mutex);
    std::vector<std::uint64_t> result;
    for (const Frame& frame : queued) {
        result.push_back(frame.index);
    }
    return result;
}

bool SdkState::IsCapturing() {
    const Lock lock(mutex);
    return !capturing.empty();
}

PxnError SdkState::Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                            void* context) {
    registrations.push_back({handle, name, callback, context});
    return PxnErrSuccess;
}

PxnError SdkState::Unregister(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                              Lock& lock) {
    const auto found = std::find_if(
        registrations.rbegin(), registrations.rend(), [&](const Registered& registration) {
            return registration.handle == handle && registration.feature == name &&
                   registration.callback == callback;
        });
    if (found == registrations.rend()) {
        return PxnErrNotFound;
    }
    registrations.erase(std::next(found).base());
    if (insideInvalidation == 0) {
        changed.wait(lock, [&] { return runningInvalidations == 0; });
    }
    return PxnErrSuccess;
}

std::vector<Registration> SdkState::Registrations() {
    std::vector<Registered> copy;
    {
        const Lock lock(mutex);
        copy = registrations;
    }
    std::vector<Registration> result;
    for (const Registered& registration : copy) {
        result.push_back({NameOf(registration.handle), registration.feature, registration.context});
    }
    return result;
}

unsigned SdkState::Fire(PxnHandle handle, const std::string& feature) {
    std::vector<Registered> matching;
    const char* name = nullptr;
    {
        const Lock lock(mutex);
        for (const Registered& registration : registrations) {
            if (registration.handle == handle && registration.feature == feature) {
                matching.push_back(registration);
            }
        }
        name = Intern(feature);
        ++runningInvalidations;
    }
    ++insideInvalidation;
    for (const Registered& registration : matching) {
        registration.callback(handle, name, registration.context);
    }
    --insideInvalidation;
    {
        const Lock lock(mutex);
        --runningInvalidations;
    }
    changed.notify_all();
    return static_cast<unsigned>(matching.size());
}

} // namespace scripted
