// event_text.cpp - calls and callbacks of a trace as text
#include "pxnc/trace/event_text.h"

#include "platform/printable_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdio>
#include <string_view>

namespace sdktrace {
namespace {

constexpr std::size_t kShortText = 80;
constexpr std::size_t kShortBytes = 32;
constexpr std::size_t kShortList = 8;

std::string Hexadecimal(std::uint64_t word) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%llx", static_cast<unsigned long long>(word));
    return text.data();
}

std::string FloatText(std::uint64_t word) {
    std::array<char, 40> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), std::bit_cast<double>(word)).ptr;
    return {text.data(), end};
}

std::string SignedText(std::uint64_t word) {
    return std::to_string(static_cast<std::int64_t>(word));
}

} // namespace

std::string EventText::Begin(const Event& begin) {
    if (begin.isWithoutContent) {
        return std::string(RowOf(begin.entry).name) + "(...)";
    }
    return Begin(begin.entry, begin.values);
}

std::string EventText::Begin(Entry entry, const std::vector<Value>& arguments) {
    const EntryRow& row = RowOf(entry);
    std::string text = std::string(row.name) + "(";
    const char* separator = "";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string argument = Argument(row.parameters[i], arguments[i]);
        if (!argument.empty()) {
            text += separator + (row.parameters[i].name + ("=" + argument));
            separator = ", ";
        }
    }
    return text + ")";
}

std::string EventText::End(const Event& end) {
    const EntryRow& row = RowOf(end.entry);
    const bool returnsNothing = end.entry == Entry::kPxnShutdown ||
                                end.entry == Entry::kFrameCallback ||
                                end.entry == Entry::kInvalidationCallback;
    std::string text = returnsNothing ? "" : " = " + std::to_string(end.result);
    for (std::size_t i = 0; i < end.values.size(); ++i) {
        const std::string result = Result(row.parameters[i], end.values[i]);
        if (!result.empty()) {
            text += ", " + (row.parameters[i].name + ("=" + result));
        }
    }
    return end.isWithoutContent ? text + ", ..." : text;
}

/// Empty for a place that is given: what is stored there comes later.
std::string EventText::Argument(const Parameter& parameter, const Value& value) {
    if (IsPlace(parameter.kind)) {
        return value.type == Value::Type::kNone ? "null" : "";
    }
    switch (value.type) {
    case Value::Type::kNone:
        return "null";
    case Value::Type::kText:
        return Quoted(value.text);
    case Value::Type::kBytes:
        return Bytes(value.text);
    default:
        break;
    }
    std::string text = Word(parameter.kind, value.word);
    if (parameter.kind == Kind::kAnnouncedFrame && !value.parts.empty()) {
        text += "{bufferSize=" + std::to_string(value.parts[0].word) + "}";
    }
    return text + Frame(value);
}

/// Empty when there is none.
std::string EventText::Result(const Parameter& parameter, const Value& value) {
    switch (value.type) {
    case Value::Type::kNone:
        // A text that the SDK stored as a null pointer cannot be told from a place that is not
        // given, which the arguments show.
        return "";
    case Value::Type::kText:
        return Quoted(value.text);
    case Value::Type::kBytes:
        return parameter.kind == Kind::kOutChars
                   ? Quoted(value.text.substr(0, value.text.find('\0')))
                   : Bytes(value.text);
    case Value::Type::kWord:
        return parameter.kind == Kind::kFrameToFill ? Frame(value)
                                                    : Word(parameter.kind, value.word);
    default:
        break;
    }
    switch (parameter.kind) {
    case Kind::kOutRecord:
        return Record(parameter.record, value);
    case Kind::kOutRecords:
        return List(value, [&](const Value& part) { return RecordInList(parameter.record, part); });
    case Kind::kOutTexts:
        return List(value, [&](const Value& part) {
            return part.type == Value::Type::kNone ? std::string("null") : Quoted(part.text);
        });
    default:
        return List(value, [](const Value& part) { return SignedText(part.word); });
    }
}

std::string EventText::Word(Kind kind, std::uint64_t word) {
    switch (kind) {
    case Kind::kHandle:
    case Kind::kOutHandle:
        return Pointer("handle", word);
    case Kind::kFrame:
    case Kind::kAnnouncedFrame:
    case Kind::kFilledFrame:
    case Kind::kFrameToFill:
        return Pointer("frame", word);
    case Kind::kCallback:
        return Pointer("callback", word);
    case Kind::kContext:
        return Pointer("context", word);
    case Kind::kAddress:
        return Hexadecimal(word);
    case Kind::kInteger:
    case Kind::kOutInteger:
        return SignedText(word);
    case Kind::kFloat:
    case Kind::kOutFloat:
        return FloatText(word);
    default:
        return std::to_string(word);
    }
}

std::string EventText::Pointer(const char* what, std::uint64_t word) {
    if (word == 0) {
        return "null";
    }
    if (word == ToWord(PXN_SYSTEM_HANDLE) && std::string_view(what) == "handle") {
        return "system";
    }
    if (identity == Identity::kAddress) {
        return Hexadecimal(word);
    }
    const auto place = numbers.try_emplace({what, word}, numbers.size() + 1).first;
    return what + std::to_string(place->second);
}

std::string EventText::Quoted(const std::string& text) const {
    const bool isCut = detail == Detail::kShort && text.size() > kShortText;
    return "\"" + platform::PrintableText(isCut ? text.substr(0, kShortText) : text) +
           (isCut ? "...\"" : "\"");
}

std::string EventText::Bytes(const std::string& bytes) const {
    const std::size_t shown =
        detail == Detail::kShort ? std::min(bytes.size(), kShortBytes) : bytes.size();
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
        text += digits.data();
    }
    return "[" + text + (shown < bytes.size() ? "..." : "") + "]";
}

std::string EventText::FieldText(const Field& field, const Value& value) {
    if (identity == Identity::kNumber && std::string_view(field.name) == "timestamp") {
        return "*"; // never the same in two sessions
    }
    switch (field.kind) {
    case FieldKind::kText:
        return value.type == Value::Type::kNone ? "null" : Quoted(value.text);
    case FieldKind::kHandle:
        return Pointer("handle", value.word);
    case FieldKind::kSigned:
    case FieldKind::kInteger:
        return SignedText(value.word);
    case FieldKind::kStreams:
        return List(value, [this](const Value& part) { return Pointer("handle", part.word); });
    default:
        return std::to_string(value.word);
    }
}

std::string EventText::Record(RecordKind kind, const Value& value) {
    const RecordRow& row = RowOf(kind);
    std::string text;
    for (std::size_t i = 0; i < value.parts.size(); ++i) {
        text += (i == 0 ? "" : ", ") +
                (row.fields[i].name + ("=" + FieldText(row.fields[i], value.parts[i])));
    }
    return "{" + text + "}";
}

std::string EventText::RecordInList(RecordKind kind, const Value& value) {
    if (detail == Detail::kShort && RowOf(kind).fields[0].kind == FieldKind::kText &&
        !value.parts.empty()) {
        return FieldText(RowOf(kind).fields[0], value.parts[0]);
    }
    return Record(kind, value);
}

std::string EventText::Frame(const Value& value) {
    if (value.parts.size() != 2) {
        return "";
    }
    const std::string& pixels = value.parts[1].text;
    return Record(RecordKind::kFrame, value.parts[0]) +
           (pixels.empty() ? "" : "+" + std::to_string(pixels.size()) + " bytes");
}

template <typename Element>
std::string EventText::List(const Value& value, Element element) {
    const std::size_t shown =
        detail == Detail::kShort ? std::min(value.parts.size(), kShortList) : value.parts.size();
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        text += (i == 0 ? "" : ", ") + element(value.parts[i]);
    }
    return "[" + text + (shown < value.parts.size() ? ", ..." : "") + "]";
}

} // namespace sdktrace
