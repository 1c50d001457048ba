// ini_file.h - the host's configuration file
#pragma once

#include "mivora/export.h"

#include <stdint.h>

/// An ini file that keeps what people wrote: sections and keys are found without regard to case;
/// comments, order, blank and unknown lines, line ends and the byte order mark stay as they are; an
/// absent key is told from an empty one. The first of several equal sections or keys counts.
/// Every write goes to the disk at once, or with its batch: a new file is written beside the old
/// one and renamed over it, so that whoever looks finds the old or the new file whole.
///
/// Any thread may call; one mutex inside guards all.
class MIVORA_API CIniFile {
public:
    CIniFile();
    ~CIniFile();
    CIniFile(const CIniFile&) = delete;
    CIniFile& operator=(const CIniFile&) = delete;

    /// Takes the file at `path` and forgets a batch of the former one. A file that does not exist
    /// yet is an empty one. False when it exists but cannot be read or is UTF-16 text;
    /// GetLastErrorText says why, and the former file stays.
    bool Open(const char* path);
    /// The path as given, or an empty text.
    const char* GetPath() const;

    bool HasSection(const char* section) const;
    bool HasKey(const char* section, const char* key) const;
    /// Copies the value, or `defaultValue` when the key is absent, into `buffer`, cut to
    /// `capacity` - 1 bytes and terminated. Returns the length of the whole value. With capacity 0
    /// it only measures.
    uint32_t GetText(const char* section, const char* key, const char* defaultValue, char* buffer,
                     uint32_t capacity) const;
    /// Decimal or 0x-hexadecimal with optional sign; `defaultValue` when absent, no number, or too
    /// large. Hexadecimal numbers up to 0xFFFFFFFF keep their 32 bits.
    int32_t GetInt32(const char* section, const char* key, int32_t defaultValue) const;

    /// All writes answer false when the disk refused; GetLastErrorText says what, where and why,
    /// and file and memory are as before. What others have written to the file meanwhile is read
    /// first and kept.
    ///
    /// Sections, keys and values hold no line end, a section no ']' and a key no '='; a key begins
    /// neither like a comment (';', '#') nor like a section. Blanks around the three are not kept.
    /// A new key goes to the end of its section, a new section to the end of the file.
    bool WriteText(const char* section, const char* key, const char* value);
    bool WriteInt32(const char* section, const char* key, int32_t value);
    /// Writes as 0x%08X.
    bool WriteHex32(const char* section, const char* key, uint32_t value);
    /// Takes the key's line out; true also when there was none.
    bool RemoveKey(const char* section, const char* key);

    /// From BeginBatch on the writes of this thread are kept in memory, where every read finds
    /// them, until EndBatch writes them all at once or DropBatch forgets them. Other threads write
    /// as ever. False when memory is out, without a file, or while another batch of this file is
    /// under way; EndBatch also when the disk refused: then file and memory are as before the
    /// batch.
    bool BeginBatch();
    bool EndBatch();
    /// Nothing without a batch of this thread.
    void DropBatch();

    /// The number of sections, and their names by order of appearance (null past the end). A name
    /// lives until the next write.
    uint32_t GetNumSections() const;
    const char* GetSectionName(uint32_t index) const;

    /// Why the last failing operation of this thread failed; an empty text before that.
    const char* GetLastErrorText() const;

private:
    struct Impl;
    Impl* impl;
};
