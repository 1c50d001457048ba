// log_sink.h - receiver of log lines
#pragma once

#include "mivora/export.h"

#include <stdarg.h>
#include <stddef.h>

/// Level of errors.
inline constexpr int kMvLogError = 0;
/// Level of everything else.
inline constexpr int kMvLogInformation = 1;

/// Receives log lines, one per call, from any thread; lines of several threads are never mixed.
/// `level` is kMvLogError or kMvLogInformation. Nothing may be thrown: the caller is in the middle
/// of its work.
///
/// The format is that of printf with the conversions d i u x X c s p f e g, the flags - + # 0,
/// width and precision (also as `*`), and the lengths h hh l ll I64 I32 z. %p prints 16 upper-case
/// hexadecimal digits without a prefix, %ls a wide text as UTF-8, a null text prints as "(null)",
/// and the decimal separator is a point in every locale. A percent sign that does not begin one of
/// these conversions is written unchanged and takes no argument; a space is not a flag, so this
/// holds for "% d" as well. The sink checks the level first and formats only what it writes.
class ILogSink {
public:
    /// Writes a formatted line.
    virtual void Write(int level, const char* format, ...) = 0;
    /// Writes a text at level kMvLogError without formatting it.
    virtual void WriteError(const char* text) = 0;

protected:
    ~ILogSink() = default;
};

extern "C" {
/// Formats into `buffer` as described for ILogSink, truncates to `capacity` - 1 bytes and
/// null-terminates; with a null buffer or capacity 0 nothing is written. Returns the length of the
/// whole text in bytes without the terminator. Leaves `arguments` usable and allocates nothing. Any
/// thread.
MIVORA_API size_t MivoraFormatLogText(char* buffer, size_t capacity, const char* format,
                                      va_list arguments);

/// Installs the sink of grabbers created from now on; null for none. The sink must outlive these
/// grabbers. Must not be called while another thread creates a grabber.
///
/// A host that wants no lines need not call this: until the first call a sink that discards
/// everything is installed. Null is something else: modules may depend on a sink being there.
MIVORA_API void MivoraInstallLogSink(ILogSink* sink);
/// The sink installed last, or null if that was null; before the first installation the one that
/// discards everything. Any thread.
MIVORA_API ILogSink* MivoraInstalledLogSink();
}
