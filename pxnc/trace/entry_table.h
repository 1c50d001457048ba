// entry_table.h - what the functions and callbacks of the SDK take and store
#pragma once

#include "pxnc.h"
#include "pxnc_entries.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace sdktrace {

/// The functions of the SDK, its control interface and its callbacks. The numbers stand in files.
enum class Entry : std::uint8_t {
#define PXN_TRACE_ENTRY(name) k##name,
    PXN_ENTRIES(PXN_TRACE_ENTRY)
#undef PXN_TRACE_ENTRY
        kPxnControl,
    kFrameCallback,
    kInvalidationCallback,
    kChunkCallback,
    kCount
};

constexpr std::size_t kEntryCount = static_cast<std::size_t>(Entry::kCount);
constexpr std::size_t kMostParameters = 6;

constexpr bool IsCallbackEntry(Entry entry) {
    return entry >= Entry::kFrameCallback;
}

/// The arguments of a call as they were passed: numbers extended to 64 bits, doubles by their bits.
using Words = std::array<std::uint64_t, kMostParameters>;

template <typename T>
std::uint64_t ToWord(T argument) {
    if constexpr (std::is_pointer_v<T>) {
        return reinterpret_cast<std::uintptr_t>(argument);
    } else if constexpr (std::is_null_pointer_v<T>) {
        return 0;
    } else if constexpr (std::is_same_v<T, double>) {
        return std::bit_cast<std::uint64_t>(argument);
    } else {
        return static_cast<std::uint64_t>(argument);
    }
}

template <typename... T>
Words ToWords(T... arguments) {
    return {ToWord(arguments)...};
}

template <typename T>
T* ToPointer(std::uint64_t word) {
    return reinterpret_cast<T*>(static_cast<std::uintptr_t>(word));
}

/// What a parameter is. Its order divides what is passed in from places for results.
enum class Kind : std::uint8_t {
    kHandle,
    kText,
    kPath,    ///< wide text
    kNumber,  ///< 32 bits without sign
    kAddress, ///< of a register
    kInteger, ///< 64 bits with sign
    kFloat,
    kFlag,
    kFrame,
    kCallback,
    kContext,
    kBytes,          ///< as many as the parameter `limit` says
    kAnnouncedFrame, ///< a frame with its buffer's size
    kFilledFrame,    ///< a frame with what the SDK has filled
    kFrameToFill,    ///< a frame; afterwards with what the SDK has filled
    kOutHandle,
    kOutNumber,
    kOutFlag,
    kOutInteger,
    kOutFloat,
    kOutText,
    kOutRecord,
    // Arrays of at most `limit` elements, of which the SDK stores the number in `count`.
    kOutRecords,
    kOutIntegers,
    kOutTexts,
    kOutBytes,
    kOutChars,  ///< bytes of a text with its terminator
    kOutAnswer, ///< a terminated text of at most `limit` bytes
};

/// A place for a result, which may be null.
constexpr bool IsPlace(Kind kind) {
    return kind >= Kind::kOutHandle;
}
/// Something is known of it only after the call.
constexpr bool HasResult(Kind kind) {
    return kind >= Kind::kFrameToFill;
}

enum class RecordKind : std::uint8_t {
    kVersion,
    kCamera,
    kInterface,
    kTransportLayer,
    kFeature,
    kEnumEntry,
    kFrame,
    kNone
};

struct Parameter {
    const char* name = nullptr; ///< null: there is none
    Kind kind = Kind::kNumber;
    RecordKind record = RecordKind::kNone;
    std::uint8_t limit = 0; ///< number of the parameter with the array's capacity
    std::uint8_t count = 0; ///< number of the parameter that gets the number of elements
};

struct EntryRow {
    const char* name;
    std::array<Parameter, kMostParameters> parameters;
};

const EntryRow& RowOf(Entry entry);

enum class FieldKind : std::uint8_t {
    kText,
    kHandle,
    kNumber,     ///< 32 bits without sign
    kSigned,     ///< 32 bits with sign
    kByte,       ///< 8 bits
    kInteger,    ///< 64 bits with sign
    kUnsigned,   ///< 64 bits without sign
    kStreams,    ///< of a PxnCameraInfo: the array of its streams' handles
    kImageOffset ///< of a PxnFrame: where the image begins, counted from the buffer
};

struct Field {
    const char* name;
    std::size_t offset;
    FieldKind kind;
};

/// The fields of a record that the SDK fills.
struct RecordRow {
    std::size_t size;
    const Field* fields;
    std::size_t fieldCount;
};

const RecordRow& RowOf(RecordKind kind);

/// Whether the places for results hold something after a call with this result.
bool IsFilled(Entry entry, std::int32_t result);

} // namespace sdktrace
