// encoder.cpp - arguments and results as bytes
#include "pxnc/trace/encoder.h"

#include "platform/text.h"

#include <algorithm>
#include <string>

namespace sdktrace {
namespace {

template <typename T>
T ReadAs(const void* place) {
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

void EncodeStreams(Encoder& encoder, const PxnCameraInfo& camera) {
    const std::uint32_t count = camera.streamHandles ? camera.streamCount : 0;
    encoder.Count(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        encoder.Word(ToWord(camera.streamHandles[i]));
    }
}

void EncodeField(Encoder& encoder, const Field& field, const char* record) {
    const char* const place = record + field.offset;
    switch (field.kind) {
    case FieldKind::kText:
        encoder.Text(ReadAs<const char*>(place));
        break;
    case FieldKind::kHandle:
    case FieldKind::kInteger:
    case FieldKind::kUnsigned:
        encoder.Word(ReadAs<std::uint64_t>(place));
        break;
    case FieldKind::kNumber:
        encoder.Word(ReadAs<std::uint32_t>(place));
        break;
    case FieldKind::kSigned:
        encoder.Word(ToWord(ReadAs<std::int32_t>(place)));
        break;
    case FieldKind::kByte:
        encoder.Word(ReadAs<std::uint8_t>(place));
        break;
    case FieldKind::kStreams:
        EncodeStreams(encoder, *reinterpret_cast<const PxnCameraInfo*>(record));
        break;
    case FieldKind::kImageOffset: {
        const auto& frame = *reinterpret_cast<const PxnFrame*>(record);
        encoder.Word(frame.imageData ? ToWord(frame.imageData) - ToWord(frame.buffer) : 0);
        break;
    }
    }
}

void EncodeRecord(Encoder& encoder, RecordKind kind, const char* record) {
    const RecordRow& row = RowOf(kind);
    for (std::size_t i = 0; i < row.fieldCount; ++i) {
        EncodeField(encoder, row.fields[i], record);
    }
}

void EncodeFrame(Encoder& encoder, std::uint64_t word, std::size_t pixels) {
    const auto* const frame = ToPointer<const PxnFrame>(word);
    encoder.Byte(frame ? 1 : 0);
    if (!frame) {
        return;
    }
    EncodeRecord(encoder, RecordKind::kFrame, reinterpret_cast<const char*>(frame));
    encoder.Bytes(frame->buffer,
                  frame->buffer ? std::min<std::size_t>(frame->bufferSize, pixels) : 0);
}

/// The number of elements that the host has got.
std::uint32_t ElementCount(const Parameter& parameter, const Words& words) {
    const auto* const found = ToPointer<const std::uint32_t>(words[parameter.count]);
    const auto limit = static_cast<std::uint32_t>(words[parameter.limit]);
    return found ? std::min(*found, limit) : 0;
}

void EncodeElements(Encoder& encoder, const Parameter& parameter, const char* array,
                    std::uint32_t count) {
    encoder.Count(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        switch (parameter.kind) {
        case Kind::kOutRecords:
            EncodeRecord(encoder, parameter.record, array + i * RowOf(parameter.record).size);
            break;
        case Kind::kOutTexts:
            encoder.Text(ReadAs<const char*>(array + i * sizeof(const char*)));
            break;
        default:
            encoder.Word(ReadAs<std::uint64_t>(array + i * sizeof(std::uint64_t)));
        }
    }
}

void EncodePath(Encoder& encoder, std::uint64_t word) {
    const auto* const path = ToPointer<const wchar_t>(word);
    encoder.Text(path ? platform::WideToNarrow(path).c_str() : nullptr);
}

void EncodePlace(Encoder& encoder, const Parameter& parameter, const Words& words,
                 std::uint64_t word) {
    const auto* const place = ToPointer<const char>(word);
    switch (parameter.kind) {
    case Kind::kOutHandle:
    case Kind::kOutInteger:
    case Kind::kOutFloat:
        encoder.Word(ReadAs<std::uint64_t>(place));
        break;
    case Kind::kOutNumber:
        encoder.Word(ReadAs<std::uint32_t>(place));
        break;
    case Kind::kOutFlag:
        encoder.Word(ReadAs<std::uint8_t>(place));
        break;
    case Kind::kOutText:
        encoder.Text(ReadAs<const char*>(place));
        break;
    case Kind::kOutRecord:
        EncodeRecord(encoder, parameter.record, place);
        break;
    case Kind::kOutBytes:
    case Kind::kOutChars:
        encoder.Bytes(place, ElementCount(parameter, words));
        break;
    case Kind::kOutAnswer: {
        const auto limit = static_cast<std::size_t>(words[parameter.limit]);
        const void* const end = std::memchr(place, 0, limit);
        encoder.Bytes(place, end ? static_cast<std::size_t>(static_cast<const char*>(end) - place)
                                 : limit);
        break;
    }
    default:
        EncodeElements(encoder, parameter, place, ElementCount(parameter, words));
    }
}

} // namespace

void Encoder::Bytes(const void* bytes, std::size_t length) {
    // Nothing here is longer: sizes in the interface have 32 bits.
    const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(length, kNoText - 1));
    Count(count);
    if (count > 0) {
        Add(bytes, count);
    }
}

void Encoder::Grow(std::size_t length) {
    const std::size_t larger = std::max(2 * capacity, size + length);
    auto grown = std::make_unique_for_overwrite<char[]>(larger);
    std::memcpy(grown.get(), begin, size);
    heap = std::move(grown);
    begin = heap.get();
    capacity = larger;
}

void EncodeArguments(Encoder& encoder, Entry entry, const Words& words, std::size_t pixels) {
    std::size_t i = 0;
    for (const Parameter& parameter : RowOf(entry).parameters) {
        if (!parameter.name) {
            break;
        }
        const std::uint64_t word = words[i++];
        switch (parameter.kind) {
        case Kind::kText:
            encoder.Text(ToPointer<const char>(word));
            break;
        case Kind::kPath:
            EncodePath(encoder, word);
            break;
        case Kind::kBytes:
            if (word) {
                encoder.Bytes(ToPointer<const char>(word),
                              static_cast<std::uint32_t>(words[parameter.limit]));
            } else {
                encoder.Text(nullptr);
            }
            break;
        case Kind::kAnnouncedFrame:
            encoder.Word(word);
            encoder.Word(word ? ToPointer<const PxnFrame>(word)->bufferSize : 0);
            break;
        case Kind::kFilledFrame:
            encoder.Word(word);
            EncodeFrame(encoder, word, pixels);
            break;
        default:
            if (IsPlace(parameter.kind)) {
                encoder.Byte(word ? 1 : 0);
            } else {
                encoder.Word(word);
            }
        }
    }
}

void EncodeResults(Encoder& encoder, Entry entry, const Words& words, std::int32_t result,
                   std::size_t pixels) {
    if (!IsFilled(entry, result)) {
        encoder.Byte(0);
        return;
    }
    encoder.Byte(1);
    std::size_t i = 0;
    for (const Parameter& parameter : RowOf(entry).parameters) {
        if (!parameter.name) {
            break;
        }
        const std::uint64_t word = words[i++];
        if (parameter.kind == Kind::kFrameToFill) {
            EncodeFrame(encoder, word, pixels);
        } else if (IsPlace(parameter.kind)) {
            encoder.Byte(word ? 1 : 0);
            if (word) {
                EncodePlace(encoder, parameter, words, word);
            }
        }
    }
}

} // namespace sdktrace
