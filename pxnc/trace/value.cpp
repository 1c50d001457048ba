// value.cpp - arguments and results as they are read from a trace
#include "pxnc/trace/value.h"

#include "pxnc/trace/encoder.h"

#include <cstring>
#include <utility>

namespace sdktrace {
namespace {

/// Takes bytes off the front. After the first fault everything is 0 and empty.
class Decoder {
public:
    explicit Decoder(std::string_view content) : bytes(content) {}

    bool IsAtEnd() const { return isWhole && bytes.empty(); }

    std::uint8_t Byte() { return Take<std::uint8_t>(); }
    std::uint32_t Count() { return Take<std::uint32_t>(); }
    Value Word() {
        Value value;
        value.type = Value::Type::kWord;
        value.word = Take<std::uint64_t>();
        return value;
    }
    Value Text(Value::Type type) {
        const std::uint32_t length = Count();
        Value value;
        if (length == Encoder::kNoText) {
            return value;
        }
        if (length > bytes.size()) {
            Fail();
            return value;
        }
        value.type = type;
        value.text = bytes.substr(0, length);
        bytes.remove_prefix(length);
        return value;
    }
    template <typename Element>
    Value List(Element element) {
        Value value;
        value.type = Value::Type::kList;
        const std::uint32_t count = Count();
        for (std::uint32_t i = 0; i < count && isWhole; ++i) {
            value.parts.push_back(element());
        }
        return value;
    }
    Value Record(RecordKind kind) {
        Value value;
        value.type = Value::Type::kList;
        const RecordRow& row = RowOf(kind);
        for (std::size_t i = 0; i < row.fieldCount; ++i) {
            switch (row.fields[i].kind) {
            case FieldKind::kText:
                value.parts.push_back(Text(Value::Type::kText));
                break;
            case FieldKind::kStreams:
                value.parts.push_back(List([this] { return Word(); }));
                break;
            default:
                value.parts.push_back(Word());
            }
        }
        return value;
    }
    /// Into the parts of a frame.
    void Frame(Value& value) {
        if (Byte() != 0) {
            value.parts.push_back(Record(RecordKind::kFrame));
            value.parts.push_back(Text(Value::Type::kBytes));
        }
    }

private:
    void Fail() {
        isWhole = false;
        bytes = {};
    }
    template <typename T>
    T Take() {
        T value{};
        if (bytes.size() < sizeof value) {
            Fail();
            return value;
        }
        std::memcpy(&value, bytes.data(), sizeof value);
        bytes.remove_prefix(sizeof value);
        return value;
    }

    std::string_view bytes;
    bool isWhole = true;
};

Value DecodeArgument(Decoder& decoder, const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::kText:
    case Kind::kPath:
        return decoder.Text(Value::Type::kText);
    case Kind::kBytes:
        return decoder.Text(Value::Type::kBytes);
    case Kind::kAnnouncedFrame: {
        Value frame = decoder.Word();
        frame.parts.push_back(decoder.Word());
        return frame;
    }
    case Kind::kFilledFrame: {
        Value frame = decoder.Word();
        decoder.Frame(frame);
        return frame;
    }
    default:
        break;
    }
    if (!IsPlace(parameter.kind)) {
        return decoder.Word();
    }
    Value place;
    if (decoder.Byte() != 0) {
        place.type = Value::Type::kWord;
        place.word = 1;
    }
    return place;
}

Value DecodePlace(Decoder& decoder, const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::kOutText:
    case Kind::kOutAnswer:
        return decoder.Text(Value::Type::kText);
    case Kind::kOutBytes:
    case Kind::kOutChars:
        return decoder.Text(Value::Type::kBytes);
    case Kind::kOutRecord:
        return decoder.Record(parameter.record);
    case Kind::kOutRecords:
        return decoder.List([&] { return decoder.Record(parameter.record); });
    case Kind::kOutIntegers:
        return decoder.List([&] { return decoder.Word(); });
    case Kind::kOutTexts:
        return decoder.List([&] { return decoder.Text(Value::Type::kText); });
    default:
        return decoder.Word();
    }
}

Value DecodeResult(Decoder& decoder, const Parameter& parameter) {
    Value value;
    if (parameter.kind == Kind::kFrameToFill) {
        value.type = Value::Type::kWord;
        decoder.Frame(value);
    } else if (IsPlace(parameter.kind) && decoder.Byte() != 0) {
        value = DecodePlace(decoder, parameter);
    }
    return value;
}

template <typename Decode>
std::optional<std::vector<Value>> DecodeAll(Entry entry, Decoder& decoder, Decode decode) {
    std::vector<Value> values;
    for (const Parameter& parameter : RowOf(entry).parameters) {
        if (!parameter.name) {
            break;
        }
        values.push_back(decode(decoder, parameter));
    }
    if (!decoder.IsAtEnd()) {
        return std::nullopt;
    }
    return values;
}

} // namespace

std::optional<std::vector<Value>> DecodeArguments(Entry entry, std::string_view bytes) {
    Decoder decoder(bytes);
    return DecodeAll(entry, decoder, DecodeArgument);
}

std::optional<std::vector<Value>> DecodeResults(Entry entry, std::string_view bytes) {
    Decoder decoder(bytes);
    if (decoder.Byte() == 0) {
        return DecodeAll(entry, decoder, [](Decoder&, const Parameter&) { return Value{}; });
    }
    return DecodeAll(entry, decoder, DecodeResult);
}

} // namespace sdktrace
