// frame_set.cpp - frames to announce and a record of what came into them
#include "tests/pxnc/genicam/frame_set.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace genicam_test {

FrameSet::FrameSet(PxnHandle cameraHandle, std::size_t count, std::uint32_t bytes)
    : camera(cameraHandle), memory(count, std::vector<unsigned char>(bytes)), frames(count) {
    for (std::size_t i = 0; i < count; ++i) {
        frames[i].buffer = memory[i].data();
        frames[i].bufferSize = bytes;
        frames[i].context[0] = this;
        frames[i].context[1] = &frames[i];
        frames[i].context[2] = reinterpret_cast<void*>(i);
    }
}

FrameSet::~FrameSet() {
    SdkLibrary::Instance().CaptureEnd(camera);
    SdkLibrary::Instance().FrameRevokeAll(camera);
}

void FrameSet::Announce() {
    for (PxnFrame& frame : frames) {
        ASSERT_EQ(SdkLibrary::Instance().FrameAnnounce(camera, &frame, sizeof frame),
                  PxnErrSuccess);
    }
}

void FrameSet::Queue() {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        ASSERT_EQ(Queue(i), PxnErrSuccess);
    }
}

PxnError FrameSet::Queue(std::size_t index) {
    return SdkLibrary::Instance().CaptureFrameQueue(camera, &frames[index], OnFrame);
}

void FrameSet::StartAcquisition() const {
    ASSERT_EQ(SdkLibrary::Instance().FeatureCommandRun(camera, "AcquisitionStart"), PxnErrSuccess);
}

void FrameSet::StopAndRevoke() const {
    const SdkLibrary& sdk = SdkLibrary::Instance();
    EXPECT_EQ(sdk.FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
    EXPECT_EQ(sdk.CaptureEnd(camera), PxnErrSuccess);
    EXPECT_EQ(sdk.CaptureQueueFlush(camera), PxnErrSuccess);
    EXPECT_EQ(sdk.FrameRevokeAll(camera), PxnErrSuccess);
}

std::vector<FrameSet::Received> FrameSet::Frames() const {
    const platform::MutexLock lock(mutex);
    return received;
}

std::size_t FrameSet::Count() const {
    const platform::MutexLock lock(mutex);
    return received.size();
}

bool FrameSet::WaitForCount(std::size_t count) const {
    return support::WaitUntil([this, count] { return Count() >= count; });
}

void PXN_CALL FrameSet::OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame) {
    auto& self = *static_cast<FrameSet*>(frame->context[0]);
    Received copy = {*frame, camera, stream, {}};
    if (self.keepsPictures && frame->receiveStatus == PxnFrameStatusComplete) {
        const auto* bytes = static_cast<const unsigned char*>(frame->imageData);
        copy.picture.assign(bytes, bytes + frame->imageSize);
    }
    {
        const platform::MutexLock lock(self.mutex);
        self.received.push_back(std::move(copy));
    }
    if (self.onFrame) {
        self.onFrame(frame);
    }
}

} // namespace genicam_test
