// recorder.cpp - records the frames of one camera
#include "apps/recording/recorder.h"

#include "apps/common/command_failure.h"
#include "apps/recording/recording_directory.h"
#include "platform/clock.h"
#include "platform/event.h"
#include "platform/file_system.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <numeric>
#include <thread>
#include <utility>

namespace {

constexpr std::uint32_t kMostThreads = 64;
constexpr std::size_t kLinesAtOnce = 1000;
constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;

std::uint32_t ThreadsOf(const RecorderOptions& options) {
    const std::uint32_t wanted =
        options.threads != 0 ? options.threads : std::thread::hardware_concurrency();
    return std::clamp(wanted, 1u, kMostThreads);
}

} // namespace

std::uint64_t RecorderCounts::Missing() const {
    return std::accumulate(missing.begin(), missing.end(), std::uint64_t{0});
}

Recorder::Recorder(std::unique_ptr<FrameStore> frameStore, RecorderOptions recorderOptions,
                   RecordingDescription recordingDescription)
    : store(std::move(frameStore)),
      options(std::move(recorderOptions)),
      description(std::move(recordingDescription)) {
    if (!options.directory.empty()) {
        description.complete = false;
        description.reason = "the recording has not ended";
        WriteRecordingDescription(options.directory, description.Json());
        index.Create(platform::JoinPath(options.directory, kFrameIndexName));
    }
    Start();
}

Recorder::~Recorder() {
    if (!isClosed) {
        Abandon();
        Close("the program ended before the recording did");
    }
}

void Recorder::Start() {
    const auto compress = [](void* self) {
        static_cast<Recorder*>(self)->CompressAll();
    };
    const auto write = [](void* self) {
        static_cast<Recorder*>(self)->WriteAll();
    };
    const std::uint32_t count = ThreadsOf(options);
    bool isStarted = true;
    for (std::uint32_t i = 0; i < count && isStarted; ++i) {
        compressors.push_back(platform::Thread::Start(compress, this, 0));
        isStarted = compressors.back().IsJoinable();
    }
    writer = platform::Thread::Start(write, this, 0);
    if (!isStarted || !writer.IsJoinable()) {
        Stop();
        throw CommandFailure("cannot start the threads that write frames");
    }
}

void Recorder::Stop() {
    {
        const platform::MutexLock lock(mutex);
        isEnding = true;
    }
    compressible.NotifyAll();
    writable.NotifyAll();
    for (platform::Thread& thread : compressors) {
        thread.Join();
    }
    writer.Join();
}

bool Recorder::HasRoom(std::uint64_t imageBytes) const {
    const platform::MutexLock lock(mutex);
    return Fits(imageBytes);
}

bool Recorder::WaitForRoom(std::uint64_t imageBytes, std::uint32_t timeoutMs) {
    const platform::MutexLock lock(mutex);
    if (!Fits(imageBytes)) {
        written.WaitFor(mutex, timeoutMs);
    }
    return Fits(imageBytes);
}

bool Recorder::Fits(std::uint64_t imageBytes) const {
    return bytesWaiting == 0 || bytesWaiting + imageBytes <= options.queueBytes;
}

std::vector<std::uint8_t> Recorder::TakeBuffer(std::size_t imageBytes) {
    std::vector<std::uint8_t> buffer;
    {
        const platform::MutexLock lock(mutex);
        if (!spareBuffers.empty()) {
            buffer = std::move(spareBuffers.back());
            spareBuffers.pop_back();
        }
    }
    buffer.resize(imageBytes);
    return buffer;
}

void Recorder::ReturnBuffer(std::vector<std::uint8_t> pixels) {
    const platform::MutexLock lock(mutex);
    spareBuffers.push_back(std::move(pixels));
}

std::unique_ptr<Recorder::Item> Recorder::NewItem() {
    const platform::MutexLock lock(mutex);
    if (spareItems.empty()) {
        return std::make_unique<Item>();
    }
    std::unique_ptr<Item> item = std::move(spareItems.back());
    spareItems.pop_back();
    item->encoded.pixels = nullptr;
    item->encoded.pixelBytes = 0;
    return item;
}

void Recorder::AddFrame(const FrameStamp& stamp, const ImageLayout& layout,
                        std::vector<std::uint8_t> pixels) {
    std::unique_ptr<Item> item = NewItem();
    item->isFrame = true;
    item->line.stamp = stamp;
    item->line.status = FrameStatus::kComplete;
    item->line.layout = layout;
    item->pixels = std::move(pixels);
    item->heldBytes = item->pixels.size();
    Push(std::move(item));
}

void Recorder::AddGap(const FrameGap& gap) {
    std::unique_ptr<Item> item = NewItem();
    item->isFrame = false;
    item->line.stamp = gap.first;
    item->line.status = gap.status;
    item->line.note = gap.note ? gap.note : "";
    item->count = gap.count;
    Push(std::move(item));
}

void Recorder::Push(std::unique_ptr<Item> item) {
    item->line.n = lastNumber + 1;
    lastNumber += item->count;
    if (item->line.stamp.hostNs) {
        *item->line.stamp.hostNs += options.unixMinusHostNs;
    }
    const bool isFrame = item->isFrame;
    {
        const platform::MutexLock lock(mutex);
        item->isReady = !isFrame;
        bytesWaiting += item->heldBytes;
        if (isFrame) {
            ++counts.waiting;
        } else {
            counts.missing[static_cast<std::size_t>(item->line.status)] += item->count;
        }
        queue.push_back(std::move(item));
    }
    if (isFrame) {
        compressible.NotifyOne();
    } else {
        writable.NotifyOne();
    }
}

void Recorder::CompressAll() {
    bool isWanted = false;
    while (Item* const item = TakeToCompress(isWanted)) {
        if (isWanted) {
            Compress(*item);
        }
        NoteCompressed(*item);
    }
}

Recorder::Item* Recorder::TakeToCompress(bool& isWanted) {
    const platform::MutexLock lock(mutex);
    for (;;) {
        while (nextToCompress < queue.size() && queue[nextToCompress]->isReady) {
            ++nextToCompress;
        }
        if (nextToCompress < queue.size()) {
            isWanted = !isAbandoned && failure.empty();
            return queue[nextToCompress++].get();
        }
        if (isEnding) {
            return nullptr;
        }
        compressible.Wait(mutex);
    }
}

void Recorder::Compress(Item& item) const {
    try {
        store->Encode(item.line.layout, item.pixels.data(), item.encoded);
    } catch (const std::exception& thrown) {
        item.failure = thrown.what();
    }
}

void Recorder::NoteCompressed(Item& item) {
    const EncodedFrame& encoded = item.encoded;
    const std::uint8_t* const begin = item.pixels.data();
    const bool isInImage = encoded.pixels >= begin && encoded.pixels <= begin + item.pixels.size();
    const std::uint64_t bytes = (isInImage ? item.pixels.size() : 0) + encoded.head.size() +
                                encoded.body.size() + encoded.tail.size();
    {
        const platform::MutexLock lock(mutex);
        if (!isInImage) {
            spareBuffers.push_back(std::move(item.pixels));
            item.pixels.clear();
        }
        bytesWaiting = bytesWaiting - item.heldBytes + bytes;
        item.heldBytes = bytes;
        item.isReady = true;
    }
    writable.NotifyOne();
}

void Recorder::WriteAll() {
    bool isWanted = false;
    while (std::unique_ptr<Item> item = TakeToWrite(isWanted)) {
        Write(*item, isWanted);
        NoteWritten(std::move(item));
    }
}

std::unique_ptr<Recorder::Item> Recorder::TakeToWrite(bool& isWanted) {
    const platform::MutexLock lock(mutex);
    for (;;) {
        if (!queue.empty() && queue.front()->isReady) {
            isWriting = true;
            isWanted = !isAbandoned && failure.empty();
            std::unique_ptr<Item> item = std::move(queue.front());
            queue.pop_front();
            nextToCompress -= nextToCompress > 0 ? 1 : 0;
            return item;
        }
        if (queue.empty() && isEnding) {
            return nullptr;
        }
        writable.Wait(mutex);
    }
}

void Recorder::Write(Item& item, bool isWanted) {
    FrameLine& line = item.line;
    if (item.isFrame && !isWanted) {
        line.status = FrameStatus::kLost;
        line.note = "given up before it was written";
    } else if (item.isFrame) {
        try {
            if (!item.failure.empty()) {
                throw CommandFailure(item.failure);
            }
            StoredFrame stored = store->Append(line.n, line.layout, item.encoded);
            line.file = std::move(stored.file);
            line.offset = stored.offset;
            line.bytes = stored.bytes;
        } catch (const std::exception& thrown) {
            NoteFailure(thrown.what());
            line.status = FrameStatus::kLost;
            line.note = "could not be written";
        }
    }
    if (options.directory.empty()) {
        return;
    }
    try {
        WriteLines(item);
    } catch (const CommandFailure& thrown) {
        NoteFailure(thrown.what());
        if (!line.file.empty()) {
            // A file of its own would be one that no line names.
            std::remove(platform::JoinPath(options.directory, line.file).c_str());
            line.file.clear();
            line.status = FrameStatus::kLost;
        }
    }
}

void Recorder::WriteLines(Item& item) {
    FrameLine& line = item.line;
    lines.clear();
    for (std::uint64_t i = 0; i < item.count; ++i) {
        line.AppendJson(lines, description.layout);
        lines += '\n';
        ++line.n;
        if (line.stamp.frameId) {
            ++*line.stamp.frameId;
        }
        if ((i + 1) % kLinesAtOnce == 0 || i + 1 == item.count) {
            index.Append(lines);
            lines.clear();
        }
    }
}

void Recorder::NoteWritten(std::unique_ptr<Item> item) {
    {
        const platform::MutexLock lock(mutex);
        isWriting = false;
        bytesWaiting -= item->heldBytes;
        if (item->isFrame) {
            --counts.waiting;
            if (item->line.status == FrameStatus::kComplete) {
                ++counts.recorded;
                counts.bytes += item->line.bytes;
            } else {
                ++counts.missing[static_cast<std::size_t>(FrameStatus::kLost)];
            }
        }
        if (!item->pixels.empty()) {
            spareBuffers.push_back(std::move(item->pixels));
        }
        if (spareItems.size() <= compressors.size()) {
            item->line = {};
            item->count = 1;
            item->pixels.clear();
            item->failure.clear();
            item->heldBytes = 0;
            spareItems.push_back(std::move(item));
        }
    }
    written.NotifyAll();
}

void Recorder::NoteFailure(const std::string& reason) {
    const platform::MutexLock lock(mutex);
    if (failure.empty()) {
        failure = reason;
    }
}

std::string Recorder::Failure() const {
    const platform::MutexLock lock(mutex);
    return failure;
}

RecorderCounts Recorder::Counts() const {
    const platform::MutexLock lock(mutex);
    return counts;
}

bool Recorder::WaitUntilWritten(std::uint32_t timeoutMs) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    const platform::MutexLock lock(mutex);
    while (!queue.empty() || isWriting) {
        if (timeoutMs == platform::kInfinite) {
            written.Wait(mutex);
            continue;
        }
        const std::uint64_t waitedMs =
            (platform::MonotonicNanoseconds() - begin) / kNanosecondsPerMillisecond;
        if (waitedMs >= timeoutMs) {
            return false;
        }
        written.WaitFor(mutex, timeoutMs - static_cast<std::uint32_t>(waitedMs));
    }
    return true;
}

std::uint64_t Recorder::Abandon() {
    const platform::MutexLock lock(mutex);
    isAbandoned = true;
    return static_cast<std::uint64_t>(
        std::count_if(queue.begin(), queue.end(), [](const auto& item) { return item->isFrame; }));
}

std::string Recorder::Close(const std::string& reason) {
    isClosed = true;
    WaitUntilWritten(platform::kInfinite);
    Stop();
    try {
        store->Finish();
        index.Close();
    } catch (const std::exception& thrown) {
        NoteFailure(thrown.what());
    }
    if (options.directory.empty()) {
        return Failure();
    }
    const RecorderCounts all = Counts();
    description.frames.recorded = all.recorded;
    description.frames.missing = all.Missing();
    description.reason = Failure().empty() ? reason : Failure();
    description.complete = description.reason.empty();
    try {
        WriteRecordingDescription(options.directory, description.Json());
    } catch (const CommandFailure& thrown) {
        NoteFailure(thrown.what());
    }
    return Failure();
}
