// ini_file.h - the host's configuration file
#pragma once

#include "mivora/export.h"

#include <stdint.h>

/// An ini file that preserves hand-written content: comments, order, blank and unknown lines, line
/// ends and the byte order mark are left unchanged. Section and key names are not case-sensitive;
/// of several equal ones the first counts. An absent key is distinct from an empty one.
///
/// Every write goes to disk immediately, or with its batch: a new file is written next to the old
/// one and renamed over it, so that a reader always finds a complete file, old or new. Several
/// objects and several processes may write to one file: reading, changing and replacing it is
/// locked by a file beside it, with the additional ending ".lock", which exists only meanwhile.
///
/// The constructor may throw std::bad_alloc; no operation throws. Any thread; a mutex in each
/// object serialises the operations.
class MIVORA_API CIniFile {
public:
    CIniFile();
    ~CIniFile();
    CIniFile(const CIniFile&) = delete;
    CIniFile& operator=(const CIniFile&) = delete;

    /// Opens the file at `path` and discards a batch of the previous file. A missing file counts as
    /// empty and is created by the first write. Returns false if the path is null or empty, if
    /// the file cannot be read or is UTF-16 text, or when out of memory; GetLastErrorText gives the
    /// reason and the previous file stays open.
    bool Open(const char* path);
    /// The path as passed to Open, or an empty text; valid until the next Open.
    const char* GetPath() const;

    /// Whether the file has the section.
    bool HasSection(const char* section) const;
    /// Whether the section has the key, with a value or empty.
    bool HasKey(const char* section, const char* key) const;
    /// Copies the value, or `defaultValue` if the key is absent, into `buffer`, truncated to
    /// `capacity` - 1 bytes and null-terminated. Returns the length of the whole value in bytes.
    /// With a null buffer or capacity 0 nothing is copied. A null default is an empty text.
    uint32_t GetText(const char* section, const char* key, const char* defaultValue, char* buffer,
                     uint32_t capacity) const;
    /// Reads a decimal or 0x-prefixed hexadecimal number with an optional sign. Returns
    /// `defaultValue` if the key is absent or its value is not a number or out of range.
    /// Hexadecimal numbers without a sign are taken as 32 bits: 0xFFFFFFFF is -1.
    int32_t GetInt32(const char* section, const char* key, int32_t defaultValue) const;

    ///@{
    /// All writes return false on failure; GetLastErrorText then gives operation, path and reason,
    /// and neither the file nor the values in memory have changed. Each write first reads the file
    /// again and keeps what others have written to it, except for the keys that it writes itself. A
    /// write that has waited 5 seconds for other writers of the file fails.
    ///
    /// Sections, keys and values must not contain line ends, nor sections a ']' or keys a '='. A
    /// key must not begin with ';', '#' or '['. Sections and keys must not be blank. White space
    /// around all three is not preserved. A new key is added at the end of its section, a new
    /// section at the end of the file.
    bool WriteText(const char* section, const char* key, const char* value);
    bool WriteInt32(const char* section, const char* key, int32_t value);
    ///@}
    /// Writes the value in the form 0x%08X.
    bool WriteHex32(const char* section, const char* key, uint32_t value);
    /// Removes the line of the key; an absent key is not a failure.
    bool RemoveKey(const char* section, const char* key);

    ///@{
    /// After BeginBatch the writes of the calling thread are kept in memory, where all reads see
    /// them, until EndBatch writes them to disk together or DropBatch discards them. Writes of
    /// other threads still go to disk immediately.
    ///
    /// BeginBatch returns false without a file, while another batch of this object is open, or when
    /// out of memory. EndBatch returns false if the calling thread has no open batch or if writing
    /// fails; the batch is then discarded.
    bool BeginBatch();
    bool EndBatch();
    ///@}
    /// Does nothing if the calling thread has no open batch.
    void DropBatch();

    ///@{
    /// The number of sections, and their names in order of appearance (null past the end). A name
    /// is valid until the next write.
    uint32_t GetNumSections() const;
    const char* GetSectionName(uint32_t index) const;
    ///@}

    /// The reason for the last failure on the calling thread, or an empty text if none has failed;
    /// shared by all ini files of the thread and valid until its next failure.
    const char* GetLastErrorText() const;

private:
    struct Impl;
    Impl* impl;
};
