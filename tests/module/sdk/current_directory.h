// current_directory.h - another current directory for a scope
#pragma once

#include <filesystem>
#include <string>

/// Changes the current directory for its life.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const std::string& path) : former(std::filesystem::current_path()) {
        std::filesystem::current_path(path);
    }
    ~CurrentDirectory() { std::filesystem::current_path(former); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

private:
    std::filesystem::path former;
};
