// recorder.h - traces calls and callbacks
#pragma once

#include "pxnc/trace/entry_table.h"
#include "pxnc/trace/trace_writer.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace sdktrace {

/// Writes down what passes. A record for which there is no memory is left out. Any thread.
class Recorder {
public:
    /// Creates the file; `pixels`: frames are traced with the content of their buffers.
    bool Create(const WriterOptions& options, bool pixels, std::string& error);

    /// Before a call. Returns what EndCall wants to have.
    std::uint64_t BeginCall(Entry entry, const Words& words) noexcept {
        return Begin(RecordType::kCallBegin, entry, words);
    }
    void EndCall(std::uint64_t call, Entry entry, const Words& words, PxnError result) noexcept;
    std::uint64_t BeginCallback(Entry entry, const Words& words) noexcept {
        return Begin(RecordType::kCallbackBegin, entry, words);
    }
    void EndCallback(std::uint64_t call, Entry entry, PxnError result) noexcept;

    void Finish() noexcept { writer.Finish(); }

private:
    std::uint64_t Begin(RecordType type, Entry entry, const Words& words) noexcept;

    TraceWriter writer;
    std::size_t pixelLimit = 0;
    std::atomic<std::uint64_t> calls{0};
};

} // namespace sdktrace
