// recorder.cpp - traces calls and callbacks
#include "pxnc/trace/recorder.h"

#include "pxnc/trace/encoder.h"

namespace sdktrace {
namespace {

/// Numbers are not used again, as those of the system are.
std::uint32_t ThisThread() {
    static std::atomic<std::uint32_t> threads{0};
    thread_local const std::uint32_t number = ++threads;
    return number;
}

} // namespace

bool Recorder::Create(const WriterOptions& options, bool pixels, std::string& error) {
    if (!writer.Create(options, error)) {
        return false;
    }
    pixelLimit = pixels ? writer.MostContent() - Encoder::kRoomForFrame : 0;
    return true;
}

std::uint64_t Recorder::Begin(RecordType type, Entry entry, const Words& words) noexcept {
    const std::uint64_t call = ++calls;
    try {
        Encoder encoder;
        EncodeArguments(encoder, entry, words, pixelLimit);
        writer.Append(type, entry, call, ThisThread(), 0, encoder.Content());
    } catch (...) {
        // Out of memory.
    }
    return call;
}

void Recorder::EndCall(std::uint64_t call, Entry entry, const Words& words,
                       PxnError result) noexcept {
    try {
        Encoder encoder;
        EncodeResults(encoder, entry, words, result, pixelLimit);
        writer.Append(RecordType::kCallEnd, entry, call, ThisThread(), result, encoder.Content());
    } catch (...) {
        // Out of memory.
    }
}

void Recorder::EndCallback(std::uint64_t call, Entry entry, PxnError result) noexcept {
    writer.Append(RecordType::kCallbackEnd, entry, call, ThisThread(), result, {});
}

} // namespace sdktrace
