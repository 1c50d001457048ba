// config_access.h - one section of an ini file, value by value
#pragma once

#include "mivora/ini_file.h"
#include "section_names.h"

#include <cstdint>
#include <optional>
#include <string>

/// The whole text of a key, whatever its length; nothing when it is absent.
std::optional<std::string> ReadIniText(const CIniFile& file, const char* section, const char* key);

/// Reads a section; what is absent or no number leaves its target alone.
class ConfigReader {
public:
    ConfigReader(const CIniFile& source, const SectionName& name) : file(source), section(name) {}

    std::optional<std::string> Text(const char* key) const;
    std::optional<std::uint32_t> Unsigned(const char* key) const;
    std::optional<std::int32_t> Signed(const char* key) const;

private:
    const CIniFile& file;
    const SectionName section;
};

/// Writes a section and remembers whether every write succeeded.
class ConfigWriter {
public:
    ConfigWriter(CIniFile& target, const SectionName& name) : file(target), section(name) {}

    void Text(const char* key, const char* value);
    void Unsigned(const char* key, std::uint32_t value);
    void Signed(const char* key, std::int32_t value);
    void Hex(const char* key, std::uint32_t value);
    bool Succeeded() const { return succeeded; }

private:
    CIniFile& file;
    const SectionName section;
    bool succeeded = true;
};

/// Lets all writes of this thread to a file become one; what was not ended is forgotten.
class IniBatch {
public:
    explicit IniBatch(CIniFile& target) : file(target), begun(target.BeginBatch()) {}
    ~IniBatch() { file.DropBatch(); }
    IniBatch(const IniBatch&) = delete;
    IniBatch& operator=(const IniBatch&) = delete;

    bool HasBegun() const { return begun; }
    /// Writes the file; false when that failed.
    bool End() { return begun && file.EndBatch(); }

private:
    CIniFile& file;
    const bool begun;
};

/// The number behind `prefix` in a section's name; nothing when the name is built otherwise.
std::optional<std::int32_t> SectionNumber(const char* name, const char* prefix);
