// file_version.cpp - version resource of a library
#include "platform/file_version.h"

#include <windows.h>

#include <new>
#include <utility>

namespace platform {

namespace {

constexpr std::uint16_t kNoPart = 65535;

} // namespace

struct FileVersion::Impl {
    std::unique_ptr<char[]> block;
};

FileVersion::FileVersion() = default;
FileVersion::~FileVersion() = default;
FileVersion::FileVersion(FileVersion&& other) noexcept = default;
FileVersion& FileVersion::operator=(FileVersion&& other) noexcept = default;

bool FileVersion::Read(const std::string& path) {
    Clear();
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
    if (size == 0) {
        return false;
    }
    std::unique_ptr<Impl> read(new (std::nothrow) Impl);
    if (!read) {
        return false;
    }
    read->block.reset(new (std::nothrow) char[size]);
    if (!read->block || !GetFileVersionInfoA(path.c_str(), 0, size, read->block.get())) {
        return false;
    }
    impl = std::move(read);
    return true;
}

void FileVersion::Clear() {
    impl.reset();
}

bool FileVersion::HasBlock() const {
    return impl != nullptr;
}

std::uint16_t FileVersion::Part(unsigned part) const {
    void* root = nullptr;
    UINT size = 0;
    if (!impl || !VerQueryValueA(impl->block.get(), "\\", &root, &size) ||
        size < sizeof(VS_FIXEDFILEINFO)) {
        return kNoPart;
    }
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(root);
    switch (part) {
    case 0:
        return HIWORD(info->dwFileVersionMS);
    case 1:
        return LOWORD(info->dwFileVersionMS);
    case 2:
        return HIWORD(info->dwFileVersionLS);
    case 3:
        return LOWORD(info->dwFileVersionLS);
    default:
        return kNoPart;
    }
}

} // namespace platform
