// trace_writer.cpp - the file that a session is traced to
#include "pxnc/trace/trace_writer.h"

#include "platform/clock.h"
#include "platform/sleep.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace sdktrace {
namespace {

constexpr int kAttempts = 20;
constexpr std::uint32_t kAttemptMs = 10;

/// Other processes, and whoever looks after a crash, see it after everything before it.
template <typename T>
void Publish(T& place, T value) {
    std::atomic_ref<T>(place).store(value, std::memory_order_release);
}

} // namespace

bool TraceWriter::Create(const WriterOptions& options, std::string& error) {
    const platform::MutexLock lock(mutex);
    const std::size_t blocks = options.megabytes * kMegabyte / kBlockSize;
    if (!file.Create(options.path, kHeaderSize + blocks * kBlockSize, &error)) {
        return false;
    }
    FileHeader header{};
    std::copy(std::begin(kFileMark), std::end(kFileMark), header.mark);
    header.layoutVersion = kLayoutVersion;
    header.blockSize = kBlockSize;
    std::copy(options.libraryVersion.begin(), options.libraryVersion.end(), header.libraryVersion);
    std::memcpy(file.Data(), &header, sizeof header);
    blockCount = blocks;
    beginning = platform::MonotonicNanoseconds();
    NextBlock();
    return true;
}

void TraceWriter::Append(RecordType type, Entry entry, std::uint64_t call, std::uint32_t thread,
                         std::int32_t result, std::string_view content) noexcept {
    RecordHeader header{};
    header.type = type;
    header.entry = static_cast<std::uint8_t>(entry);
    if (content.size() > MostContent()) {
        header.isWithoutContent = 1;
        content = {};
    }
    header.size = static_cast<std::uint32_t>(sizeof header + content.size());
    header.call = call;
    header.thread = thread;
    header.result = result;
    const platform::MutexLock lock(mutex);
    if (!file.Data()) {
        return;
    }
    header.time = platform::MonotonicNanoseconds() - beginning; // in the order of the records
    if (Block()->used == kBlockContent) {
        NextBlock();
    }
    BlockHeader* const block = Block();
    if (block->first == kNoRecord) {
        Publish(block->first, block->used);
    }
    Copy(&header, sizeof header);
    Copy(content.data(), content.size());
}

void TraceWriter::Finish() noexcept {
    // At the end of a process a thread that held the mutex may be gone.
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (mutex.TryLock()) {
            const std::size_t last = file.Data() ? Block()->used : 0;
            const std::size_t blocks = std::min<std::size_t>(blocksBegun, blockCount);
            const bool isRound = blocksBegun > blockCount;
            file.Close(kHeaderSize + blocks * kBlockSize - (isRound ? 0 : kBlockContent - last));
            mutex.Unlock();
            return;
        }
        platform::SleepMs(kAttemptMs);
    }
}

BlockHeader* TraceWriter::Block() const {
    const std::size_t index = (blocksBegun - 1) % blockCount;
    return reinterpret_cast<BlockHeader*>(file.Data() + kHeaderSize + index * kBlockSize);
}

void TraceWriter::NextBlock() {
    ++blocksBegun;
    BlockHeader* const block = Block();
    Publish(block->used, std::uint32_t{0});
    Publish(block->first, kNoRecord);
    Publish(block->number, blocksBegun);
}

void TraceWriter::Copy(const void* bytes, std::size_t length) {
    const auto* source = static_cast<const char*>(bytes);
    while (length > 0) {
        if (Block()->used == kBlockContent) {
            NextBlock();
        }
        BlockHeader* const block = Block();
        const std::size_t count = std::min(length, kBlockContent - block->used);
        std::memcpy(reinterpret_cast<char*>(block + 1) + block->used, source, count);
        Publish(block->used, static_cast<std::uint32_t>(block->used + count));
        source += count;
        length -= count;
    }
}

} // namespace sdktrace
