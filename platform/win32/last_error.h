// last_error.h - the system's words for its error codes; for platform/win32 only
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// The text of a system error code, without the line break at its end.
std::string SystemErrorText(std::uint32_t code);

} // namespace platform
