// file_version.cpp - version suffix of a library's file name
#include "platform/file_version.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

namespace platform {

namespace {

constexpr std::uint16_t kNoPart = 65535;
constexpr const char* kSuffixMark = ".so.";

// Parses one to four numbers separated by dots. False when `text` is anything else.
bool ParseVersion(const char* text, std::array<std::uint16_t, 4>& parts) {
    for (std::uint16_t& part : parts) {
        if (*text < '0' || *text > '9') {
            return false;
        }
        unsigned long value = 0;
        while (*text >= '0' && *text <= '9') {
            value = value * 10 + static_cast<unsigned long>(*text - '0');
            if (value > 0xFFFF) {
                return false;
            }
            ++text;
        }
        part = static_cast<std::uint16_t>(value);
        if (*text == '\0') {
            return true;
        }
        if (*text != '.') {
            return false;
        }
        ++text;
    }
    return false;
}

} // namespace

struct FileVersion::Impl {
    std::array<std::uint16_t, 4> parts{};
};

FileVersion::FileVersion() = default;
FileVersion::~FileVersion() = default;
FileVersion::FileVersion(FileVersion&& other) noexcept = default;
FileVersion& FileVersion::operator=(FileVersion&& other) noexcept = default;

bool FileVersion::Read(const std::string& path) {
    Clear();
    char resolved[PATH_MAX];
    if (!realpath(path.c_str(), resolved)) {
        return false;
    }
    const char* slash = std::strrchr(resolved, '/');
    const char* suffix = std::strstr(slash ? slash : resolved, kSuffixMark);
    std::unique_ptr<Impl> block(new (std::nothrow) Impl);
    if (!suffix || !block || !ParseVersion(suffix + std::strlen(kSuffixMark), block->parts)) {
        return false;
    }
    impl = std::move(block);
    return true;
}

void FileVersion::Clear() {
    impl.reset();
}

bool FileVersion::HasBlock() const {
    return impl != nullptr;
}

std::uint16_t FileVersion::Part(unsigned part) const {
    return impl && part < impl->parts.size() ? impl->parts[part] : kNoPart;
}

} // namespace platform
