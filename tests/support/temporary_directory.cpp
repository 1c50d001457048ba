// temporary_directory.cpp - a directory that is removed after a test
#include "tests/support/temporary_directory.h"

#include "platform/file_system.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace support {

TemporaryDirectory::TemporaryDirectory()
    : path(platform::CreateTemporaryDirectory("mivora-test-")) {
    if (path.empty()) {
        throw std::runtime_error("no temporary directory can be made");
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    // On Windows a program that another thread started has a file inherited until it ends.
    EXPECT_TRUE(support::WaitUntil([this] { return platform::RemoveDirectoryTree(path); }))
        << path << " cannot be removed";
}

std::string TemporaryDirectory::PathOf(const std::string& name) const {
    return platform::JoinPath(path, name);
}

std::string TemporaryDirectory::Write(const std::string& name, const std::string& content) const {
    const std::string file = PathOf(name);
    EXPECT_TRUE(platform::CreateDirectories(platform::DirectoryOf(file))) << file;
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    EXPECT_TRUE(stream.good()) << file << " cannot be written";
    return file;
}

std::string TemporaryDirectory::Read(const std::string& name) const {
    const std::string file = PathOf(name);
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream.good()) << file << " cannot be read";
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

} // namespace support
