// format_text.h - texts formatted as the log formats its lines
#pragma once

#include "sdk/log_format.h"

#include <string>
#include <type_traits>

namespace pyxen {

/// Formats as a log sink does. Throws std::bad_alloc only.
std::string FormatUnchecked(const char* format, ...);

/// The same with a format that is checked at compile time.
template <typename... Arguments>
std::string FormatText(LogFormat<std::type_identity_t<Arguments>...> format,
                       Arguments... arguments) {
    return FormatUnchecked(format.Text(), arguments...);
}

} // namespace pyxen
