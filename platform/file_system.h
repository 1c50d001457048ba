// file_system.h - paths and whole files, by the platform's rules
//
// Narrow paths are in the system's code page on Windows and in UTF-8 elsewhere.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// '\\' on Windows, '/' elsewhere.
extern const char kPathSeparator;
/// The file name of a run-time library: ("PxnC") gives "PxnC.dll" or "libPxnC.so".
std::string LibraryFileName(const char* baseName);
/// The absolute form of `path` against the current directory; the file need not exist. Empty
/// when the system cannot tell, or when the result has `limit` characters or more.
std::string FullPath(const std::string& path, std::size_t limit);
/// True for a file or directory that exists and that this process may look at. Symbolic links
/// are followed, here and below.
bool PathExists(const std::string& path);
bool IsRegularFile(const std::string& path);
bool IsDirectory(const std::string& path);
/// The directory part without its trailing separator, which only a root keeps ("/", "C:\\"); empty
/// when there is none. Both '/' and '\\' separate on Windows.
std::string DirectoryOf(const std::string& path);
/// Directory and relative name joined by one separator; the name alone when the directory is
/// empty.
std::string JoinPath(const std::string& directory, const std::string& name);
/// Creates a directory and the missing ones above it; true when it is there afterwards.
bool CreateDirectories(const std::string& path);
/// A fresh, empty directory below the system's place for temporary files, its name beginning with
/// `prefix`; empty when it cannot be made.
std::string CreateTemporaryDirectory(const char* prefix);
/// Removes a directory with all that is in it, links but not what they lead to. True when nothing
/// of that name is there afterwards; a file of that name stays.
bool RemoveDirectoryTree(const std::string& path);
/// The running program's own file, absolute.
std::string ExecutablePath();
/// Reads a whole file as bytes. False when it cannot be read: `error`, when given, then says why
/// in the system's words, and `content` is as it was.
bool ReadWholeFile(const std::string& path, std::string& content, std::string* error = nullptr);
/// Writes `content` to a file beside `path`, flushes it to the disk and renames it over `path`:
/// whoever looks finds the old or the new file whole. A symbolic link stays, what it leads to is
/// replaced (not on Windows), and the new file has the old one's permissions. A read-only target
/// refuses, for an administrator too. False on failure: `error`, when given, then says why, `path`
/// is as it was and nothing is left beside it.
bool ReplaceWholeFile(const std::string& path, const std::string& content,
                      std::string* error = nullptr);

} // namespace platform
