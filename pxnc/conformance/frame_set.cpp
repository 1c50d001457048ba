// frame_set.cpp - frames of a check and what becomes of them
#include "pxnc/conformance/frame_set.h"

#include "pxnc/conformance/waiting.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace conformance {
namespace {

constexpr std::uint8_t kPattern = 0xA5;
constexpr std::size_t kMargin = 64; // bytes before and behind the buffer

void* ToContext(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

bool IsPattern(const std::uint8_t* begin, std::size_t size) {
    return std::all_of(begin, begin + size, [](std::uint8_t byte) { return byte == kPattern; });
}

} // namespace

FrameSet::FrameSet(Session& checkedSession, Findings& checkFindings, std::size_t count)
    : FrameSet(checkedSession, checkFindings, count, {checkedSession.Camera()}) {}

FrameSet::FrameSet(Session& checkedSession, Findings& checkFindings, std::size_t count,
                   std::vector<PxnHandle> streams)
    : session(checkedSession),
      sdk(session.Sdk()),
      findings(checkFindings),
      camera(session.Camera()),
      handles(std::move(streams)),
      knownStreams(session.Streams()),
      memory(count),
      frames(count),
      copies(count),
      isQueued(count) {
    for (std::size_t index = 0; index < count; ++index) {
        std::uint32_t payload = 0;
        findings.RequireSuccess(sdk.PxnPayloadSizeGet(HandleOf(index), &payload),
                                "PxnPayloadSizeGet");
        memory[index].resize(payload + 2 * kMargin);
        PxnFrame& frame = frames[index];
        frame.buffer = memory[index].data() + kMargin;
        frame.bufferSize = payload;
        frame.context[0] = this;
        frame.context[1] = &frame;
        frame.context[2] = ToContext(index);
        frame.context[3] = ToContext(kPattern);
        Renew(index);
    }
}

FrameSet::~FrameSet() {
    if (!isForgotten) {
        StopCamera();
        for (const PxnHandle handle : handles) {
            sdk.PxnCaptureEnd(handle);
            sdk.PxnFrameRevokeAll(handle);
        }
    }
}

void FrameSet::Renew(std::size_t index) {
    std::fill(memory[index].begin(), memory[index].end(), kPattern);
    std::memcpy(&copies[index], &frames[index], sizeof frames[index]); // padding included
}

void FrameSet::Announce() {
    for (std::size_t index = 0; index < frames.size(); ++index) {
        findings.RequireSuccess(Announce(index), "PxnFrameAnnounce");
    }
}

PxnError FrameSet::Announce(std::size_t index) {
    return sdk.PxnFrameAnnounce(HandleOf(index), &frames[index], sizeof frames[index]);
}

void FrameSet::QueueAll() {
    for (std::size_t index = 0; index < frames.size(); ++index) {
        findings.RequireSuccess(Queue(index), "PxnCaptureFrameQueue");
    }
}

PxnError FrameSet::Queue(std::size_t index) {
    const bool was = isQueued[index].exchange(true);
    const PxnError result = sdk.PxnCaptureFrameQueue(HandleOf(index), &frames[index], OnFrame);
    if (result != PxnErrSuccess) {
        isQueued[index] = was;
    }
    return result;
}

PxnError FrameSet::QueueForWait(std::size_t index) {
    return sdk.PxnCaptureFrameQueue(HandleOf(index), &frames[index], nullptr);
}

void FrameSet::Start() {
    StartCapture();
    const PxnError result = session.GetDriver().StartFrames(sdk, camera);
    if (result == PxnErrNotFound) {
        throw NotApplicable("the camera has no command AcquisitionStart");
    }
    findings.RequireSuccess(result, "AcquisitionStart");
}

void FrameSet::StartCapture() {
    for (const PxnHandle handle : handles) {
        findings.RequireSuccess(sdk.PxnCaptureStart(handle), "PxnCaptureStart");
    }
}

void FrameSet::EndCapture() {
    for (const PxnHandle handle : handles) {
        findings.ExpectSuccess(sdk.PxnCaptureEnd(handle), "PxnCaptureEnd");
    }
}

void FrameSet::StopCamera() {
    session.GetDriver().StopFrames(sdk, camera);
}

PxnError FrameSet::Flush() {
    PxnError result = PxnErrSuccess;
    for (const PxnHandle handle : handles) {
        result = std::min(result, sdk.PxnCaptureQueueFlush(handle));
    }
    std::fill(isQueued.begin(), isQueued.end(), false);
    return result;
}

PxnError FrameSet::RevokeAll() {
    PxnError result = PxnErrSuccess;
    for (const PxnHandle handle : handles) {
        result = std::min(result, sdk.PxnFrameRevokeAll(handle));
    }
    std::fill(isQueued.begin(), isQueued.end(), false);
    return result;
}

bool FrameSet::WaitForReturns(std::uint64_t count, std::uint32_t timeoutMs) {
    return WaitUntil(
        [&] {
            session.GetDriver().LetFramesCome();
            return returns >= count;
        },
        timeoutMs);
}

void FrameSet::RequireReturns(std::uint64_t count) {
    findings.Require(WaitForReturns(count, kWaitMs),
                     "only " + std::to_string(returns) + " of " + std::to_string(count) +
                         " frames came back within " + std::to_string(kWaitMs / 1000) + " s");
}

bool FrameSet::IsUntouched(std::size_t index) const {
    // Byte by byte, since padding is not to be written either.
    const auto* const record = reinterpret_cast<const std::uint8_t*>(&frames[index]);
    const auto* const copy = reinterpret_cast<const std::uint8_t*>(&copies[index]);
    return IsBufferUntouched(index) && std::equal(record, record + sizeof(PxnFrame), copy);
}

bool FrameSet::IsBufferUntouched(std::size_t index) const {
    return IsPattern(memory[index].data(), memory[index].size());
}

bool FrameSet::AreMarginsUntouched(std::size_t index) const {
    const std::vector<std::uint8_t>& bytes = memory[index];
    return IsPattern(bytes.data(), kMargin) &&
           IsPattern(bytes.data() + bytes.size() - kMargin, kMargin);
}

void PXN_CALL FrameSet::OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame) {
    auto& self = *static_cast<FrameSet*>(frame->context[0]);
    const auto index = reinterpret_cast<std::uintptr_t>(frame->context[2]);
    self.Returned(camera, stream, *frame, index);
}

void FrameSet::Returned(PxnHandle givenCamera, PxnHandle givenStream, const PxnFrame& frame,
                        std::size_t index) {
    if (++running > 1) {
        ++overlaps;
    }
    if (!isQueued[index].exchange(false)) {
        ++strays;
    }
    const bool isKnownStream =
        std::find(knownStreams.begin(), knownStreams.end(), givenStream) != knownStreams.end();
    if (givenCamera != camera || !isKnownStream || &frame != &frames[index] ||
        frame.context[1] != &frame || frame.context[3] != ToContext(kPattern)) {
        ++strangers;
    }
    if (onFrame) {
        onFrame(index);
    }
    ++returns;
    --running;
}

} // namespace conformance
