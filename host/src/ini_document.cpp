// ini_document.cpp - the text of an ini file, parsed and edited in place
#include "ini_document.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string LowerText(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
    return lower;
}

bool EqualNoCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

bool IsComment(std::string_view trimmed) {
    return !trimmed.empty() && (trimmed.front() == ';' || trimmed.front() == '#');
}

/// The name in a section header, or nothing for any other line. It ends at the first NUL, like the
/// C strings with which sections are looked up.
std::optional<std::string_view> HeaderName(std::string_view line) {
    line = Trim(line);
    const std::size_t close = line.find(']');
    if (line.empty() || line.front() != '[' || close == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view name = line.substr(1, close - 1);
    return Trim(name.substr(0, name.find('\0')));
}

/// The position of the '=' in a key's line; npos for any other line.
std::size_t EqualsSign(std::string_view line) {
    return IsComment(Trim(line)) ? std::string_view::npos : line.find('=');
}

bool HasLineEnd(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

} // namespace

IniDocument::IniDocument(std::string bytes) : content(std::move(bytes)) {
    Parse();
}

void IniDocument::Parse() {
    lines.clear();
    sectionNames.clear();
    headerLines.clear();
    std::size_t begin =
        content.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0 ? kByteOrderMark.size() : 0;
    while (begin < content.size()) {
        const std::size_t feed = content.find('\n', begin);
        Line line{begin, content.size(), content.size()};
        if (feed != std::string::npos) {
            line.next = feed + 1;
            line.end = feed > begin && content[feed - 1] == '\r' ? feed - 1 : feed;
        }
        if (const auto name = HeaderName(TextOf(line))) {
            if (headerLines.emplace(LowerText(*name), lines.size()).second) {
                sectionNames.emplace_back(*name);
            }
        }
        lines.push_back(line);
        begin = line.next;
    }
}

std::string_view IniDocument::TextOf(const Line& line) const {
    return std::string_view(content).substr(line.begin, line.end - line.begin);
}

std::size_t IniDocument::HeaderLine(std::string_view section) const {
    const auto found = headerLines.find(LowerText(Trim(section)));
    return found == headerLines.end() ? kNone : found->second;
}

std::size_t IniDocument::KeyLine(std::string_view section, std::string_view key) const {
    const std::size_t header = HeaderLine(section);
    if (header == kNone) {
        return kNone;
    }
    const std::string_view wanted = Trim(key);
    for (std::size_t i = header + 1; i < lines.size(); ++i) {
        const std::string_view text = TextOf(lines[i]);
        if (HeaderName(text)) {
            break;
        }
        const std::size_t equals = EqualsSign(text);
        if (equals != std::string_view::npos && EqualNoCase(Trim(text.substr(0, equals)), wanted)) {
            return i;
        }
    }
    return kNone;
}

bool IniDocument::HasSection(std::string_view section) const {
    return HeaderLine(section) != kNone;
}

std::optional<std::string_view> IniDocument::Find(std::string_view section,
                                                  std::string_view key) const {
    const std::size_t index = KeyLine(section, key);
    if (index == kNone) {
        return std::nullopt;
    }
    const std::string_view text = TextOf(lines[index]);
    return Trim(text.substr(EqualsSign(text) + 1));
}

bool IniDocument::IsWritable(std::string_view section, std::string_view key,
                             std::string_view value) {
    if (HasLineEnd(section) || HasLineEnd(key) || HasLineEnd(value)) {
        return false;
    }
    const std::string_view name = Trim(section);
    const std::string_view trimmedKey = Trim(key);
    return !name.empty() && name.find(']') == std::string_view::npos && !trimmedKey.empty() &&
           trimmedKey.find('=') == std::string_view::npos && trimmedKey.front() != '[' &&
           !IsComment(trimmedKey);
}

std::string IniDocument::LineEndAt(std::size_t line) const {
    for (std::size_t i = std::min(line + 1, lines.size()); i > 0; --i) {
        const Line& candidate = lines[i - 1];
        if (candidate.next > candidate.end) {
            return content.substr(candidate.end, candidate.next - candidate.end);
        }
    }
    return "\n";
}

std::size_t IniDocument::LineAfterContent(std::size_t header) const {
    std::size_t after = header + 1;
    std::size_t end = after;
    for (; end < lines.size() && !HeaderName(TextOf(lines[end])); ++end) {
        const std::string_view text = Trim(TextOf(lines[end]));
        if (!text.empty() && !IsComment(text)) {
            after = end + 1;
        }
    }
    // Comments directly after the last key belong to this section, unless the next header follows
    // without a blank line: then they belong to the next section.
    std::size_t commented = after;
    while (commented < end && IsComment(Trim(TextOf(lines[commented])))) {
        ++commented;
    }
    return commented < end || end == lines.size() ? commented : after;
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
    const std::size_t keyLine = KeyLine(section, key);
    if (keyLine != kNone) {
        const Line& line = lines[keyLine];
        const std::string_view text = TextOf(line);
        const std::string_view old = Trim(text.substr(EqualsSign(text) + 1));
        const std::size_t begin =
            old.empty() ? line.end : static_cast<std::size_t>(old.data() - content.data());
        content.replace(begin, old.size(), value);
        Parse();
        return;
    }
    std::string added;
    const std::size_t header = HeaderLine(section);
    const std::size_t place = header == kNone ? lines.size() : LineAfterContent(header);
    const std::string lineEnd = LineEndAt(place == 0 ? 0 : place - 1);
    // The preceding line may be the last one of the file and lack a line end.
    if (place > 0 && lines[place - 1].next == lines[place - 1].end) {
        added += lineEnd;
    }
    if (header == kNone) {
        const bool blankBefore = lines.empty() || Trim(TextOf(lines.back())).empty();
        added += blankBefore ? "" : lineEnd;
        added.append("[").append(Trim(section)).append("]").append(lineEnd);
    }
    added.append(Trim(key)).append("=").append(value).append(lineEnd);
    content.insert(place < lines.size() ? lines[place].begin : content.size(), added);
    Parse();
}

bool IniDocument::Remove(std::string_view section, std::string_view key) {
    const std::size_t keyLine = KeyLine(section, key);
    if (keyLine == kNone) {
        return false;
    }
    content.erase(lines[keyLine].begin, lines[keyLine].next - lines[keyLine].begin);
    Parse();
    return true;
}
