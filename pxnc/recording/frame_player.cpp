// frame_player.cpp - the stream of a camera that plays a recording
#include "pxnc/recording/frame_player.h"

#include "apps/common/command_failure.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

namespace playback {

std::shared_ptr<const Recording> Recording::Open(const std::string& directory, bool isFast) {
    auto recording = std::make_shared<Recording>();
    recording->directory = directory;
    recording->isFast = isFast;
    recording->index = ReadRecordingIndex(directory);
    const ImageLayout& layout = recording->index.description.layout;
    const PixelFormat* const format = FindPixelFormat(layout);
    if (!format) {
        throw CommandFailure(directory + ": no pixel format has images of " +
                             std::to_string(layout.components) + " components of " +
                             std::to_string(layout.bits) + " bits in " +
                             std::to_string(layout.allocatedBits) + ", colour coding " +
                             std::to_string(static_cast<int>(layout.colorCoding)));
    }
    recording->format = *format;
    if (layout.Size() > std::numeric_limits<std::uint32_t>::max()) {
        throw CommandFailure(directory + ": its images are larger than 4 GB");
    }
    recording->imageBytes = static_cast<std::uint32_t>(layout.Size());
    recording->plan = MakePlaybackPlan(recording->index);
    // Knows the format of the frames, or throws.
    const FrameReader reader(directory, recording->index.description.format);
    return recording;
}

FramePlayer::FramePlayer(std::shared_ptr<const Recording> played)
    : FrameBook(std::make_shared<skeleton::CallbackTurns>()),
      recording(std::move(played)),
      reader(recording->directory, recording->index.description.format) {}

FramePlayer::~FramePlayer() {
    {
        const platform::MutexLock lock(mutex);
        isEnding = true;
        changed.NotifyAll();
    }
    thread.Join();
}

PxnError FramePlayer::StartCapture() {
    const platform::MutexLock lock(mutex);
    if (isClosed) {
        return PxnErrNotAvailable;
    }
    if (!thread.IsJoinable()) {
        thread = platform::Thread::Start(&FramePlayer::ThreadProcedure, this, 0);
    }
    if (!thread.IsJoinable()) {
        return PxnErrResources;
    }
    SetCapturing(true);
    return PxnErrSuccess;
}

PxnError FramePlayer::EndCapture() {
    const platform::MutexLock lock(mutex);
    SetCapturing(false);
    WaitForRunningFrames();
    return PxnErrSuccess;
}

void FramePlayer::Play() {
    const platform::MutexLock lock(mutex);
    ++plays;
    isPlaying = true;
    isRead = false;
    round = 0;
    next = 0;
    position = 0;
    changed.NotifyAll();
}

void FramePlayer::Stop() {
    const platform::MutexLock lock(mutex);
    isPlaying = false;
    changed.NotifyAll();
}

void FramePlayer::SetRepeats(bool value) {
    const platform::MutexLock lock(mutex);
    repeats = value;
    changed.NotifyAll();
}

bool FramePlayer::HasEnded() const {
    const std::vector<PlannedFrame>& frames = recording->plan.frames;
    return !repeats && (frames.empty() || position == recording->index.lines[frames.back().line].n);
}

PxnError FramePlayer::ChunksOf(const PxnFrame& frame) const {
    const platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(&frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    return slot->state == SlotState::kDone ? PxnErrNoChunkData : PxnErrNoData;
}

void FramePlayer::ThreadProcedure(void* self) {
    static_cast<FramePlayer*>(self)->Run();
}

void FramePlayer::Run() {
    const platform::MutexLock lock(mutex);
    while (!isEnding) {
        if (!Advance()) {
            changed.Wait(mutex);
        }
    }
}

bool FramePlayer::Advance() {
    if (!isPlaying || (next == recording->plan.frames.size() && !BeginRound())) {
        return false;
    }
    if (!isRead) {
        ReadAhead();
        return true;
    }
    const bool isFirst = round == 0 && next == 0;
    const bool isTimed =
        !isFirst && !recording->isFast && recording->plan.length > std::chrono::nanoseconds(0);
    const bool canSend = IsCapturing() && !queue.empty();
    if (!isTimed && !canSend) {
        return false;
    }
    const skeleton::Clock::time_point now = skeleton::Clock::now();
    begin = isFirst ? now : begin;
    const skeleton::Clock::time_point due = begin + recording->plan.frames[next].due;
    if (isTimed && now < due) {
        changed.WaitUntil(mutex, due);
    } else if (canSend) {
        Send();
    } else {
        Next();
    }
    return true;
}

bool FramePlayer::BeginRound() {
    if (!repeats || recording->plan.frames.empty()) {
        return false;
    }
    ++round;
    next = 0;
    begin = std::max(begin + recording->plan.length, skeleton::Clock::now());
    return true;
}

void FramePlayer::ReadAhead() {
    const FrameLine line = NextLine();
    const std::uint64_t playsBefore = plays;
    mutex.Unlock();
    isImageBad = false;
    try {
        image.clear();
        if (!line.file.empty()) {
            reader.Read({line.file, line.offset, line.bytes}, line.layout, image);
        }
    } catch (const std::exception& failure) {
        isImageBad = true;
        image.clear();
        std::fprintf(stderr, "PxnC: frame %llu cannot be played: %s\n",
                     static_cast<unsigned long long>(line.n),
                     platform::PrintableText(failure.what()).c_str());
    }
    mutex.Lock();
    isRead = plays == playsBefore;
}

void FramePlayer::Send() {
    const RunningFrame running(*this);
    const SlotPointer slot = TakeQueued();
    const FrameLine& line = NextLine();
    const std::uint64_t roundOfFrame = round;
    Next();
    mutex.Unlock(); // a frame that is taken stays as it is
    Fill(*slot, line, roundOfFrame);
    mutex.Lock();
    HandBack(slot);
}

void FramePlayer::Next() {
    position = NextLine().n;
    ++next;
    isRead = false;
}

void FramePlayer::Fill(Slot& slot, const FrameLine& line, std::uint64_t roundOfFrame) const {
    PxnFrame& frame = *slot.frame;
    const RecordingDescription& description = recording->index.description;
    const bool hasImage = !image.empty() && slot.bufferSize >= image.size();
    frame.receiveStatus = isImageBad                                ? PxnFrameStatusInvalid
                          : line.status == FrameStatus::kIncomplete ? PxnFrameStatusIncomplete
                          : hasImage                                ? PxnFrameStatusComplete
                                                                    : PxnFrameStatusTooSmall;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagOffset | PxnFrameFlagPayloadType;
    frame.pixelFormat = recording->format.code;
    frame.width = description.layout.width;
    frame.height = description.layout.height;
    frame.offsetX = static_cast<std::uint32_t>(description.offsetX.value_or(0));
    frame.offsetY = static_cast<std::uint32_t>(description.offsetY.value_or(0));
    frame.payloadType = PxnPayloadImage;
    frame.chunkDataPresent = 0;
    frame.imageSize = recording->imageBytes;
    frame.imageData = nullptr;
    slot.payload = 0;
    if (line.stamp.frameId) {
        frame.receiveFlags |= PxnFrameFlagFrameId;
        frame.frameId = *line.stamp.frameId + roundOfFrame * recording->plan.idSpan;
    }
    if (line.stamp.timestampNs) {
        frame.receiveFlags |= PxnFrameFlagTimestamp;
        frame.timestamp = *line.stamp.timestampNs + roundOfFrame * recording->plan.timestampSpan;
    }
    if (hasImage) {
        frame.receiveFlags |= PxnFrameFlagImageData;
        frame.imageData = slot.buffer;
        slot.payload = recording->imageBytes;
        std::memcpy(slot.buffer, image.data(), image.size());
    }
}

} // namespace playback
