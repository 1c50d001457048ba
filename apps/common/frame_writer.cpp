// frame_writer.cpp - writes images on a background thread
#include "apps/common/frame_writer.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_writer.h"
#include "platform/file_system.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace {

constexpr std::uint64_t kMostBytesWaiting = 256u << 20;

} // namespace

FrameWriter::FrameWriter(const std::string& outputDirectory, const std::string& fileFormat)
    : directory(outputDirectory), format(fileFormat) {
    if (!platform::CreateDirectories(directory)) {
        throw CommandFailure("cannot make the directory " + directory);
    }
    const auto procedure = [](void* self) {
        static_cast<FrameWriter*>(self)->WriteAll();
    };
    thread = platform::Thread::Start(procedure, this, 0);
    if (!thread.IsJoinable()) {
        throw CommandFailure("cannot start a thread for writing images");
    }
}

FrameWriter::~FrameWriter() {
    {
        platform::MutexLock lock(mutex);
        ending = true;
    }
    work.Set();
    thread.Join();
}

std::vector<std::uint8_t> FrameWriter::TakeBuffer(std::size_t size) {
    std::vector<std::uint8_t> buffer;
    {
        platform::MutexLock lock(mutex);
        if (!spare.empty()) {
            buffer = std::move(spare.back());
            spare.pop_back();
        }
    }
    buffer.resize(size);
    return buffer;
}

void FrameWriter::Push(const ImageLayout& layout, std::vector<std::uint8_t> pixels) {
    for (;;) {
        progress.Reset();
        ThrowFailure();
        {
            platform::MutexLock lock(mutex);
            if (waiting.empty() || bytesWaiting + pixels.size() <= kMostBytesWaiting) {
                bytesWaiting += pixels.size();
                waiting.push_back({++pushed, layout, std::move(pixels)});
                break;
            }
        }
        progress.Wait(platform::kInfinite);
    }
    work.Set();
}

void FrameWriter::Finish() {
    for (;;) {
        progress.Reset();
        ThrowFailure();
        {
            platform::MutexLock lock(mutex);
            if (processed == pushed) {
                return;
            }
        }
        progress.Wait(platform::kInfinite);
    }
}

std::uint64_t FrameWriter::Written() const {
    platform::MutexLock lock(mutex);
    return written;
}

std::string FrameWriter::FileName(std::uint64_t number, const std::string& format,
                                  const ImageLayout& layout) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%06llu", static_cast<unsigned long long>(number));
    const std::string ending = format != "pnm" ? format : (layout.components > 1 ? "ppm" : "pgm");
    return std::string("frame-") + digits + "." + ending;
}

void FrameWriter::WriteAll() {
    for (;;) {
        work.Reset();
        Image image{};
        bool isEnd = false;
        {
            platform::MutexLock lock(mutex);
            isEnd = ending;
            if (!waiting.empty()) {
                image = std::move(waiting.front());
                waiting.pop_front();
                bytesWaiting -= image.pixels.size();
            }
        }
        if (image.number == 0) {
            if (isEnd) {
                return;
            }
            work.Wait(platform::kInfinite);
            continue;
        }
        std::string error;
        try {
            const std::string name = FileName(image.number, format, image.layout);
            WriteImage(platform::JoinPath(directory, name), image.layout, image.pixels.data());
        } catch (const std::exception& thrown) {
            error = thrown.what();
        }
        {
            platform::MutexLock lock(mutex);
            ++processed;
            if (error.empty()) {
                ++written;
            } else if (failure.empty()) {
                failure = error;
            }
            spare.push_back(std::move(image.pixels));
        }
        progress.Set();
    }
}

void FrameWriter::ThrowFailure() {
    platform::MutexLock lock(mutex);
    if (!failure.empty()) {
        throw CommandFailure(failure);
    }
}
