// trace_reader.h - the calls and callbacks of a trace
#pragma once

#include "pxnc/trace/entry_table.h"
#include "pxnc/trace/trace_layout.h"
#include "pxnc/trace/trace_writer.h"
#include "pxnc/trace/value.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sdktrace {

/// The beginning or the end of a call or callback.
struct Event {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    RecordType type = RecordType::kCallBegin;
    Entry entry = Entry::kPxnShutdown;
    std::uint64_t time = 0;        ///< ns since the trace was begun
    std::uint32_t thread = 0;      ///< counted from 1
    std::int32_t result = 0;       ///< of an end
    std::size_t partner = kNone;   ///< number of the end or beginning; kNone: not in the trace
    bool isWithoutContent = false; ///< it was too big, and has no values
    std::vector<Value> values;     ///< by parameter: arguments of a beginning, results of an end
};

constexpr bool IsBegin(const Event& event) {
    return event.type == RecordType::kCallBegin || event.type == RecordType::kCallbackBegin;
}
constexpr bool IsCallback(const Event& event) {
    return event.type == RecordType::kCallbackBegin || event.type == RecordType::kCallbackEnd;
}

struct Trace {
    LibraryVersion libraryVersion{};
    bool hasBeginning = true; ///< false: it has been overwritten
    std::vector<Event> events;
};

/// Reads a trace, also one that is still written or whose writer crashed. False with a reason in
/// `error` when the file cannot be read or is no trace.
bool ReadTrace(const std::string& path, Trace& trace, std::string& error);
/// The same for a file's content.
bool ParseTrace(std::string_view content, Trace& trace, std::string& error);

} // namespace sdktrace
