// trace_layout.h - how a trace lies in its file
//
// A header, then blocks of equal size that are used in turn, so that the newest record replaces the
// oldest ones. The records are a stream of bytes over the blocks in the order of their numbers.
// Every step of writing leaves a file that can be read up to the record before.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sdktrace {

constexpr char kFileMark[8] = {'P', 'X', 'N', 'T', 'R', 'A', 'C', 'E'};
constexpr std::uint32_t kLayoutVersion = 1;
constexpr std::size_t kHeaderSize = 4096;
constexpr std::size_t kBlockSize = 64 * 1024;
constexpr std::size_t kMegabyte = 1024 * 1024;

/// At the beginning of the file.
struct FileHeader {
    char mark[8];
    std::uint32_t layoutVersion;
    std::uint32_t blockSize;
    std::uint16_t libraryVersion[4]; ///< the file version of the SDK's library
};

/// At the beginning of each block.
struct BlockHeader {
    std::uint64_t number; ///< 1 for the first block that was written; 0: not yet used
    std::uint32_t used;   ///< bytes behind the header
    std::uint32_t first;  ///< where among them the first record begins; kNoRecord: none does
};
constexpr std::uint32_t kNoRecord = 0xFFFFFFFF;
constexpr std::size_t kBlockContent = kBlockSize - sizeof(BlockHeader);

enum class RecordType : std::uint8_t {
    kCallBegin = 1,
    kCallEnd = 2,
    kCallbackBegin = 3,
    kCallbackEnd = 4,
};

/// At the beginning of each record.
struct RecordHeader {
    std::uint32_t size; ///< with this header
    RecordType type;
    std::uint8_t entry;
    std::uint16_t isWithoutContent; ///< 1: it was too big
    std::uint64_t time;             ///< ns since the trace was begun
    std::uint64_t call;             ///< the same for begin and end
    std::uint32_t thread;           ///< counted from 1
    std::int32_t result;            ///< of an end
};
static_assert(sizeof(RecordHeader) == 32);

} // namespace sdktrace
