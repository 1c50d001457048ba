// file_system.h - paths, directories and whole files
//
// Paths are narrow strings: in the system's code page on Windows, in UTF-8 elsewhere. All functions
// may be called from any thread.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// '\\' on Windows, '/' elsewhere.
extern const char kPathSeparator;
/// File name of a shared library: "PxnC" gives "PxnC.dll" on Windows, "libPxnC.so" elsewhere.
std::string LibraryFileName(const char* baseName);
/// Absolute form of `path`; a relative path starts at the current directory. The file need not
/// exist. Windows also resolves "." and "..". Empty when `path` is empty, when the current
/// directory cannot be determined, or when the result has `limit` characters or more.
std::string FullPath(const std::string& path, std::size_t limit);
/// True when `path` names something that exists and that this process may query. Here and in the
/// next two functions POSIX follows symbolic links.
bool PathExists(const std::string& path);
bool IsRegularFile(const std::string& path);
bool IsDirectory(const std::string& path);
/// Directory part of `path`, without trailing separators except for a root ("/", "C:\\"); empty
/// when there is none. On Windows both '/' and '\\' are separators.
std::string DirectoryOf(const std::string& path);
/// `directory` and the relative `name`, joined by a separator unless `directory` ends in one or is
/// a bare drive ("C:"); just `name` when `directory` is empty.
std::string JoinPath(const std::string& directory, const std::string& name);
/// Creates a directory and its missing parents. True when the directory exists afterwards.
bool CreateDirectories(const std::string& path);
/// Creates a directory with a unique name that starts with `prefix` in the system's directory for
/// temporary files. Returns its path; empty on failure.
std::string CreateTemporaryDirectory(const char* prefix);
/// Removes a directory and its contents; links are removed, their targets are kept. True when
/// nothing called `path` exists afterwards; a file of that name is kept and gives false.
bool RemoveDirectoryTree(const std::string& path);
/// Absolute path of the running executable; empty when the system cannot report it.
std::string ExecutablePath();
/// Reads a whole file as bytes. On failure returns false, stores the system's message in `error`
/// (unless null) and leaves `content` unchanged.
bool ReadWholeFile(const std::string& path, std::string& content, std::string* error = nullptr);
/// Replaces the file `path`, or creates it: writes `content` to a temporary file in the same
/// directory, flushes it to disk and renames it to `path`. Readers see either the complete old or
/// the complete new content. On POSIX the new file gets the permissions of the old one, and when
/// `path` is a symbolic link, its target is replaced. A read-only file is never replaced, not even
/// for root or an administrator. On failure returns false, stores the system's message in `error`
/// (unless null), leaves `path` unchanged and removes the temporary file.
bool ReplaceWholeFile(const std::string& path, const std::string& content,
                      std::string* error = nullptr);

} // namespace platform
