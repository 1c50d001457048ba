// session_match.h - which pointers of a session stand for which of its trace
#pragma once

#include "pxnc/trace/value.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sdktrace {

/// A path without its directory, by the rules of either platform.
std::string FileNameOf(const std::string& path);

/// The values of arguments that a host passes now.
std::vector<Value> ValuesOf(Entry entry, const Words& words);

/// What a pointer of the host points to. A damaged trace may take one for another.
enum class Pointee : std::uint8_t {
    kFrame,
    kFrameCallback,
    kInvalidationCallback,
    kInvalidationContext,
    kChunkCallback,
    kChunkContext,
    kSettings,
};

/// Compares arguments with those in a trace. Handles are those of the trace; frames, callbacks and
/// contexts have other addresses and are learned. Of paths the file names are compared, as
/// directories differ from run to run. One thread at a time.
class SessionMatch {
public:
    bool Matches(Entry entry, const std::vector<Value>& traced,
                 const std::vector<Value>& now) const;
    /// Takes over the pointers of arguments that match.
    void Learn(Entry entry, const std::vector<Value>& traced, const std::vector<Value>& now);
    /// A call with these arguments has succeeded: frames that it took back may be gone.
    void Forget(Entry entry, const std::vector<Value>& traced);
    /// What stands for a pointer of the trace; none when it was never passed as one to that.
    std::optional<std::uint64_t> Current(Pointee pointee, std::uint64_t traced) const;

private:
    std::map<std::pair<Pointee, std::uint64_t>, std::uint64_t> current;
    std::map<std::uint64_t, std::uint64_t> handleOf; // by announced frame, both of the trace
    unsigned startups = 0;
};

} // namespace sdktrace
