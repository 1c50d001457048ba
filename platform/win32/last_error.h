// last_error.h - messages for system error codes; internal to platform/win32
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// The system's message for error `code`, without trailing white space; "system error CODE" when
/// there is none.
std::string SystemErrorText(std::uint32_t code);

} // namespace platform
