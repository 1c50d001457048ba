// session_match.cpp - which pointers of a session stand for which of its trace
#include "pxnc/trace/session_match.h"

#include "pxnc/trace/encoder.h"

namespace sdktrace {
namespace {

/// What a parameter of a function points to; none when it is no pointer of the host's, whose
/// addresses are others in each session.
std::optional<Pointee> PointeeOf(Entry entry, Kind kind) {
    const bool isInvalidation = entry == Entry::kPxnFeatureInvalidationRegister ||
                                entry == Entry::kPxnFeatureInvalidationUnregister;
    switch (kind) {
    case Kind::kFrame:
    case Kind::kAnnouncedFrame:
    case Kind::kFrameToFill:
        return Pointee::kFrame;
    case Kind::kCallback:
        return isInvalidation                        ? Pointee::kInvalidationCallback
               : entry == Entry::kPxnChunkDataAccess ? Pointee::kChunkCallback
                                                     : Pointee::kFrameCallback;
    case Kind::kContext:
        return isInvalidation                        ? Pointee::kInvalidationContext
               : entry == Entry::kPxnChunkDataAccess ? Pointee::kChunkContext
                                                     : Pointee::kSettings;
    default:
        return std::nullopt;
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
            const auto known = Current(Pointee::kFrame, traced[i].word);
            isSame = known ? *known == now[i].word : (traced[i].word == 0) == (now[i].word == 0);
        } else if (PointeeOf(entry, kind)) {
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
    startups += entry == Entry::kPxnStartup ? 1 : 0; // one that fails counts
    if (entry == Entry::kPxnFrameAnnounce) {
        handleOf[traced[1].word] = traced[0].word;
    }
    for (std::size_t i = 0; i < traced.size(); ++i) {
        if (const auto pointee = PointeeOf(entry, RowOf(entry).parameters[i].kind)) {
            current[{*pointee, traced[i].word}] = now[i].word;
        }
    }
}

void SessionMatch::Forget(Entry entry, const std::vector<Value>& traced) {
    const auto forget = [this](auto isGone) {
        std::erase_if(current, [&](const auto& known) {
            return known.first.first == Pointee::kFrame && isGone(known.first.second);
        });
    };
    switch (entry) {
    case Entry::kPxnFrameRevoke:
        forget([&](std::uint64_t frame) { return frame == traced[1].word; });
        break;
    case Entry::kPxnFrameRevokeAll:
    case Entry::kPxnCameraClose:
        forget([&](std::uint64_t frame) {
            const auto handle = handleOf.find(frame);
            return handle != handleOf.end() && handle->second == traced[0].word;
        });
        break;
    case Entry::kPxnShutdown:
        startups -= startups > 0 ? 1 : 0;
        forget([this](std::uint64_t) { return startups == 0; });
        break;
    default:
        break;
    }
}

std::optional<std::uint64_t> SessionMatch::Current(Pointee pointee, std::uint64_t traced) const {
    const auto found = current.find({pointee, traced});
    return found == current.end() ? std::nullopt : std::optional(found->second);
}

} // namespace sdktrace
