// ini_document.h - the text of an ini file, parsed and edited in place
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The bytes of an ini file with an index of its lines and sections. An edit changes only the bytes
/// of the value or line concerned.
///
/// Section and key names are compared without regard to ASCII case and surrounding white space; of
/// several equal ones the first counts. A line that begins with ';' or '#' is a comment; elsewhere
/// these characters belong to the value. Not thread-safe.
class IniDocument {
public:
    /// Accepts any bytes; lines that are neither section, key nor comment are preserved.
    explicit IniDocument(std::string bytes = {});

    const std::string& Bytes() const { return content; }

    /// The section names in order of appearance, without duplicates.
    const std::vector<std::string>& SectionNames() const { return sectionNames; }
    bool HasSection(std::string_view section) const;
    /// The value without surrounding white space; valid until the next edit.
    std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

    /// True if the three can be written and read back: none contains a line end, neither section
    /// nor key is blank, the section has no ']', the key no '=' and no leading ';', '#' or '['.
    static bool IsWritable(std::string_view section, std::string_view key, std::string_view value);
    /// Changes a value, or adds the key at the end of its section, or the section at the end of
    /// the file. The arguments must satisfy IsWritable.
    void Set(std::string_view section, std::string_view key, std::string_view value);
    /// Removes the line of a key; false if there is none.
    bool Remove(std::string_view section, std::string_view key);

private:
    struct Line {
        std::size_t begin;
        std::size_t end;  ///< end of its text, before the line end
        std::size_t next; ///< start of the next line
    };

    void Parse();
    std::string_view TextOf(const Line& line) const;
    /// The index of the section's header line; kNone if there is none.
    std::size_t HeaderLine(std::string_view section) const;
    /// The index of the key's line in the section; kNone if there is none.
    std::size_t KeyLine(std::string_view section, std::string_view key) const;
    /// The index of the line before which a new key of the section is inserted.
    std::size_t LineAfterContent(std::size_t header) const;
    /// The line end in use at a line; a line without one takes that of the lines before it.
    std::string LineEndAt(std::size_t line) const;

    std::string content;
    std::vector<Line> lines;
    std::vector<std::string> sectionNames;
    std::unordered_map<std::string, std::size_t> headerLines; ///< by lower-case name
};
