// shared_library.cpp - ownership of a loaded library, the same on all platforms
#include "platform/shared_library.h"

#include <utility>

namespace platform {

SharedLibrary::~SharedLibrary() {
    Unload();
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle(std::exchange(other.handle, nullptr)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    if (this != &other) {
        Unload();
        handle = std::exchange(other.handle, nullptr);
    }
    return *this;
}

} // namespace platform
