// value_store.cpp - results of a trace in the places that a host gives
#include "pxnc/trace/value_store.h"

#include <algorithm>
#include <cstring>

namespace sdktrace {
namespace {

template <typename T>
void WriteAs(char* place, T value) {
    std::memcpy(place, &value, sizeof value);
}

} // namespace

const char* ValueStore::Keep(const Value& text) {
    return text.type == Value::Type::kText ? texts.insert(text.text).first->c_str() : nullptr;
}

void ValueStore::StoreResults(Entry entry, const Words& words, std::int32_t result,
                              const std::vector<Value>& results) {
    if (!IsFilled(entry, result)) {
        return;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        const Parameter& parameter = RowOf(entry).parameters[i];
        if (words[i] == 0) {
            continue;
        }
        if (parameter.kind == Kind::kFrameToFill) {
            StoreFrame(*ToPointer<PxnFrame>(words[i]), results[i]);
        } else if (IsPlace(parameter.kind)) {
            StorePlace(parameter, words, ToPointer<char>(words[i]), results[i]);
        }
    }
}

void ValueStore::StorePlace(const Parameter& parameter, const Words& words, char* place,
                            const Value& value) {
    switch (parameter.kind) {
    case Kind::kOutHandle:
    case Kind::kOutInteger:
    case Kind::kOutFloat:
        WriteAs(place, value.word);
        break;
    case Kind::kOutNumber:
        WriteAs(place, static_cast<std::uint32_t>(value.word));
        break;
    case Kind::kOutFlag:
        WriteAs(place, static_cast<std::uint8_t>(value.word));
        break;
    case Kind::kOutText:
        WriteAs(place, Keep(value));
        break;
    case Kind::kOutRecord:
        StoreRecord(parameter.record, place, value);
        break;
    case Kind::kOutBytes:
    case Kind::kOutChars:
    case Kind::kOutAnswer: {
        const auto limit = static_cast<std::size_t>(words[parameter.limit]);
        const std::size_t length = std::min(value.text.size(), limit);
        std::memcpy(place, value.text.data(), length);
        if (parameter.kind == Kind::kOutAnswer && limit > 0) {
            place[std::min(length, limit - 1)] = 0;
        }
        break;
    }
    default: {
        const auto limit = static_cast<std::size_t>(words[parameter.limit]);
        for (std::size_t i = 0; i < std::min(value.parts.size(), limit); ++i) {
            const Value& element = value.parts[i];
            if (parameter.kind == Kind::kOutRecords) {
                StoreRecord(parameter.record, place + i * RowOf(parameter.record).size, element);
            } else if (parameter.kind == Kind::kOutTexts) {
                WriteAs(place + i * sizeof(const char*), Keep(element));
            } else {
                WriteAs(place + i * sizeof(std::uint64_t), element.word);
            }
        }
    }
    }
}

void ValueStore::StoreRecord(RecordKind kind, char* record, const Value& value) {
    const RecordRow& row = RowOf(kind);
    std::size_t listed = 0;
    for (std::size_t i = 0; i < value.parts.size(); ++i) {
        char* const place = record + row.fields[i].offset;
        const Value& part = value.parts[i];
        switch (row.fields[i].kind) {
        case FieldKind::kText:
            WriteAs(place, Keep(part));
            break;
        case FieldKind::kHandle:
        case FieldKind::kInteger:
        case FieldKind::kUnsigned:
            WriteAs(place, part.word);
            break;
        case FieldKind::kNumber:
        case FieldKind::kSigned:
            WriteAs(place, static_cast<std::uint32_t>(part.word));
            break;
        case FieldKind::kByte:
            WriteAs(place, static_cast<std::uint8_t>(part.word));
            break;
        case FieldKind::kStreams: {
            std::vector<PxnHandle>& list = streams.emplace_back();
            for (const Value& stream : part.parts) {
                list.push_back(ToPointer<void>(stream.word));
            }
            WriteAs<const PxnHandle*>(place, list.empty() ? nullptr : list.data());
            listed = list.size();
            break;
        }
        case FieldKind::kImageOffset: {
            auto& frame = *reinterpret_cast<PxnFrame*>(record);
            frame.imageData = frame.buffer && part.word <= frame.bufferSize
                                  ? static_cast<char*>(frame.buffer) + part.word
                                  : nullptr;
            break;
        }
        }
    }
    if (listed > 0) {
        // The count of a damaged trace may be greater than its list.
        auto& camera = *reinterpret_cast<PxnCameraInfo*>(record);
        camera.streamCount = std::min(camera.streamCount, static_cast<std::uint32_t>(listed));
    }
}

void ValueStore::StoreFrame(PxnFrame& frame, const Value& traced) {
    if (traced.parts.size() != 2) {
        return;
    }
    StoreRecord(RecordKind::kFrame, reinterpret_cast<char*>(&frame), traced.parts[0]);
    if (frame.buffer) {
        const std::string& pixels = traced.parts[1].text;
        const std::size_t length = std::min<std::size_t>(pixels.size(), frame.bufferSize);
        std::memcpy(frame.buffer, pixels.data(), length);
        std::memset(static_cast<char*>(frame.buffer) + length, 0, frame.bufferSize - length);
    }
}

} // namespace sdktrace
