// trace_reader.cpp - the calls and callbacks of a trace
#include "pxnc/trace/trace_reader.h"

#include "platform/file_system.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace sdktrace {
namespace {

struct BlockView {
    BlockHeader header;
    std::string_view content;
};

std::vector<BlockView> ReadBlocks(std::string_view file) {
    std::vector<BlockView> blocks;
    for (std::size_t at = kHeaderSize; at + sizeof(BlockHeader) <= file.size(); at += kBlockSize) {
        BlockView block;
        std::memcpy(&block.header, file.data() + at, sizeof block.header);
        block.content = file.substr(at + sizeof(BlockHeader), kBlockContent);
        if (block.header.number != 0) {
            block.content = block.content.substr(0, block.header.used);
            blocks.push_back(block);
        }
    }
    std::sort(blocks.begin(), blocks.end(), [](const BlockView& left, const BlockView& right) {
        return left.header.number < right.header.number;
    });
    return blocks;
}

/// The records' bytes from the first record on that is whole.
std::string JoinBlocks(const std::vector<BlockView>& blocks, bool& hasBeginning) {
    std::size_t first = blocks.size();
    // A block that was being replaced leaves a gap behind the oldest one.
    while (first > 0 && (first == blocks.size() ||
                         blocks[first - 1].header.number + 1 == blocks[first].header.number)) {
        --first;
    }
    hasBeginning = blocks.empty() || blocks[first].header.number == 1;
    std::string joined;
    bool isAligned = hasBeginning;
    for (std::size_t i = first; i < blocks.size(); ++i) {
        std::string_view content = blocks[i].content;
        if (!isAligned) {
            if (blocks[i].header.first > content.size()) {
                continue;
            }
            content.remove_prefix(blocks[i].header.first);
            isAligned = true;
        }
        joined += content;
    }
    return joined;
}

// Ten years in ns: sums of such times do not overflow.
constexpr std::uint64_t kLatestTime = 10ull * 365 * 24 * 3600 * 1'000'000'000;

bool IsKnown(const RecordHeader& header) {
    const bool isOfCallback =
        header.type == RecordType::kCallbackBegin || header.type == RecordType::kCallbackEnd;
    return header.size >= sizeof header && header.entry < kEntryCount &&
           header.type >= RecordType::kCallBegin && header.type <= RecordType::kCallbackEnd &&
           isOfCallback == IsCallbackEntry(static_cast<Entry>(header.entry)) &&
           header.time <= kLatestTime;
}

bool IsEndOf(const Event& end, const Event& begin) {
    return end.entry == begin.entry && end.thread == begin.thread && end.time >= begin.time;
}

/// Ends at a record that is not whole, as the last one after a crash.
bool ReadRecords(std::string_view bytes, std::vector<Event>& events) {
    std::unordered_map<std::uint64_t, std::size_t> beginnings;
    while (bytes.size() >= sizeof(RecordHeader)) {
        RecordHeader header;
        std::memcpy(&header, bytes.data(), sizeof header);
        if (!IsKnown(header)) {
            return false;
        }
        if (header.size > bytes.size()) {
            return true;
        }
        const std::string_view content = bytes.substr(sizeof header, header.size - sizeof header);
        bytes.remove_prefix(header.size);
        Event event;
        event.type = header.type;
        event.entry = static_cast<Entry>(header.entry);
        event.time = header.time;
        event.thread = header.thread;
        event.result = header.result;
        event.isWithoutContent = header.isWithoutContent != 0;
        const bool isBegin = IsBegin(event);
        if (!event.isWithoutContent && header.type != RecordType::kCallbackEnd) {
            auto values = isBegin ? DecodeArguments(event.entry, content)
                                  : DecodeResults(event.entry, content);
            if (!values) {
                return false;
            }
            event.values = std::move(*values);
        }
        if (isBegin) {
            beginnings[header.call] = events.size();
        } else if (const auto found = beginnings.find(header.call);
                   found != beginnings.end() && IsEndOf(event, events[found->second])) {
            event.partner = found->second;
            events[found->second].partner = events.size();
            beginnings.erase(found);
        }
        events.push_back(std::move(event));
    }
    return true;
}

} // namespace

bool ParseTrace(std::string_view content, Trace& trace, std::string& error) {
    FileHeader header;
    if (content.size() < kHeaderSize ||
        std::memcmp(content.data(), kFileMark, sizeof kFileMark) != 0) {
        error = "it is no trace";
        return false;
    }
    std::memcpy(&header, content.data(), sizeof header);
    if (header.layoutVersion != kLayoutVersion || header.blockSize != kBlockSize) {
        error = "it has been written by another version";
        return false;
    }
    trace = {};
    std::copy(std::begin(header.libraryVersion), std::end(header.libraryVersion),
              trace.libraryVersion.begin());
    const std::string records = JoinBlocks(ReadBlocks(content), trace.hasBeginning);
    if (!ReadRecords(records, trace.events)) {
        error = "it is damaged behind event " + std::to_string(trace.events.size());
        return false;
    }
    return true;
}

bool ReadTrace(const std::string& path, Trace& trace, std::string& error) {
    std::string content;
    return platform::ReadWholeFile(path, content, &error) && ParseTrace(content, trace, error);
}

} // namespace sdktrace
