// ini_document.h - the text of an ini file, read and changed in place
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The bytes of an ini file and where its sections and keys stand in them. A change touches the
/// bytes of the one value or line only; all others stay as they are.
///
/// Sections and keys are compared without the case of ASCII letters and without the blanks around
/// them; the first of several equal ones counts. A line from ';' or '#' is a comment, wherever
/// else these stand they belong to the value. Takes no lock.
class IniDocument {
public:
    /// Reads `bytes`, whatever they are: what is no section, key or comment is kept and skipped.
    explicit IniDocument(std::string bytes = {});

    const std::string& Bytes() const { return content; }

    /// The names of the sections by order of appearance, each once.
    const std::vector<std::string>& SectionNames() const { return sectionNames; }
    bool HasSection(std::string_view section) const;
    /// The value without the blanks around it; it lives until the next change.
    std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

    /// True when the three can be written and read back: no line end in any of them, a section
    /// without ']', a key without '=' that looks neither like a comment nor like a section.
    static bool IsWritable(std::string_view section, std::string_view key, std::string_view value);
    /// Changes a value, or adds the key at the end of its section, or the section at the end of
    /// the file. The three are writable.
    void Set(std::string_view section, std::string_view key, std::string_view value);
    /// Takes the line of a key out; false when there is none.
    bool Remove(std::string_view section, std::string_view key);

private:
    struct Line {
        std::size_t begin;
        std::size_t end;  ///< where its text ends
        std::size_t next; ///< where the following line begins
    };

    void Parse();
    std::string_view TextOf(const Line& line) const;
    /// Index of the section's header among the lines; npos when it is absent.
    std::size_t HeaderLine(std::string_view section) const;
    std::size_t KeyLine(std::string_view section, std::string_view key) const;
    std::size_t LineAfterContent(std::size_t header) const;
    std::string LineEndAt(std::size_t line) const;

    std::string content;
    std::vector<Line> lines;
    std::vector<std::string> sectionNames;
    std::unordered_map<std::string, std::size_t> headerLines; ///< by name in lower case
};
