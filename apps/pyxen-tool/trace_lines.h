// trace_lines.h - a trace of the camera SDK as lines of text
#pragma once

#include "pxnc/trace/trace_reader.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct TraceFilter {
    std::string call;         ///< part of the name; empty: all
    std::string text;         ///< part of the line; empty: all
    std::uint32_t thread = 0; ///< 0: all
    bool onlyFailed = false;
    bool isWhole = false; ///< neither texts nor lists are cut
};

/// Passes on a line for each call and callback that the filter lets through, in the order of their
/// beginnings: seconds since the trace was begun, thread, the call with its result, its duration.
/// What happens inside another call on the same thread is indented; callbacks begin with "> ".
void PrintTrace(const sdktrace::Trace& trace, const TraceFilter& filter,
                const std::function<void(const std::string& line)>& print);

/// One of these lines, in its parts.
struct TraceLine {
    std::string name;
    std::uint64_t time = 0; ///< ns since the trace was begun
    std::uint32_t thread = 0;
    std::size_t depth = 0; ///< calls of the same thread around it
    bool isCallback = false;
    std::optional<std::int64_t> result;    ///< none: has not returned
    std::optional<std::uint64_t> duration; ///< ns; none also when the beginning is not known
    std::string text;                      ///< the call with its result and duration
};
/// Passes on what PrintTrace prints.
void VisitTrace(const sdktrace::Trace& trace, const TraceFilter& filter,
                const std::function<void(const TraceLine& line)>& visit);

/// The calls of one kind.
struct CallSummary {
    std::size_t calls = 0;
    std::size_t failed = 0;
    std::uint64_t total = 0; ///< ns, of those that returned
    std::uint64_t longest = 0;
};
/// By name, callbacks too.
std::map<std::string, CallSummary> SummariseTrace(const sdktrace::Trace& trace);

/// The first difference of each thread as text, "" for none. Threads are compared in the order in
/// which they appear, their calls and callbacks in theirs, with arguments and results. Handles and
/// pointers are counted, times and control commands are left out.
std::vector<std::string> CompareTraces(const sdktrace::Trace& left, const sdktrace::Trace& right);
