// fuzz_trace.cpp - traces of a camera SDK, printed, compared and played back
#include "apps/pyxen-tool/trace_lines.h"
#include "fuzz/fuzz_file.h"
#include "platform/mutex.h"
#include "pxnc/trace/player.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

using namespace sdktrace;

namespace {

constexpr std::size_t kMostBytes = 16384;       // of a place; an input cannot fill more
constexpr std::uint64_t kLongestPause = 50'000; // ns
constexpr std::size_t kMostThreads = 6;
constexpr std::chrono::milliseconds kPatience{1};

/// At the beginning of an input; the records follow.
struct Shape {
    std::uint8_t isSwapped; ///< bit 0: the second block stands first
    std::uint8_t isLater;   ///< bit 0: the trace has lost its beginning
    std::uint16_t length;   ///< of the records in the first block
    std::uint16_t first[2]; ///< where the first record of each block begins
};

/// The records' times, which playing back takes, made short.
void ShortenTimes(std::string& records) {
    RecordHeader header;
    for (std::size_t at = 0; at + sizeof header <= records.size(); at += header.size) {
        std::memcpy(&header, records.data() + at, sizeof header);
        header.time %= kLongestPause;
        std::memcpy(records.data() + at, &header, sizeof header);
        if (header.size < sizeof header) {
            break;
        }
    }
}

std::string Block(std::uint64_t number, std::uint32_t first, std::string_view content) {
    const BlockHeader header{number, static_cast<std::uint32_t>(content.size()), first};
    std::string block(reinterpret_cast<const char*>(&header), sizeof header);
    block += content;
    block.resize(kBlockSize);
    return block;
}

std::string MakeFile(const std::uint8_t* data, std::size_t size) {
    Shape shape;
    std::memcpy(&shape, data, sizeof shape);
    std::string records(reinterpret_cast<const char*>(data) + sizeof shape, size - sizeof shape);
    ShortenTimes(records);
    FileHeader header{{}, kLayoutVersion, kBlockSize, {2, 1, 0, 7}};
    std::memcpy(header.mark, kFileMark, sizeof kFileMark);
    std::string file(reinterpret_cast<const char*>(&header), sizeof header);
    file.resize(kHeaderSize);
    const std::string_view all = records;
    const std::string_view front = all.substr(0, shape.length);
    const std::uint64_t number = 1 + shape.isLater % 2;
    std::string blocks[2] = {Block(number, shape.first[0], front), ""};
    if (front.size() < all.size()) {
        blocks[1] = Block(number + 1, shape.first[1], all.substr(front.size()));
    }
    return file + blocks[shape.isSwapped % 2] + blocks[1 - shape.isSwapped % 2];
}

void Print(const Trace& trace) {
    for (const bool isWhole : {false, true}) {
        TraceFilter filter;
        filter.isWhole = isWhole;
        PrintTrace(trace, filter, [](const std::string& line) {
            if (std::any_of(line.begin(), line.end(), [](unsigned char c) { return c < ' '; })) {
                std::abort(); // it could forge lines
            }
        });
    }
    SummariseTrace(trace);
    for (const std::string& difference : CompareTraces(trace, trace)) {
        if (!difference.empty()) {
            std::abort(); // a trace is as itself
        }
    }
}

/// Calls what the host in the trace called, with objects of its own.
class Host {
public:
    explicit Host(const Trace& tracedSession) : trace(tracedSession) { current = this; }

    /// It has to outlive the player, which calls back.
    void Run(Player& answeringPlayer) {
        player = &answeringPlayer;
        std::vector<std::uint32_t> numbers;
        for (const Event& event : trace.events) {
            const bool isNew =
                std::find(numbers.begin(), numbers.end(), event.thread) == numbers.end();
            if (isNew && numbers.size() < kMostThreads) {
                numbers.push_back(event.thread);
                std::thread([&] { RunThread(event.thread); }).join();
            }
        }
    }

private:
    struct Context {
        Entry entry; // of the function that it was passed to
    };
    struct Frame {
        PxnFrame frame{};
        std::vector<char> buffer;
    };
    /// What the arguments of one call point to.
    struct Arguments {
        std::deque<std::string> texts;
        std::deque<std::wstring> paths;
        std::deque<std::unique_ptr<char[]>> places;
    };

    void RunThread(std::uint32_t number) {
        int depth = 0; // in callbacks
        for (const Event& event : trace.events) {
            if (event.thread != number) {
                continue;
            }
            if (IsCallback(event)) {
                depth += IsBegin(event) ? 1 : -1;
            } else if (IsBegin(event) && depth == 0) {
                Call(event);
            }
        }
    }

    void Call(const Event& begin) {
        Arguments arguments;
        Words words{};
        for (std::size_t i = 0; i < begin.values.size(); ++i) {
            words[i] = WordOf(begin, i, arguments);
        }
        for (std::size_t i = 0; i < begin.values.size(); ++i) {
            const Parameter& parameter = RowOf(begin.entry).parameters[i];
            if (parameter.kind == Kind::kBytes) {
                words[parameter.limit] = begin.values[i].text.size(); // not more than there are
            }
        }
        player->Call(begin.entry, words);
    }

    std::uint64_t WordOf(const Event& begin, std::size_t number, Arguments& arguments) {
        const Parameter& parameter = RowOf(begin.entry).parameters[number];
        const Value& value = begin.values[number];
        if (value.type == Value::Type::kNone) {
            return 0;
        }
        switch (parameter.kind) {
        case Kind::kText:
        case Kind::kBytes:
            return ToWord(arguments.texts.emplace_back(value.text).c_str());
        case Kind::kPath:
            return ToWord(
                arguments.paths.emplace_back(value.text.begin(), value.text.end()).c_str());
        case Kind::kFrame:
        case Kind::kAnnouncedFrame:
        case Kind::kFrameToFill:
            return value.word == 0 ? 0 : ToWord(FrameOf(value));
        case Kind::kCallback:
            return value.word == 0 ? 0 : ToWord(CallbackOf(begin.entry));
        case Kind::kContext:
            return value.word == 0 ? 0 : ToWord(ContextOf(begin.entry, value.word));
        default:
            break;
        }
        if (!IsPlace(parameter.kind)) {
            return value.word;
        }
        std::uint64_t limit = 1;
        if (parameter.limit != 0) {
            limit = begin.values[parameter.limit].word;
        }
        const std::size_t size = std::min<std::uint64_t>(
            kMostBytes, std::min<std::uint64_t>(limit, kMostBytes) * SizeOf(parameter));
        return ToWord(arguments.places.emplace_back(new char[size]).get());
    }

    static std::size_t SizeOf(const Parameter& place) {
        switch (place.kind) {
        case Kind::kOutRecord:
        case Kind::kOutRecords:
            return RowOf(place.record).size;
        case Kind::kOutNumber:
            return sizeof(std::uint32_t);
        case Kind::kOutFlag:
        case Kind::kOutBytes:
        case Kind::kOutChars:
        case Kind::kOutAnswer:
            return 1;
        default:
            return sizeof(std::uint64_t);
        }
    }

    PxnFrame* FrameOf(const Value& value) {
        const platform::MutexLock lock(mutex);
        std::unique_ptr<Frame>& frame = frames[value.word];
        if (!frame) {
            frame = std::make_unique<Frame>();
            if (!value.parts.empty()) {
                frame->frame.bufferSize = static_cast<std::uint32_t>(value.parts[0].word);
            }
            if (frame->frame.bufferSize <= kMostBytes) {
                frame->buffer.resize(frame->frame.bufferSize);
                frame->frame.buffer = frame->buffer.data();
            }
        }
        return &frame->frame;
    }

    Context* ContextOf(Entry entry, std::uint64_t word) {
        const platform::MutexLock lock(mutex);
        return &contexts.try_emplace({entry, word}, Context{entry}).first->second;
    }

    static void* CallbackOf(Entry entry) {
        switch (entry) {
        case Entry::kPxnChunkDataAccess:
            return reinterpret_cast<void*>(&OnChunk);
        case Entry::kPxnCaptureFrameQueue:
            return reinterpret_cast<void*>(&OnFrame);
        default:
            return reinterpret_cast<void*>(&OnChange);
        }
    }

    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle, PxnFrame* frame) {
        if (!current->Has(frame)) {
            std::abort();
        }
        const auto* const image = static_cast<const char*>(frame->imageData);
        const auto* const buffer = static_cast<const char*>(frame->buffer);
        if (image && (image < buffer || image > buffer + frame->bufferSize)) {
            std::abort();
        }
        current->player->Call(Entry::kPxnCaptureFrameQueue, ToWords(camera, frame, &OnFrame));
    }
    static void PXN_CALL OnChange(PxnHandle, const char* name, void* context) {
        volatile std::size_t length = name ? std::strlen(name) : 0;
        static_cast<void>(length);
        Expect(context, Entry::kPxnFeatureInvalidationRegister);
    }
    static PxnError PXN_CALL OnChunk(PxnHandle, void* context) {
        Expect(context, Entry::kPxnChunkDataAccess);
        return PxnErrSuccess;
    }
    static void Expect(const void* context, Entry entry) {
        if (context && static_cast<const Context*>(context)->entry != entry) {
            std::abort(); // it was passed to another function
        }
    }

    bool Has(const PxnFrame* frame) {
        const platform::MutexLock lock(mutex);
        return std::any_of(frames.begin(), frames.end(),
                           [&](const auto& known) { return &known.second->frame == frame; });
    }

    static Host* current;

    Player* player = nullptr;
    const Trace& trace;
    platform::Mutex mutex;
    std::map<std::uint64_t, std::unique_ptr<Frame>> frames GUARDED_BY(mutex);
    std::map<std::pair<Entry, std::uint64_t>, Context> contexts GUARDED_BY(mutex);
};

Host* Host::current = nullptr;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < sizeof(Shape)) {
        return 0;
    }
    const std::string content = MakeFile(data, size);
    Trace trace;
    std::string problem;
    if (!ParseTrace(content, trace, problem)) {
        return 0;
    }
    Print(trace);
    const FuzzFile file(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
    Host host(trace);
    if (const auto player = Player::Open(file.Path(), problem, kPatience)) {
        host.Run(*player);
        player->Finish();
    }
    return 0;
}
