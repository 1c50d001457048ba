// session_match.cpp - which pointers of a session stand for which of its trace
#include "pxnc/trace/session_match.h"

#include "pxnc/trace/encoder.h"

namespace sdktrace {
namespace {

/// Its address is another one in each session.
bool IsHostPointer(Kind kind) {
    switch (kind) {
    case Kind::kFrame:
    case Kind::kAnnouncedFrame:
    case Kind::kFrameToFill:
    case Kind::kCallback:
    case Kind::kContext:
        return true;
    default:
        return false;
    }
}

} // namespace

std::string FileNameOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

std::vector<Value> ValuesOf(Entry entry, const Words& words) {
    Encoder encoder;
    EncodeArguments(encoder, entry, words, 0);
    return DecodeArguments(entry, encoder.Content()).value();
}

bool SessionMatch::Matches(Entry entry, const std::vector<Value>& traced,
                           const std::vector<Value>& now) const {
    if (traced.size() != now.size()) {
        return false; // one that was too big for the trace
    }
    for (std::size_t i = 0; i < traced.size(); ++i) {
        const Kind kind = RowOf(entry).parameters[i].kind;
        bool isSame = traced[i] == now[i];
        if (kind == Kind::kPath) {
            isSame = traced[i].type == now[i].type &&
                     FileNameOf(traced[i].text) == FileNameOf(now[i].text);
        } else if (kind == Kind::kFrame || kind == Kind::kFrameToFill) {
            const auto known = current.find(traced[i].word);
            isSame = known == current.end() ? (traced[i].word == 0) == (now[i].word == 0)
                                            : known->second == now[i].word;
        } else if (IsHostPointer(kind)) {
            isSame = (traced[i].word == 0) == (now[i].word == 0) && traced[i].parts == now[i].parts;
        }
        if (!isSame) {
            return false;
        }
    }
    return true;
}

void SessionMatch::Learn(Entry entry, const std::vector<Value>& traced,
                         const std::vector<Value>& now) {
    for (std::size_t i = 0; i < traced.size(); ++i) {
        if (IsHostPointer(RowOf(entry).parameters[i].kind)) {
            current[traced[i].word] = now[i].word;
        }
    }
}

std::uint64_t SessionMatch::Current(std::uint64_t traced) const {
    const auto found = current.find(traced);
    return found == current.end() ? 0 : found->second;
}

} // namespace sdktrace
