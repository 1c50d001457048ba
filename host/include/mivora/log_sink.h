// log_sink.h - where log lines go
#pragma once

#include "mivora/export.h"

#include <stdarg.h>
#include <stddef.h>

inline constexpr int kMvLogError = 0;
inline constexpr int kMvLogInformation = 1;

/// One line per call. Any thread may call; lines of several threads never mix.
///
/// The format is printf's with the conversions d i u x X c s p f e g, width and precision as in C
/// (also from arguments, by `*`), the flags - + # 0, and the lengths h hh l ll I64 I32 z. %p prints
/// 16 upper-case hexadecimal digits, %ls a wide text as UTF-8, a null text prints as "(null)", and
/// the decimal point is a point in every locale. A percent sign that none of these follows is
/// written as it stands and takes no argument; so is one that a blank follows, which is no flag
/// here. Formatting happens inside, after the level was checked.
class ILogSink {
public:
    virtual void Write(int level, const char* format, ...) = 0;
    /// Writes a ready text at level 0.
    virtual void WriteError(const char* text) = 0;

protected:
    ~ILogSink() = default;
};

extern "C" {
/// Formats as a log sink does into `buffer`, which is always terminated when `capacity` is not 0.
/// Returns the length of the whole text without the terminator, however much of it fitted.
MIVORA_API size_t MivoraFormatLogText(char* buffer, size_t capacity, const char* format,
                                      va_list arguments);

/// Installs the sink that grabbers made from now on write to; null for none. The sink must outlive
/// them. Not thread-safe against CreateGrabberInstance.
MIVORA_API void MivoraInstallLogSink(ILogSink* sink);
MIVORA_API ILogSink* MivoraInstalledLogSink();
}
