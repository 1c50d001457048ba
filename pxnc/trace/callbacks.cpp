// callbacks.cpp - callbacks that are traced
#include "pxnc/trace/callbacks.h"

#include "pxnc/trace/library.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

namespace sdktrace {
namespace {

/// For one kind of callback; far more than a module has.
constexpr std::size_t kSlots = 64;

/// Traces a callback from its construction to its end, also when an exception leaves it.
class CallbackRecord {
public:
    CallbackRecord(Entry callbackEntry, const Words& words)
        : recorder(Library::Instance().GetRecorder()),
          entry(callbackEntry),
          call(recorder ? recorder->BeginCallback(entry, words) : 0) {}
    ~CallbackRecord() {
        if (recorder) {
            recorder->EndCallback(call, entry, result);
        }
    }
    CallbackRecord(const CallbackRecord&) = delete;
    CallbackRecord& operator=(const CallbackRecord&) = delete;

    PxnError result = PxnErrSuccess;

private:
    Recorder* recorder;
    Entry entry;
    std::uint64_t call;
};

/// The host's callbacks and the functions that stand for them.
template <typename Callback>
struct Slots {
    static std::array<std::atomic<Callback>, kSlots> callbacks;
};
template <typename Callback>
std::array<std::atomic<Callback>, kSlots> Slots<Callback>::callbacks{};

template <std::size_t kSlot>
void PXN_CALL OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame) {
    const PxnFrameCallback callback = Slots<PxnFrameCallback>::callbacks[kSlot];
    const CallbackRecord record(Entry::kFrameCallback, ToWords(callback, camera, stream, frame));
    callback(camera, stream, frame);
}

template <std::size_t kSlot>
void PXN_CALL OnInvalidation(PxnHandle handle, const char* name, void* userContext) {
    const PxnInvalidationCallback callback = Slots<PxnInvalidationCallback>::callbacks[kSlot];
    const CallbackRecord record(Entry::kInvalidationCallback,
                                ToWords(callback, handle, name, userContext));
    callback(handle, name, userContext);
}

template <std::size_t kSlot>
PxnError PXN_CALL OnChunks(PxnHandle featureAccess, void* userContext) {
    const PxnChunkAccessCallback callback = Slots<PxnChunkAccessCallback>::callbacks[kSlot];
    CallbackRecord record(Entry::kChunkCallback, ToWords(callback, featureAccess, userContext));
    record.result = PxnErrUserCallbackException; // unless it returns
    record.result = callback(featureAccess, userContext);
    return record.result;
}

template <std::size_t... kSlot>
constexpr std::array<PxnFrameCallback, kSlots> FrameFunctions(std::index_sequence<kSlot...>) {
    return {&OnFrame<kSlot>...};
}
template <std::size_t... kSlot>
constexpr std::array<PxnInvalidationCallback, kSlots>
InvalidationFunctions(std::index_sequence<kSlot...>) {
    return {&OnInvalidation<kSlot>...};
}
template <std::size_t... kSlot>
constexpr std::array<PxnChunkAccessCallback, kSlots> ChunkFunctions(std::index_sequence<kSlot...>) {
    return {&OnChunks<kSlot>...};
}

template <typename Callback>
Callback SubstituteOf(const std::array<Callback, kSlots>& functions, Callback callback) noexcept {
    if (!callback) {
        return nullptr;
    }
    for (std::size_t i = 0; i < kSlots; ++i) {
        Callback known = nullptr; // takes the first free slot, unless another thread is faster
        if (Slots<Callback>::callbacks[i].compare_exchange_strong(known, callback) ||
            known == callback) {
            return functions[i];
        }
    }
    return callback;
}

} // namespace

PxnFrameCallback Substitute(PxnFrameCallback callback) noexcept {
    static constexpr auto kFunctions = FrameFunctions(std::make_index_sequence<kSlots>{});
    return SubstituteOf(kFunctions, callback);
}

PxnInvalidationCallback Substitute(PxnInvalidationCallback callback) noexcept {
    static constexpr auto kFunctions = InvalidationFunctions(std::make_index_sequence<kSlots>{});
    return SubstituteOf(kFunctions, callback);
}

PxnChunkAccessCallback Substitute(PxnChunkAccessCallback callback) noexcept {
    static constexpr auto kFunctions = ChunkFunctions(std::make_index_sequence<kSlots>{});
    return SubstituteOf(kFunctions, callback);
}

} // namespace sdktrace
