// library_text.h - how the SDK's library is named in log lines
#pragma once

#include "platform/file_system.h"

#include <string>

namespace library_text {

inline bool IsWindows() {
    return platform::kPathSeparator == '\\';
}
inline std::string File() {
    return IsWindows() ? "PxnC.dll" : "libPxnC.so";
}
inline std::string Separator() {
    return IsWindows() ? "\\" : "/";
}

} // namespace library_text
