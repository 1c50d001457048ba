// call_text.cpp - how a call is written down
#include "tests/scripted_sdk/call_text.h"

#include "tests/scripted_sdk/model_lookup.h"

#include <charconv>
#include <cstdint>

namespace scripted {
namespace {

using skeleton::Argument;

std::string QuoteText(const char* text) {
    return text ? "\"" + std::string(text) + "\"" : "null";
}

std::string QuotePath(const wchar_t* path) {
    if (!path) {
        return "null";
    }
    std::string narrow;
    for (; *path != 0; ++path) {
        narrow += *path < 0x80 ? static_cast<char>(*path) : '?';
    }
    return QuoteText(narrow.c_str());
}

std::string FrameName(const PxnFrame* frame) {
    return frame ? "frame" + std::to_string(reinterpret_cast<std::uintptr_t>(frame->context[2]))
                 : "null";
}

std::string RealText(double value) {
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string BytesText(const char* bytes, std::int64_t size) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text = "[";
    for (std::int64_t i = 0; bytes && i < size; ++i) {
        const auto value = static_cast<unsigned char>(bytes[i]);
        text += i == 0 ? "" : " ";
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text + "]";
}

std::string ArgumentText(const Argument& argument, Model& model) {
    switch (argument.GetKind()) {
    case Argument::Kind::kHandle:
        return NameOf(model, argument.AsHandle());
    case Argument::Kind::kFeature:
    case Argument::Kind::kText:
        return QuoteText(argument.AsText());
    case Argument::Kind::kPath:
        return QuotePath(argument.AsPath());
    case Argument::Kind::kFrame:
        return FrameName(argument.AsFrame());
    case Argument::Kind::kInteger:
        return std::to_string(argument.AsInteger());
    case Argument::Kind::kReal:
        return RealText(argument.AsReal());
    case Argument::Kind::kCallback:
        return argument.IsGiven() ? "cb" : "null";
    case Argument::Kind::kPlace:
        return argument.IsGiven() ? "array" : "null";
    case Argument::Kind::kBytes:
        return BytesText(argument.AsText(), argument.AsInteger());
    }
    return {};
}

} // namespace

std::string CallText(const skeleton::EntryCall& call, Model& model) {
    std::string arguments;
    for (const Argument& argument : call.arguments) {
        arguments += (arguments.empty() ? "" : ", ") + ArgumentText(argument, model);
    }
    return std::string(call.entry) + "(" + arguments + ")";
}

} // namespace scripted
