// trace_lines.cpp - a trace of the camera SDK as lines of text
#include "apps/pyxen-tool/trace_lines.h"

#include "pxnc/trace/event_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace {

using sdktrace::Detail;
using sdktrace::Event;
using sdktrace::EventText;
using sdktrace::Identity;
using sdktrace::Trace;

constexpr const char* kNoEnd = " ... has not returned";

std::string CallName(const Event& event) {
    return sdktrace::RowOf(event.entry).name;
}

const Event* PartnerOf(const Trace& trace, const Event& event) {
    return event.partner == Event::kNone ? nullptr : &trace.events[event.partner];
}

bool HasFailed(const Trace& trace, const Event& event) {
    const Event* const end = IsBegin(event) ? PartnerOf(trace, event) : &event;
    return !end || end->result != 0;
}

std::string DurationText(std::uint64_t nanoseconds) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), " (%.1f us)", static_cast<double>(nanoseconds) * 1e-3);
    return text.data();
}

std::string Heading(const TraceLine& line) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%12.6f %3u ", static_cast<double>(line.time) * 1e-9,
                  static_cast<unsigned>(line.thread));
    return text.data() + std::string(2 * line.depth, ' ') + (line.isCallback ? "> " : "");
}

std::string Line(const Trace& trace, EventText& text, const Event& event) {
    if (!IsBegin(event)) {
        return CallName(event) + "(...)" + text.End(event); // the beginning has been overwritten
    }
    const Event* const end = PartnerOf(trace, event);
    return text.Begin(event) +
           (end ? text.End(*end) + DurationText(end->time - event.time) : kNoEnd);
}

TraceLine LineOf(const Trace& trace, const Event& event, std::size_t depth, std::string text) {
    TraceLine line;
    line.name = CallName(event);
    line.time = event.time;
    line.thread = event.thread;
    line.depth = depth;
    line.isCallback = IsCallback(event);
    line.text = std::move(text);
    const Event* const end = IsBegin(event) ? PartnerOf(trace, event) : &event;
    if (end) {
        line.result = end->result;
    }
    if (end && end != &event) {
        line.duration = end->time - event.time;
    }
    return line;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// A thread's calls and callbacks, for comparing.
struct ThreadLines {
    std::vector<std::string> lines;
    std::vector<std::uint64_t> times;
};

std::vector<ThreadLines> LinesByThread(const Trace& trace) {
    std::vector<ThreadLines> threads;
    std::map<std::uint32_t, std::pair<std::size_t, EventText>> known;
    for (const Event& event : trace.events) {
        if (event.entry == sdktrace::Entry::kPxnControl) {
            continue;
        }
        auto place = known.find(event.thread);
        if (place == known.end()) {
            place =
                known
                    .emplace(event.thread, std::pair(threads.size(),
                                                     EventText(Identity::kNumber, Detail::kWhole)))
                    .first;
            threads.emplace_back();
        }
        auto& [index, text] = place->second;
        threads[index].lines.push_back(
            IsBegin(event) ? text.Begin(event) : "end of " + CallName(event) + text.End(event));
        threads[index].times.push_back(event.time);
    }
    return threads;
}

std::string SecondsOf(std::uint64_t nanoseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6f", static_cast<double>(nanoseconds) * 1e-9);
    return text.data();
}

/// Line `index` with its time, or that there is none.
std::string LineOf(const ThreadLines& thread, std::size_t index) {
    return index < thread.lines.size() ? SecondsOf(thread.times[index]) + " " + thread.lines[index]
                                       : "nothing more";
}

} // namespace

void PrintTrace(const Trace& trace, const TraceFilter& filter,
                const std::function<void(const std::string& line)>& print) {
    VisitTrace(trace, filter, [&](const TraceLine& line) { print(Heading(line) + line.text); });
}

void VisitTrace(const Trace& trace, const TraceFilter& filter,
                const std::function<void(const TraceLine& line)>& visit) {
    EventText text(Identity::kAddress, filter.isWhole ? Detail::kWhole : Detail::kShort);
    std::map<std::uint32_t, std::size_t> depths;
    for (const Event& event : trace.events) {
        std::size_t& depth = depths[event.thread];
        const bool isBegin = IsBegin(event);
        if (!isBegin && event.partner != Event::kNone) {
            --depth;
            continue;
        }
        const bool isWanted = (filter.thread == 0 || filter.thread == event.thread) &&
                              (!filter.onlyFailed || HasFailed(trace, event)) &&
                              Contains(CallName(event), filter.call);
        if (isWanted) {
            std::string line = Line(trace, text, event);
            if (Contains(line, filter.text)) {
                visit(LineOf(trace, event, depth, std::move(line)));
            }
        }
        depth += isBegin && event.partner != Event::kNone ? 1 : 0;
    }
}

std::map<std::string, CallSummary> SummariseTrace(const Trace& trace) {
    std::map<std::string, CallSummary> summaries;
    for (const Event& event : trace.events) {
        if (!IsBegin(event) && event.partner != Event::kNone) {
            continue;
        }
        CallSummary& summary = summaries[CallName(event)];
        ++summary.calls;
        summary.failed += HasFailed(trace, event) ? 1 : 0;
        if (const Event* const end = IsBegin(event) ? PartnerOf(trace, event) : nullptr) {
            summary.total += end->time - event.time;
            summary.longest = std::max(summary.longest, end->time - event.time);
        }
    }
    return summaries;
}

std::vector<std::string> CompareTraces(const Trace& left, const Trace& right) {
    const std::vector<ThreadLines> leftThreads = LinesByThread(left);
    const std::vector<ThreadLines> rightThreads = LinesByThread(right);
    std::vector<std::string> differences;
    const ThreadLines none;
    for (std::size_t i = 0; i < std::max(leftThreads.size(), rightThreads.size()); ++i) {
        const ThreadLines& before = i < leftThreads.size() ? leftThreads[i] : none;
        const ThreadLines& after = i < rightThreads.size() ? rightThreads[i] : none;
        const std::size_t same =
            static_cast<std::size_t>(std::mismatch(before.lines.begin(), before.lines.end(),
                                                   after.lines.begin(), after.lines.end())
                                         .first -
                                     before.lines.begin());
        const bool differs = same < before.lines.size() || same < after.lines.size();
        differences.push_back(differs ? "- " + LineOf(before, same) + "\n+ " + LineOf(after, same)
                                      : "");
    }
    return differences;
}
