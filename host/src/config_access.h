// config_access.h - typed access to one section of an ini file
#pragma once

#include "mivora/ini_file.h"
#include "section_names.h"

#include <cstdint>
#include <optional>
#include <string>

/// The complete value of a key, or nothing if the key is absent.
std::optional<std::string> ReadIniText(const CIniFile& file, const char* section, const char* key);

/// Reads values of a section. Returns nothing for an absent key or an invalid number.
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

/// Writes values of a section and records whether all writes succeeded.
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

/// Combines all writes of the calling thread to a file until End; without End they are discarded.
class IniBatch {
public:
    explicit IniBatch(CIniFile& target) : file(target), begun(target.BeginBatch()) {}
    ~IniBatch() { file.DropBatch(); }
    IniBatch(const IniBatch&) = delete;
    IniBatch& operator=(const IniBatch&) = delete;

    bool HasBegun() const { return begun; }
    /// Writes the file; false on failure.
    bool End() { return begun && file.EndBatch(); }

private:
    CIniFile& file;
    const bool begun;
};

/// The number after `prefix` (case ignored) in a section name; nothing for any other name.
std::optional<std::int32_t> SectionNumber(const char* name, const char* prefix);
