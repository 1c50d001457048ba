// trace_fixture.h - traces that tests write
#pragma once

#include "pxnc/trace/recorder.h"
#include "pxnc/trace/trace_reader.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

namespace trace_tests {

using sdktrace::Entry;
using sdktrace::Event;
using sdktrace::ToWords;

constexpr sdktrace::LibraryVersion kLibrary{2, 1, 0, 7};

/// Writes a trace with a recorder, and reads it.
class TraceTest : public testing::Test {
protected:
    TraceTest() { Begin(1, true); }

    /// Begins a new trace in place of the one that the test has got.
    void Begin(std::size_t megabytes, bool pixels);
    sdktrace::Trace Read() const;

    /// A whole call, which stores nothing before it returns.
    template <typename... Arguments>
    void Call(Entry entry, PxnError result, Arguments... arguments) {
        const sdktrace::Words words = ToWords(arguments...);
        recorder->EndCall(recorder->BeginCall(entry, words), entry, words, result);
    }

    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("a.trace");
    std::unique_ptr<sdktrace::Recorder> recorder;
};

/// A frame of 8 bytes as an SDK hands it over.
struct FilledFrame {
    FilledFrame();

    unsigned char pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    PxnFrame frame{};
};

} // namespace trace_tests
