// logger.h - writes log lines whose formats are checked at compile time
#pragma once

#include "mivora/log_sink.h"
#include "sdk/log_format.h"

#include <type_traits>

namespace pyxen {

/// Writes lines to the host's sink; without a sink nothing is formatted or written. Cheap to copy;
/// any thread; the sink must outlive it.
class Logger {
public:
    constexpr Logger() = default;
    // Implicit: a sink is passed where a logger is expected.
    constexpr Logger(ILogSink* target) : sink(target) {}

    /// Whether there is a sink. A few operations depend on it.
    constexpr explicit operator bool() const { return sink; }
    constexpr ILogSink* Sink() const { return sink; }

    /// Writes one line at the information level.
    template <typename... Arguments>
    void Information(LogFormat<std::type_identity_t<Arguments>...> format,
                     Arguments... arguments) const {
        if (sink) {
            sink->Write(kMvLogInformation, format.Text(), arguments...);
        }
    }

    /// Writes one line at the error level.
    template <typename... Arguments>
    void Error(LogFormat<std::type_identity_t<Arguments>...> format, Arguments... arguments) const {
        if (sink) {
            sink->Write(kMvLogError, format.Text(), arguments...);
        }
    }

    /// Writes a finished text at the error level, through the sink's WriteError.
    void ErrorText(const char* text) const {
        if (sink) {
            sink->WriteError(text);
        }
    }

private:
    ILogSink* sink = nullptr;
};

} // namespace pyxen
